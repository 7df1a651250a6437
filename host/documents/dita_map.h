// One DITA map file as a tree of topic references with what passes down already applied, and the keys of a map with
// everything that it includes. Used by the component walk only.
#ifndef HOST_DOCUMENTS_DITA_MAP_H
#define HOST_DOCUMENTS_DITA_MAP_H

#include "host/documents/xml_file.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// What passes from a topic reference to those inside it, and from a map reference to the map.
struct Inherited {
  std::string scope;
  std::string format;
  std::string role;
};

enum class TargetKind { None, Topic, Map, External };

struct TopicReference {
  std::string target; // absolute path, or the reference as written when it is external
  TargetKind kind = TargetKind::None;
  bool isResourceOnly = false;
  Inherited passedDown;
};

struct KeyDefinition {
  std::string href; // absolute path or a URL; may be empty
  std::string nextKey;
  std::string scope;
  std::string format;
};

// A file that is read once, however often it is referenced.
class DitaMapFiles {
public:
  // Null when nothing of it can be read. The first fault of each file is added to `problems`.
  [[nodiscard]] const xmlNode *FindRoot(const std::string &path);
  std::vector<std::string> problems;

private:
  std::map<std::string, XmlDocument> files;
};

// The keys of a root map: the first definition counts, those of a map before those of the maps it includes.
class KeySpace {
public:
  KeySpace(DitaMapFiles &files, const std::string &rootMap);
  // Follows keys that are defined by other keys; null when the key leads nowhere.
  [[nodiscard]] const KeyDefinition *Find(std::string_view key) const;

private:
  void CollectFrom(const xmlNode *root, const std::string &mapPath);
  void Collect(const xmlNode &element, const TopicReference &reference);
  void Settle();

  struct Key {
    KeyDefinition definition;
    const KeyDefinition *end = nullptr; // where it leads, of keys that define keys
    bool isSettled = false;
  };
  [[nodiscard]] Key *Look(std::string_view key);

  std::map<std::string, Key, std::less<>> keys;
  std::vector<std::string> waiting; // included maps not yet read
};

// What a reference in a map or a book points to: an absolute path, without fragment and escapes, or a URL that is no
// file's; empty for a reference into the file itself.
[[nodiscard]] std::string ResolveHref(std::string_view href, const std::string &fromPath);

// Whether an element can hold topic references at all; titles and metadata refer to other things.
[[nodiscard]] bool HoldsReferences(const xmlNode &element);

// `keys` may be null while they are being collected.
[[nodiscard]] TopicReference ReadReference(const xmlNode &element, const Inherited &inherited,
                                           const std::string &mapPath, const KeySpace *keys);

} // namespace host

#endif
