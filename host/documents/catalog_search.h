// What libxml2 must not be given: it follows the references between catalogs wherever they lead. In a ring that takes
// the whole stack, and where many ways lead to the same catalogs more time than there is.
#ifndef HOST_DOCUMENTS_CATALOG_SEARCH_H
#define HOST_DOCUMENTS_CATALOG_SEARCH_H

#include "host/documents/anonymous_file.h"

#include <string>
#include <vector>

namespace host {

struct CatalogCheck {
  std::string problem; // why it cannot be searched in seconds; empty when it can
  bool hasRing = false;
  // Of a catalog in a ring: copies of all files that it leads to, without the references that close rings. The last is
  // that of the catalog itself.
  std::vector<AnonymousFile> copies;
};

// Reads the catalog and all that it refers to; what cannot be read holds nothing.
[[nodiscard]] CatalogCheck CheckCatalog(const std::string &file);

} // namespace host

#endif
