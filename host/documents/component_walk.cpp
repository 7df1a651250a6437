#include "host/documents/component_walk.h"

#include "host/documents/dita_map.h"
#include "kit/paths.h"
#include "kit/text.h"

#include <algorithm>
#include <array>
#include <memory>
#include <set>
#include <utility>

namespace host {

namespace {

bool IsMapOutline(const XmlOutline &outline) {
  static constexpr std::array<std::string_view, 3> roots = {"map", "bookmap", "subjectScheme"};
  const std::string &id = outline.publicId;
  return (outline.rootNamespace.empty() && std::ranges::find(roots, outline.root) != roots.end()) ||
         (id.find("DITA") != std::string::npos && id.find("Map//") != std::string::npos);
}

// Elements that are still to be followed: siblings of one file, from `next` on.
struct Siblings {
  const xmlNode *next = nullptr;
  std::string path;                               // of the file
  std::shared_ptr<const KeySpace> keys = nullptr; // of the root map; null in a book
  Inherited inherited = {};
};

class Walker {
public:
  explicit Walker(WalkChoice chosen) : choice(chosen) {}

  ComponentList Walk(const std::string &path, ComponentSource source) {
    // The file itself is where the caller begins; a reference back to it is no component.
    Visit(path);
    followed.insert(kit::RealPath(path));
    Enter(path, source);
    while (!open.empty())
      FollowNext();
    list.problems.insert(list.problems.end(), files.problems.begin(), files.problems.end());
    return std::move(list);
  }

private:
  void Enter(const std::string &path, ComponentSource source) {
    if (source == ComponentSource::None)
      return;
    const bool isMap = source == ComponentSource::DitaMap;
    Push({RootChildren(path), path, isMap ? std::make_shared<const KeySpace>(files, path) : nullptr});
  }

  void Push(Siblings siblings) {
    if (siblings.next)
      open.push_back(std::move(siblings));
  }

  // Documents nest as deeply as they like, so what is open is kept here and not on the stack of the thread.
  void FollowNext() {
    Siblings &siblings = open.back();
    const xmlNode &element = *siblings.next;
    siblings.next = NextElement(element.next);
    Siblings place = siblings;
    if (!siblings.next)
      open.pop_back();
    if (place.keys)
      FollowReference(element, std::move(place));
    else
      FollowComponent(element, place.path);
  }

  void FollowComponent(const xmlNode &element, const std::string &bookPath) {
    const std::string component =
        LocalName(element) == "component" ? ResolveHref(Attribute(element, "href"), bookPath) : std::string();
    if (!component.empty() && Yield(component))
      Enter(component, RecogniseComponentSource(component));
  }

  // What is pushed last is followed first: a nested map comes before the references inside the one that includes it.
  void FollowReference(const xmlNode &element, Siblings place) {
    if (!HoldsReferences(element))
      return;
    const TopicReference reference = ReadReference(element, place.inherited, place.path, place.keys.get());
    const auto keys = place.keys;
    Push({NextElement(element.children), std::move(place.path), keys, reference.passedDown});
    if (!IsWanted(reference))
      return;
    Yield(reference.target);
    // It may have been yielded for a reference that says it is no map.
    if (reference.kind == TargetKind::Map && followed.insert(kit::RealPath(reference.target)).second)
      Push({RootChildren(reference.target), reference.target, keys, reference.passedDown});
  }

  const xmlNode *RootChildren(const std::string &path) {
    const xmlNode *root = files.FindRoot(path);
    return root ? NextElement(root->children) : nullptr;
  }

  [[nodiscard]] bool IsWanted(const TopicReference &reference) const {
    return reference.kind != TargetKind::None && (choice.withExternal || reference.kind != TargetKind::External) &&
           (choice.withResourceOnly || !reference.isResourceOnly);
  }

  bool Yield(const std::string &path) {
    const bool isNew = Visit(path);
    if (isNew)
      list.paths.push_back(path);
    return isNew;
  }

  // Resolves links: a folder that links to itself gives one file any number of names.
  bool Visit(const std::string &path) { return visited.insert(kit::RealPath(path)).second; }

  WalkChoice choice;
  DitaMapFiles files;
  std::vector<Siblings> open;
  std::set<std::string> visited;
  std::set<std::string> followed; // maps
  ComponentList list;
};

} // namespace

ComponentSource RecogniseComponentSource(const std::string &path) {
  const std::optional<XmlOutline> outline = ReadXmlOutline(path, OutlineDepth::FirstChild);
  const std::string extension = kit::ExtensionOf(path);
  if (kit::EqualsIgnoreCase(extension, "ditamap") || kit::EqualsIgnoreCase(extension, "bookmap") ||
      (outline && IsMapOutline(*outline)))
    return ComponentSource::DitaMap;
  // Other vocabularies have a root of that name too; only ours goes on with components.
  const bool isBook = outline && outline->root == "book" && outline->firstChild == "component";
  return isBook ? ComponentSource::Book : ComponentSource::None;
}

ComponentList ListComponents(const std::string &path, ComponentSource source, WalkChoice choice) {
  return Walker(choice).Walk(path, source);
}

} // namespace host
