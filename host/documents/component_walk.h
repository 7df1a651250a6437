// The components of a book or a DITA map, in document order.
//
// A book is an XML file <book><component href="..."/>...</book>, its references relative to the file. A map is walked
// through its topic references; nested maps are yielded and followed, keys are resolved as the whole map defines them,
// "scope", "format" and "processing-role" pass down. Each file is yielded once, whether it exists or not, so a map that
// includes itself comes to an end. No DTD is read.
#ifndef HOST_DOCUMENTS_COMPONENT_WALK_H
#define HOST_DOCUMENTS_COMPONENT_WALK_H

#include <string>
#include <vector>

namespace host {

enum class ComponentSource { None, Book, DitaMap };

// What the file is, by its root element, its public identifier, or, when it cannot be read, its extension.
[[nodiscard]] ComponentSource RecogniseComponentSource(const std::string &path);

struct WalkChoice {
  bool withExternal = false; // other scopes than local, other formats than DITA
  bool withResourceOnly = false;
};

struct ComponentList {
  std::vector<std::string> paths;    // absolute; an external one as it is written
  std::vector<std::string> problems; // "file:line:column: message" of what could not be read
};

[[nodiscard]] ComponentList ListComponents(const std::string &path, ComponentSource source, WalkChoice choice);

} // namespace host

#endif
