#include "host/documents/entity_catalogs.h"

#include "host/documents/xml_file.h"
#include "kit/paths.h"

#include <libxml/uri.h>

#include <algorithm>
#include <utility>

namespace host {

namespace {

const xmlChar *Xml(const std::string &text) { return reinterpret_cast<const xmlChar *>(text.c_str()); }
const xmlChar *XmlOrNull(const std::string &text) { return text.empty() ? nullptr : Xml(text); }

std::string MakeAbsolute(const std::string &systemId, const std::string &baseUri) {
  if (systemId.empty() || baseUri.empty())
    return systemId;
  const std::string base = kit::IsAbsolutePath(baseUri) ? kit::PathToUrl(baseUri) : baseUri;
  const std::string absolute = TakeXmlText(xmlBuildURI(Xml(systemId), Xml(base)));
  return absolute.empty() ? systemId : absolute;
}

// libxml2 reports to one place per thread; it is this listener only while a question is asked.
class ErrorListener {
public:
  using Sink = std::function<void(const xmlError &)>;
  explicit ErrorListener(Sink toCall) : sink(std::move(toCall)) {
    xmlSetStructuredErrorFunc(&sink, [](void *context, xmlErrorPtr error) {
      if (error)
        (*static_cast<Sink *>(context))(*error);
    });
  }
  ~ErrorListener() { xmlSetStructuredErrorFunc(nullptr, nullptr); }
  ErrorListener(const ErrorListener &) = delete;
  ErrorListener &operator=(const ErrorListener &) = delete;

private:
  Sink sink;
};

// libxml2 takes the path of a catalog for the base URL of what it says, which goes wrong with a blank or a "%" in it.
// So it gets a wrapper catalog that refers to the real one by a proper URL.
std::string MakeWrapperCatalog(const std::string &file) {
  std::string url = kit::PathToUrl(file);
  for (const auto &[letter, escape] : {std::pair{'&', "%26"}, std::pair{'\'', "%27"}})
    for (size_t at = 0; (at = url.find(letter, at)) != std::string::npos; ++at)
      url.replace(at, 1, escape);
  return "<catalog xmlns='urn:oasis:names:tc:entity:xmlns:xml:catalog'><nextCatalog catalog='" + url + "'/></catalog>";
}

// What libxml2 answers, as something that can be opened: a path that is there, or a URL of another kind.
std::string Usable(const std::string &answer) {
  if (!kit::IsFileUrl(answer) && !kit::IsAbsolutePath(answer))
    return answer;
  const std::string path = kit::UrlToPath(answer);
  return kit::IsFile(path) ? path : std::string();
}

} // namespace

EntityCatalogs::EntityCatalogs(std::vector<std::string> catalogFiles, Missing missingFiles, Warn warn)
    : paths(std::move(catalogFiles)), missing(missingFiles), warning(std::move(warn)) {}

EntityCatalogs::~EntityCatalogs() { Unload(); }

void EntityCatalogs::Unload() {
  catalogs.clear();
  // Or what is loaded next would be answered from these files.
  if (isLoaded)
    xmlCatalogCleanup();
  files.Clear();
  isLoaded = false;
}

std::string EntityCatalogs::Resolve(const std::string &publicId, const std::string &baseUri,
                                    const std::string &systemId) {
  const std::string key = publicId + '\n' + systemId + '\n' + baseUri.substr(0, baseUri.rfind('/') + 1);
  if (const auto known = answers.find(key); known != answers.end())
    return known->second;
  Load();
  const ErrorListener listener([this](const xmlError &error) { NoteError(error); });
  const CatalogFiles::Opening opening(files);
  return answers.emplace(key, LookUp(publicId, baseUri, systemId)).first->second;
}

std::string EntityCatalogs::LookUp(const std::string &publicId, const std::string &baseUri,
                                   const std::string &systemId) {
  const std::string absolute = MakeAbsolute(systemId, baseUri);
  const auto entity = [&](const std::string &system) {
    return AskEach(
        [&](xmlCatalogPtr catalog) { return xmlACatalogResolve(catalog, XmlOrNull(publicId), XmlOrNull(system)); });
  };
  const auto uri = [&](const std::string &address) {
    return address.empty()
               ? std::string()
               : AskEach([&](xmlCatalogPtr catalog) { return xmlACatalogResolveURI(catalog, Xml(address)); });
  };
  std::string found = entity(absolute);
  if (found.empty() && publicId.empty())
    found = uri(absolute);
  // Many catalogs list bare file names; they must not hide a file that lies beside the document.
  if (found.empty() && absolute != systemId && !kit::IsFile(kit::UrlToPath(absolute))) {
    found = entity(systemId);
    if (found.empty() && publicId.empty())
      found = uri(systemId);
  }
  return found;
}

template <class Ask> std::string EntityCatalogs::AskEach(Ask ask) {
  std::string answer;
  for (size_t index = 0; index < catalogs.size() && answer.empty(); ++index) {
    answer = Usable(TakeXmlText(ask(catalogs[index].handle.Get())));
    const std::string path = catalogs[index].path;
    if (files.TakeCycle())
      WarnOnce(path, path + ": catalog: it includes itself, maybe through another one");
    if (std::exchange(isTooDeep, false)) {
      WarnOnce(path, path + ": catalog: it includes others too deeply");
      Unload();
      Load();
    }
  }
  return answer;
}

void EntityCatalogs::NoteError(const xmlError &error) {
  if (error.code == XML_CATALOG_RECURSION) {
    isTooDeep = true;
  } else if (error.level >= XML_ERR_ERROR && error.file) {
    const std::string file = kit::UrlToPath(error.file);
    WarnOnce(file, DescribeXmlError(file, &error, "catalog: "));
  }
}

void EntityCatalogs::Load() {
  if (isLoaded)
    return;
  isLoaded = true;
  ReadLocalFilesOnly();
  xmlInitializeCatalog();
  for (const std::string &path : paths) {
    const std::string file = kit::UrlToPath(path);
    if (!kit::IsFile(file)) {
      if (missing == Missing::Reported)
        WarnOnce(file, file + ": catalog: there is no such file");
    } else {
      AnonymousFile wrapper(MakeWrapperCatalog(file));
      auto handle = kit::Handle<xmlCatalog, xmlFreeCatalog>::Adopt(xmlLoadACatalog(wrapper.Path().c_str()));
      catalogs.push_back({file, std::move(wrapper), std::move(handle)});
    }
  }
}

void EntityCatalogs::WarnOnce(const std::string &file, const std::string &line) {
  if (std::ranges::find(warnedAbout, file) != warnedAbout.end())
    return;
  warnedAbout.push_back(file);
  warning(line);
}

} // namespace host
