#include "kit/atomic_file.h"

#include "kit/paths.h"
#include "kit/unfinished_files.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace kit {

namespace {

constexpr int maxNames = 1000;

// Why the target cannot be replaced, as a system error; 0 when it can.
int CheckTarget(const std::string &target, const struct stat &existing) {
  if (S_ISDIR(existing.st_mode))
    return EISDIR;
  if (!S_ISREG(existing.st_mode))
    return EINVAL;
  // A rename would pass over a read-only file without asking.
  return IsWritable(target) ? 0 : EACCES;
}

// The owner can be given only by a privileged process, the group only to one of the caller's: what cannot be kept is
// not worth a failed save. The mode comes last, since a change of owner clears bits of it.
int KeepAttributes(int file, const struct stat &existing) {
  if (fchown(file, existing.st_uid, existing.st_gid) != 0 && fchown(file, static_cast<uid_t>(-1), existing.st_gid) != 0)
    errno = 0;
  return fchmod(file, existing.st_mode & 07777) == 0 ? 0 : errno;
}

// Makes the rename last; a file system that cannot sync a folder has its own way of keeping order.
void SyncFolder(const std::string &folder) {
  const int handle = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (handle < 0)
    return;
  fsync(handle);
  close(handle);
}

} // namespace

AtomicFile::AtomicFile(const std::string &path) : target(FollowLinks(path)) { Open(); }

AtomicFile::~AtomicFile() {
  if (file >= 0)
    close(file);
  if (!written.empty())
    unlink(written.c_str());
}

bool AtomicFile::Fail(const std::string &path, int code) {
  if (error.empty())
    error = path + ": " + std::generic_category().message(code);
  return false;
}

void AtomicFile::Open() {
  struct stat existing {};
  const bool exists = stat(target.c_str(), &existing) == 0;
  if (!exists && errno != ENOENT) {
    Fail(target, errno);
    return;
  }
  if (const int code = exists ? CheckTarget(target, existing) : 0; code != 0) {
    Fail(target, code);
    return;
  }
  // What replaces a private file must not be readable for a moment either; a new file gets what the umask leaves.
  const mode_t mode = exists ? 0600 : 0666;
  const std::string stem = JoinPath(FolderOf(target), OwnUnfinishedPrefix());
  for (int name = 0; file < 0 && name < maxNames; ++name) {
    written = stem + std::to_string(name);
    file = open(written.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
    if (file < 0 && errno != EEXIST)
      break;
  }
  if (file < 0) {
    Fail(target, errno);
    written.clear();
    return;
  }
  if (const int code = exists ? KeepAttributes(file, existing) : 0; code != 0)
    Fail(target, code);
}

bool AtomicFile::Write(std::string_view bytes) {
  while (error.empty() && !bytes.empty()) {
    const ssize_t count = write(file, bytes.data(), bytes.size());
    if (count < 0 && errno != EINTR)
      return Fail(target, errno);
    bytes.remove_prefix(count < 0 ? 0 : static_cast<size_t>(count));
  }
  return error.empty();
}

bool AtomicFile::WriteFile(const std::string &source) {
  if (!error.empty())
    return false;
  const int from = open(source.c_str(), O_RDONLY | O_CLOEXEC);
  if (from < 0)
    return Fail(source, errno);
  std::array<char, 1 << 16> buffer{};
  ssize_t count = 0;
  while (error.empty() && (count = read(from, buffer.data(), buffer.size())) != 0) {
    if (count > 0)
      (void)Write({buffer.data(), static_cast<size_t>(count)});
    else if (errno != EINTR)
      Fail(source, errno);
  }
  close(from);
  return error.empty();
}

bool AtomicFile::Commit() {
  if (!error.empty() || file < 0)
    return false;
  if (fsync(file) != 0)
    return Fail(target, errno);
  // Some file systems report a full disk only here.
  if (close(std::exchange(file, -1)) != 0)
    return Fail(target, errno);
  if (rename(written.c_str(), target.c_str()) != 0)
    return Fail(target, errno);
  written.clear();
  SyncFolder(FolderOf(target));
  return true;
}

} // namespace kit
