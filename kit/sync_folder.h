// Makes the names in a folder last: what was created in it or renamed into it is there after a power cut.
#ifndef KIT_SYNC_FOLDER_H
#define KIT_SYNC_FOLDER_H

#include <string>

namespace kit {

// Empty, or "folder: what the system says". A file system that has no such operation keeps its own order.
[[nodiscard]] std::string SyncFolder(const std::string &folder);

} // namespace kit

#endif
