// What lies beside the shared object that the bridge is part of, and the class path made of it.
#ifndef BRIDGE_PROGRAM_FILES_H
#define BRIDGE_PROGRAM_FILES_H

#include <string>
#include <vector>

namespace bridge {

// The bridge's jar, the parser's, then the user's entries. Folders among those come last, the current one included:
// classes in front of them can be archived.
[[nodiscard]] std::vector<std::string> ComposeClassPath(const std::string &userEntries);

// Java's threads may run code of this library until the process ends, so a host that unloads it must not unmap it.
void KeepLoaded();

} // namespace bridge

#endif
