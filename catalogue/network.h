// Catalogues on a network store: what is read and written is the host's local copy.
#ifndef CATALOGUE_NETWORK_H
#define CATALOGUE_NETWORK_H

#include <string>

namespace catalogue {

// The local copy of a network document; any other path as it is, and a network one that has no copy too.
[[nodiscard]] std::string LocalCopy(const std::string &resolvedPath);
// After a save: pushes the local copy of a network document back. True when there was nothing to push.
[[nodiscard]] bool PushBack(const std::string &resolvedPath);

} // namespace catalogue

#endif
