#include "host/documents/documents.h"

#include "kit/paths.h"

#include <algorithm>

namespace host {

Document *Documents::Open(const std::string &path, const std::string &asName, std::string &error) {
  const std::string absolute = kit::AbsolutePath(kit::UrlToPath(path));
  const auto known = std::ranges::find(documents, absolute, [](const auto &each) { return each->path; });
  if (known != documents.end())
    return known->get();
  if (!kit::IsFile(absolute)) {
    error = kit::IsFolder(absolute) ? absolute + " is a folder, not a document" : "there is no file " + absolute;
    return nullptr;
  }
  Document document;
  document.object = nextObject++;
  document.source = RecogniseComponentSource(absolute);
  document.path = absolute;
  document.name = asName.empty() ? kit::FileNameOf(absolute) : asName;
  return documents.emplace_back(std::make_unique<Document>(std::move(document))).get();
}

Document *Documents::Find(V_ObjectT object) {
  const auto found = std::ranges::find(documents, object, [](const auto &each) { return each->object; });
  return found == documents.end() ? nullptr : found->get();
}

V_ObjectT Documents::After(V_ObjectT object) const {
  const auto next = std::ranges::upper_bound(documents, object, {}, [](const auto &each) { return each->object; });
  return next == documents.end() ? 0 : (*next)->object;
}

void Documents::Activate(V_ObjectT object) {
  const Document *document = Find(object);
  const bool isBook = document && document->source == ComponentSource::Book;
  activeBook = isBook ? object : 0;
  activeDocument = document && !isBook ? object : 0;
}

void Documents::Close(V_ObjectT object) {
  for (V_ObjectT *active : {&activeDocument, &activeBook})
    if (*active == object)
      *active = 0;
  std::erase_if(documents, [object](const auto &each) { return each->object == object; });
}

} // namespace host
