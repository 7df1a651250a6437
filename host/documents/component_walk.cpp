#include "host/documents/component_walk.h"

#include "host/documents/dita_map.h"
#include "kit/paths.h"
#include "kit/text.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <set>
#include <system_error>

namespace host {

namespace {

// Bounds the recursion: no real document nests as deeply.
constexpr int maxNesting = 200;

bool IsMapOutline(const XmlOutline &outline) {
  static constexpr std::array<std::string_view, 3> roots = {"map", "bookmap", "subjectScheme"};
  const std::string &id = outline.publicId;
  return (outline.rootNamespace.empty() && std::ranges::find(roots, outline.root) != roots.end()) ||
         (id.find("DITA") != std::string::npos && id.find("Map//") != std::string::npos);
}

class Walker {
public:
  explicit Walker(WalkChoice chosen) : choice(chosen) {}

  ComponentList Walk(const std::string &path, ComponentSource source) {
    // The file itself is where the caller begins; a reference back to it is no component.
    Visit(path);
    Descend(path, source, 0);
    list.problems.insert(list.problems.end(), files.problems.begin(), files.problems.end());
    return std::move(list);
  }

private:
  void Descend(const std::string &path, ComponentSource source, int depth) {
    if (depth > maxNesting) {
      list.problems.push_back(path + ": nested too deeply, its components are left out");
    } else if (source == ComponentSource::DitaMap) {
      const KeySpace space(files, path);
      FollowMap(path, {}, space, depth);
    } else if (source == ComponentSource::Book) {
      FollowBook(path, depth);
    }
  }

  void FollowBook(const std::string &path, int depth) {
    const xmlNode *root = files.FindRoot(path);
    for (const xmlNode *child = root ? NextElement(root->children) : nullptr; child; child = NextElement(child->next)) {
      const std::string component =
          LocalName(*child) == "component" ? ResolveHref(Attribute(*child, "href"), path) : std::string();
      if (component.empty())
        continue;
      if (Yield(component))
        Descend(component, RecogniseComponentSource(component), depth + 1);
    }
  }

  void FollowMap(const std::string &path, const Inherited &inherited, const KeySpace &keys, int depth) {
    const xmlNode *root = files.FindRoot(path);
    for (const xmlNode *child = root ? NextElement(root->children) : nullptr; child; child = NextElement(child->next))
      FollowElement(*child, inherited, path, keys, depth + 1);
  }

  void FollowElement(const xmlNode &element, const Inherited &inherited, const std::string &mapPath,
                     const KeySpace &keys, int depth) {
    if (!HoldsReferences(element))
      return;
    const TopicReference reference = ReadReference(element, inherited, mapPath, &keys);
    if (IsWanted(reference)) {
      const bool isNew = Yield(reference.target);
      if (isNew && reference.kind == TargetKind::Map && depth <= maxNesting)
        FollowMap(reference.target, reference.passedDown, keys, depth);
    }
    for (const xmlNode *child = NextElement(element.children); child; child = NextElement(child->next))
      FollowElement(*child, reference.passedDown, mapPath, keys, depth + 1);
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
  bool Visit(const std::string &path) {
    std::error_code error;
    const std::filesystem::path real = std::filesystem::weakly_canonical(path, error);
    return visited.insert(error ? path : real.string()).second;
  }

  WalkChoice choice;
  DitaMapFiles files;
  std::set<std::string> visited;
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
