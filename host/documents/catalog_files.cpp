#include "host/documents/catalog_files.h"

#include "kit/paths.h"

namespace host {

CatalogFiles *CatalogFiles::current = nullptr;

CatalogFiles::Opening::Opening(CatalogFiles &files) {
  current = &files;
  xmlParserInputBufferCreateFilenameDefault(&CatalogFiles::Open);
}

CatalogFiles::Opening::~Opening() {
  xmlParserInputBufferCreateFilenameDefault(nullptr);
  current = nullptr;
}

xmlParserInputBufferPtr CatalogFiles::Open(const char *url, xmlCharEncoding encoding) {
  if (kit::UrlScheme(url).empty() || kit::IsFileUrl(url))
    return __xmlParserInputBufferCreateFilename(url, encoding);
  current->warning(url, std::string(url) + ": catalog: it is not read: catalogs are local files");
  return nullptr;
}

} // namespace host
