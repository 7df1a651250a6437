// The catalog files that libxml2 opens while it is asked: local ones only. Host's thread only.
#ifndef HOST_DOCUMENTS_CATALOG_FILES_H
#define HOST_DOCUMENTS_CATALOG_FILES_H

#include <libxml/xmlIO.h>

#include <functional>
#include <string>
#include <utility>

namespace host {

class CatalogFiles {
public:
  // Hears of a catalog that is not opened.
  using Warn = std::function<void(const std::string &url, const std::string &line)>;
  explicit CatalogFiles(Warn warn) : warning(std::move(warn)) {}

  // libxml2 opens files through `files` while this lives.
  class Opening {
  public:
    explicit Opening(CatalogFiles &files);
    ~Opening();
    Opening(const Opening &) = delete;
    Opening &operator=(const Opening &) = delete;
  };

private:
  static xmlParserInputBufferPtr Open(const char *url, xmlCharEncoding encoding);

  static CatalogFiles *current;
  Warn warning;
};

} // namespace host

#endif
