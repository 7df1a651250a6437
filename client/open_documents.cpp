#include "client/open_documents.h"

#include "kit/paths.h"
#include "kit/values.h"

#include <utility>

namespace client {

namespace {

template <class Visit> void ForEachOpenDocument(Visit visit) {
  for (V_ObjectT document = V_ApiGetObject(V_SESSION, V_SP_FIRST_OPEN_DOCUMENT); document != 0;
       document = V_ApiGetObject(document, V_OP_NEXT_OPEN_DOCUMENT))
    visit(document);
}

} // namespace

V_ObjectT ActiveDocument() { return V_ApiGetObject(V_SESSION, V_SP_ACTIVE_DOCUMENT); }

V_ObjectT ActiveBook() { return V_ApiGetObject(V_SESSION, V_SP_ACTIVE_BOOK); }

V_ObjectT ActiveBookOrDocument() {
  const V_ObjectT book = ActiveBook();
  return book ? book : ActiveDocument();
}

std::string DocumentPath(V_ObjectT document) {
  std::string path = kit::GetString(document, V_OP_FULL_NAME);
  return path.empty() ? kit::GetString(document, V_OP_LABEL) : path;
}

std::vector<std::string> ShownDocumentPaths() {
  std::vector<std::string> paths;
  ForEachOpenDocument([&](V_ObjectT document) {
    if (V_ApiGetInt(document, V_OP_TYPE) == V_TYPE_DOCUMENT && V_ApiGetInt(document, V_OP_SHOWN))
      paths.push_back(DocumentPath(document));
  });
  return paths;
}

std::set<std::string> UnsavedPaths() {
  std::set<std::string> paths;
  const auto add = [&](V_ObjectT document) {
    if (document && V_ApiGetInt(document, V_OP_MODIFIED))
      paths.insert(kit::AbsolutePath(DocumentPath(document)));
  };
  ForEachOpenDocument(add);
  add(ActiveBook());
  return paths;
}

std::vector<std::string> ComponentPaths(V_ObjectT bookOrMap) {
  std::vector<std::string> paths;
  if (!bookOrMap)
    return paths;
  if (std::string own = DocumentPath(bookOrMap); !own.empty())
    paths.push_back(std::move(own));
  V_WalkT *walk = V_ApiStartWalk(bookOrMap, V_WALK_ALL & ~(V_WALK_EXTERNAL | V_WALK_RESOURCE_ONLY));
  if (!walk)
    return paths;
  for (char *component = nullptr; V_ApiNextComponent(walk, &component); component = nullptr) {
    const kit::HostString path = kit::HostString::Adopt(component);
    if (!path.View().empty())
      paths.push_back(path.Text());
  }
  V_ApiEndWalk(walk);
  return paths;
}

} // namespace client
