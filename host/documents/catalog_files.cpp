#include "host/documents/catalog_files.h"

#include "host/documents/xml_file.h"
#include "kit/paths.h"
#include "kit/read_file.h"

#include <libxml/parser.h>
#include <libxml/uri.h>

#include <utility>
#include <vector>

namespace host {

namespace {

using Document = kit::Handle<xmlDoc, xmlFreeDoc>;

// What libxml2 will complain about by itself is nothing here.
Document ReadQuietly(const std::string &path, const char *url) {
  const kit::FileContent content = kit::IsFile(path) ? kit::ReadFile(path) : kit::FileContent();
  const auto parser = kit::Handle<xmlParserCtxt, xmlFreeParserCtxt>::Adopt(xmlNewParserCtxt());
  if (!parser || content.bytes.empty())
    return {};
  parser.Get()->sax->serror = [](void *, xmlErrorPtr) {};
  return Document::Adopt(xmlCtxtReadMemory(parser.Get(), content.bytes.data(), static_cast<int>(content.bytes.size()),
                                           url, nullptr, XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING));
}

// Elements that name another catalog. Documents nest no deeper than libxml2 lets them.
void CollectReferences(const xmlNode *element, std::vector<xmlNode *> &found) {
  for (const xmlNode *each = NextElement(element); each; each = NextElement(each->next)) {
    if (!Attribute(*each, "catalog").empty())
      found.push_back(const_cast<xmlNode *>(each));
    CollectReferences(each->children, found);
  }
}

std::string TargetOf(const xmlDoc *document, const xmlNode &element) {
  const std::string base = TakeXmlText(xmlNodeGetBase(document, &element));
  const std::string target = Attribute(element, "catalog");
  return TakeXmlText(
      xmlBuildURI(reinterpret_cast<const xmlChar *>(target.c_str()), reinterpret_cast<const xmlChar *>(base.c_str())));
}

bool IsLocal(std::string_view url) { return kit::UrlScheme(url).empty() || kit::IsFileUrl(url); }

} // namespace

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
  if (!IsLocal(url))
    return nullptr;
  const std::string path = kit::RealPath(kit::UrlToPath(url));
  const Document document = ReadQuietly(path, url);
  std::vector<xmlNode *> elements;
  if (document)
    CollectReferences(xmlDocGetRootElement(document.Get()), elements);
  bool isWhole = true;
  for (xmlNode *element : elements)
    if (current->MustLeaveOut(path, TargetOf(document.Get(), *element))) {
      // A group refers to nothing by itself.
      xmlNodeSetName(element, reinterpret_cast<const xmlChar *>("group"));
      isWhole = false;
    }
  if (isWhole)
    return __xmlParserInputBufferCreateFilename(url, encoding);
  xmlChar *text = nullptr;
  int size = 0;
  xmlDocDumpMemory(document.Get(), &text, &size);
  const auto owned = kit::Handle<xmlChar, [](xmlChar *held) { xmlFree(held); }>::Adopt(text);
  return xmlParserInputBufferCreateMem(reinterpret_cast<const char *>(owned.Get()), size, encoding);
}

bool CatalogFiles::MustLeaveOut(const std::string &file, const std::string &url) {
  if (!IsLocal(url)) {
    warning(file, file + ": catalog: " + url + " is not read: catalogs do not come from the network");
    return true;
  }
  const std::string target = kit::RealPath(kit::UrlToPath(url));
  if (Leads(target, file)) {
    hasCycle = true;
    return true;
  }
  references[file].insert(target);
  return false;
}

bool CatalogFiles::Leads(const std::string &from, const std::string &to) const {
  std::set<std::string> seen = {from};
  std::vector<std::string> waiting = {from};
  while (!waiting.empty()) {
    const std::string file = std::move(waiting.back());
    waiting.pop_back();
    if (file == to)
      return true;
    if (const auto found = references.find(file); found != references.end())
      for (const std::string &next : found->second)
        if (seen.insert(next).second)
          waiting.push_back(next);
  }
  return false;
}

} // namespace host
