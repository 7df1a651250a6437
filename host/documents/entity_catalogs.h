// OASIS XML catalogs: what a public identifier, a system identifier or a URI is on this machine. Catalog files are read
// when the first question comes, and answers are remembered. Never goes to the network. Host's thread only, and one
// object at a time: libxml2 keeps the files it read for the whole process.
#ifndef HOST_DOCUMENTS_ENTITY_CATALOGS_H
#define HOST_DOCUMENTS_ENTITY_CATALOGS_H

#include "host/documents/anonymous_file.h"
#include "host/documents/catalog_files.h"
#include "kit/handle.h"

#include <libxml/catalog.h>
#include <libxml/xmlerror.h>

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace host {

class EntityCatalogs {
public:
  using Warn = std::function<void(const std::string &line)>;
  enum class Missing { Reported, Expected };

  // `warn` gets one line per catalog file that cannot be read; a missing one is passed over when it is `Expected`.
  EntityCatalogs(std::vector<std::string> catalogFiles, Missing missingFiles, Warn warn);
  ~EntityCatalogs();
  EntityCatalogs(const EntityCatalogs &) = delete;
  EntityCatalogs &operator=(const EntityCatalogs &) = delete;

  // A local path that exists, or a URL that is not local; empty when the catalogs do not know it.
  [[nodiscard]] std::string Resolve(const std::string &publicId, const std::string &baseUri,
                                    const std::string &systemId);

private:
  struct Catalog {
    std::vector<AnonymousFile> copies;
    AnonymousFile wrapper; // these are read by libxml2 at the first question, not when it is loaded
    kit::Handle<xmlCatalog, xmlFreeCatalog> handle;
  };

  void Load();
  void Load(const std::string &file);
  void NoteError(const xmlError &error);
  [[nodiscard]] std::string LookUp(const std::string &publicId, const std::string &baseUri,
                                   const std::string &systemId);
  template <class Ask> [[nodiscard]] std::string AskEach(Ask ask);
  void WarnOnce(const std::string &file, const std::string &line);

  std::vector<std::string> paths;
  Missing missing;
  Warn warning;
  bool isLoaded = false;
  CatalogFiles files{[this](const std::string &file, const std::string &line) { WarnOnce(file, line); }};
  std::vector<Catalog> catalogs;
  std::unordered_map<std::string, std::string> answers;
  std::vector<std::string> warnedAbout;
};

} // namespace host

#endif
