// The catalog files that libxml2 opens while it is asked: local ones only, and without the references that lead back to
// a file that led there. libxml2 follows those until the stack is full when it looks for a URI. Host's thread only.
#ifndef HOST_DOCUMENTS_CATALOG_FILES_H
#define HOST_DOCUMENTS_CATALOG_FILES_H

#include <libxml/xmlIO.h>

#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>

namespace host {

class CatalogFiles {
public:
  // Hears of a file that a catalog on the network is left out of.
  using Warn = std::function<void(const std::string &file, const std::string &line)>;
  explicit CatalogFiles(Warn warn) : warning(std::move(warn)) {}

  // libxml2 opens files through `files` while this lives.
  class Opening {
  public:
    explicit Opening(CatalogFiles &files);
    ~Opening();
    Opening(const Opening &) = delete;
    Opening &operator=(const Opening &) = delete;
  };

  // Whether a reference that leads back was left out since the last call.
  [[nodiscard]] bool TakeCycle() { return std::exchange(hasCycle, false); }
  // libxml2 has forgotten what it read.
  void Clear() { references.clear(); }

private:
  static xmlParserInputBufferPtr Open(const char *url, xmlCharEncoding encoding);
  [[nodiscard]] bool MustLeaveOut(const std::string &file, const std::string &url);
  [[nodiscard]] bool Leads(const std::string &from, const std::string &to) const;

  static CatalogFiles *current;
  Warn warning;
  std::map<std::string, std::set<std::string>> references; // by real path: the files that are followed from there
  bool hasCycle = false;
};

} // namespace host

#endif
