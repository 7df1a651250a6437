#include "host/documents/dita_map.h"

#include "kit/paths.h"
#include "kit/text.h"

#include <algorithm>
#include <array>
#include <set>
#include <sstream>
#include <utility>

namespace host {

namespace {

// Defaults that a DTD would bring; none is read here.
struct ElementDefault {
  std::string_view element;
  std::string_view format;
  std::string_view role;
};

constexpr std::string_view resourceOnly = "resource-only";

constexpr std::array elementDefaults = {
    ElementDefault{"keydef", "", resourceOnly},     ElementDefault{"mapresources", "", resourceOnly},
    ElementDefault{"subjectdef", "", resourceOnly}, ElementDefault{"anchorref", "", resourceOnly},
    ElementDefault{"schemeref", "ditamap", ""},     ElementDefault{"mapref", "ditamap", ""},
    ElementDefault{"topicsetref", "ditamap", ""},   ElementDefault{"ditavalref", "ditaval", ""},
};

constexpr std::array<std::string_view, 13> referenceFree = {
    "topicmeta", "bookmeta",    "metadata", "title",     "booktitle", "booklibrary", "mainbooktitle",
    "navtitle",  "searchtitle", "linktext", "shortdesc", "data",      "data-about"};

constexpr std::array<std::string_view, 4> ditaExtensions = {"", "dita", "xml", "ditabase"};

std::string OneOf(std::string first, std::string_view second) {
  return first.empty() ? std::string(second) : std::move(first);
}

TargetKind KindOf(const std::string &target, const std::string &scope, const std::string &format) {
  if (target.empty())
    return TargetKind::None;
  if ((!scope.empty() && scope != "local") || !kit::IsAbsolutePath(target))
    return TargetKind::External;
  if (kit::EqualsIgnoreCase(format, "ditamap"))
    return TargetKind::Map;
  return kit::EqualsIgnoreCase(format, "dita") ? TargetKind::Topic : TargetKind::External;
}

std::string FormatOf(const std::string &target) {
  const std::string extension = kit::ExtensionOf(target);
  const auto matches = [&](std::string_view each) { return kit::EqualsIgnoreCase(each, extension); };
  return std::ranges::any_of(ditaExtensions, matches) ? "dita" : extension;
}

// Without the element that it names inside a topic.
std::string_view BareKey(std::string_view key) { return key.substr(0, key.find('/')); }

} // namespace

std::string ResolveHref(std::string_view href, const std::string &fromPath) {
  if (kit::IsFileUrl(href))
    return kit::AbsolutePath(kit::UrlToPath(href));
  if (!kit::UrlScheme(href).empty())
    return std::string(href);
  const std::string_view file = href.substr(0, href.find_first_of("?#"));
  if (file.empty())
    return {};
  std::string decoded = kit::UrlToPath("file:" + std::string(file));
  std::ranges::replace(decoded, '\\', '/');
  return kit::AbsolutePath(kit::IsAbsolutePath(decoded) ? decoded : kit::JoinPath(kit::FolderOf(fromPath), decoded));
}

const xmlNode *DitaMapFiles::FindRoot(const std::string &path) {
  const auto [entry, isNew] = files.try_emplace(path);
  if (isNew && kit::IsFile(path)) {
    entry->second = ReadXmlFile(path);
    if (!entry->second.problem.empty())
      problems.push_back(entry->second.problem);
  }
  return entry->second.document ? xmlDocGetRootElement(entry->second.document.Get()) : nullptr;
}

KeySpace::KeySpace(DitaMapFiles &files, const std::string &rootMap) : waiting{rootMap} {
  std::set<std::string> seen;
  for (size_t next = 0; next < waiting.size(); ++next) {
    const std::string path = waiting[next];
    if (!seen.insert(path).second)
      continue;
    if (const xmlNode *root = files.FindRoot(path))
      CollectFrom(root, path);
  }
  Settle();
}

// In document order. The elements around the current one are kept here and not on the stack of the thread.
void KeySpace::CollectFrom(const xmlNode *root, const std::string &mapPath) {
  struct Siblings {
    const xmlNode *next;
    Inherited inherited;
  };
  const TopicReference whole = ReadReference(*root, {}, mapPath, nullptr);
  Collect(*root, whole);
  std::vector<Siblings> open = {{NextElement(root->children), whole.passedDown}};
  while (!open.empty()) {
    const xmlNode *element = open.back().next;
    if (!element) {
      open.pop_back();
      continue;
    }
    open.back().next = NextElement(element->next);
    if (!HoldsReferences(*element))
      continue;
    const TopicReference reference = ReadReference(*element, open.back().inherited, mapPath, nullptr);
    Collect(*element, reference);
    open.push_back({NextElement(element->children), reference.passedDown});
  }
}

void KeySpace::Collect(const xmlNode &element, const TopicReference &reference) {
  std::istringstream names(Attribute(element, "keys"));
  for (std::string name; names >> name;)
    keys.try_emplace(name, Key{.definition = {reference.target, Attribute(element, "keyref"),
                                              Attribute(element, "scope"), Attribute(element, "format")}});
  if (reference.kind == TargetKind::Map)
    waiting.push_back(reference.target);
}

KeySpace::Key *KeySpace::Look(std::string_view key) {
  const auto found = keys.find(BareKey(key));
  return found == keys.end() ? nullptr : &found->second;
}

// Once and for all: thousands of keys may be defined by each other, in a ring at that, which leads nowhere.
void KeySpace::Settle() {
  for (auto &[name, first] : keys) {
    std::vector<Key *> chain;
    const KeyDefinition *end = nullptr;
    for (Key *at = &first; at; at = Look(at->definition.nextKey)) {
      if (std::exchange(at->isSettled, true)) {
        end = at->end;
        break;
      }
      chain.push_back(at);
      if (!at->definition.href.empty() || at->definition.nextKey.empty()) {
        end = &at->definition;
        break;
      }
    }
    for (Key *each : chain)
      each->end = end;
  }
}

const KeyDefinition *KeySpace::Find(std::string_view key) const {
  const auto found = keys.find(BareKey(key));
  return found == keys.end() ? nullptr : found->second.end;
}

bool HoldsReferences(const xmlNode &element) {
  return std::ranges::find(referenceFree, LocalName(element)) == referenceFree.end();
}

TopicReference ReadReference(const xmlNode &element, const Inherited &inherited, const std::string &mapPath,
                             const KeySpace *keys) {
  const std::string name = LocalName(element);
  const auto known = std::ranges::find(elementDefaults, name, &ElementDefault::element);
  const ElementDefault standard = known == elementDefaults.end() ? ElementDefault{} : *known;
  std::string scope = Attribute(element, "scope");
  std::string format = OneOf(Attribute(element, "format"), standard.format);
  TopicReference reference;
  reference.passedDown.role = OneOf(OneOf(Attribute(element, "processing-role"), standard.role), inherited.role);
  reference.isResourceOnly = reference.passedDown.role == resourceOnly;

  if (const std::string href = Attribute(element, "href"); !href.empty())
    reference.target = ResolveHref(href, mapPath);
  // A key that leads somewhere is stronger than the address beside it.
  const KeyDefinition *key = keys ? keys->Find(Attribute(element, "keyref")) : nullptr;
  if (key && !key->href.empty()) {
    reference.target = key->href;
    scope = OneOf(scope, key->scope);
    format = OneOf(format, key->format);
  }
  scope = OneOf(scope, inherited.scope);
  if (format.empty() && !kit::EqualsIgnoreCase(FormatOf(reference.target), "ditamap"))
    format = inherited.format;
  reference.passedDown.scope = scope;
  // "ditamap" says what this reference points to, not what those inside it do.
  reference.passedDown.format = kit::EqualsIgnoreCase(format, "ditamap") ? inherited.format : format;
  reference.kind = KindOf(reference.target, scope, OneOf(format, FormatOf(reference.target)));
  return reference;
}

} // namespace host
