#include "kit/atomic_file.h"

#include "kit/paths.h"
#include "kit/sync_folder.h"
#include "kit/system_call.h"
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
// not worth a failed save. Where the group is lost, the new one gets no more than all others have. The mode comes last,
// since a change of owner clears bits of it. False when the file system refuses the mode.
bool KeepAttributes(int file, const struct stat &existing) {
  struct stat own {};
  if (fstat(file, &own) != 0)
    return false;
  if (own.st_uid != existing.st_uid && fchown(file, existing.st_uid, static_cast<gid_t>(-1)) != 0)
    errno = 0;
  mode_t mode = existing.st_mode & 07777;
  if (own.st_gid != existing.st_gid && fchown(file, static_cast<uid_t>(-1), existing.st_gid) != 0)
    mode = (mode & 0707) | (mode & 07) << 3;
  // What has the right mode by itself, as on FAT, is not asked to take it.
  return fstat(file, &own) == 0 && ((own.st_mode & 07777) == mode || fchmod(file, mode) == 0);
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
  otherNames = exists ? static_cast<size_t>(existing.st_nlink) - 1 : 0;
  // What replaces a private file must not be readable for a moment either; a new file gets what the umask leaves.
  UnfinishedFile made = MakeUnfinishedFile(FolderOf(target), exists ? 0600 : 0666);
  file = made.file;
  if (file < 0) {
    Fail(target, errno);
    return;
  }
  written = std::move(made.path);
  hasLostPermissions = exists && !KeepAttributes(file, existing);
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
  const int from = Repeat([&] { return open(source.c_str(), O_RDONLY | O_CLOEXEC); });
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

bool AtomicFile::Commit(Durability durability) {
  if (!error.empty() || file < 0)
    return false;
  if (durability != Durability::None && Repeat([this] { return fsync(file); }) != 0)
    return Fail(target, errno);
  // Some file systems report a full disk only here. An interrupted one has closed the file.
  if (close(std::exchange(file, -1)) != 0 && errno != EINTR)
    return Fail(target, errno);
  if (rename(written.c_str(), target.c_str()) != 0)
    return Fail(target, errno);
  written.clear();
  if (durability == Durability::DataAndName)
    error = SyncFolder(FolderOf(target));
  return error.empty();
}

} // namespace kit
