#include "kit/sync_folder.h"

#include "kit/system_call.h"

#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace kit {

namespace {

int SyncOpened(int folder) {
  const int code = Repeat([folder] { return fsync(folder); }) == 0 ? 0 : errno;
  close(folder);
  return code == EINVAL || code == ENOTSUP || code == ENOSYS ? 0 : code;
}

} // namespace

std::string SyncFolder(const std::string &folder) {
  const int handle = Repeat([&] { return open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
  if (handle < 0 && errno == EACCES) {
    // It may be written to but not be read, so it cannot be synced by itself.
    sync();
    return {};
  }
  const int code = handle < 0 ? errno : SyncOpened(handle);
  return code == 0 ? std::string() : folder + ": " + std::generic_category().message(code);
}

} // namespace kit
