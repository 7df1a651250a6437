#include "kit/file_lock.h"

#include "kit/paths.h"
#include "kit/system_call.h"
#include "kit/text.h"
#include "kit/unfinished_files.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace kit {

namespace {

constexpr std::chrono::milliseconds pause{10};
// Longer names share a lock, which does no harm.
constexpr size_t maxNameSize = 200;

std::string LockPathOf(const std::string &path) {
  const std::string target = FollowLinks(path);
  return JoinPath(FolderOf(target),
                  std::string(unfinishedPrefix) + "lock-" + std::string(Truncate(FileNameOf(target), maxNameSize)));
}

// A new one may be used by everybody who may use the folder. Network file systems want write access for a lock, a file
// of another person may refuse it.
int OpenLockFile(const std::string &path) {
  constexpr int flags = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
  int file = Repeat([&] { return open(path.c_str(), O_RDWR | flags); });
  if (file < 0 && errno == EACCES)
    file = Repeat([&] { return open(path.c_str(), O_RDONLY | flags); });
  if (file >= 0 || errno != ENOENT)
    return file;
  file = Repeat([&] { return open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | flags, 0666); });
  if (file >= 0 && fchmod(file, 0666) != 0)
    errno = 0; // then only those that the umask lets
  return file;
}

// The last holder may have removed the file: a lock on a removed file excludes no other process.
bool IsStillThere(int file, const std::string &path) {
  struct stat locked {};
  struct stat named {};
  return fstat(file, &locked) == 0 && lstat(path.c_str(), &named) == 0 && locked.st_dev == named.st_dev &&
         locked.st_ino == named.st_ino;
}

} // namespace

FileLock::FileLock(const std::string &path, std::chrono::milliseconds maxWait) : lockPath(LockPathOf(path)) {
  const auto end = std::chrono::steady_clock::now() + maxWait;
  while ((state = TryOnce()) == State::Busy && std::chrono::steady_clock::now() < end)
    std::this_thread::sleep_for(pause);
}

FileLock::~FileLock() {
  if (state != State::Held)
    return;
  // While the lock is held, so that no other process can hold a lock on this file; see IsStillThere.
  unlink(lockPath.c_str());
  close(file);
}

FileLock::State FileLock::TryOnce() {
  file = OpenLockFile(lockPath);
  if (file < 0)
    return errno == EEXIST ? State::Busy : State::Unavailable;
  if (flock(file, LOCK_EX | LOCK_NB) == 0) {
    if (IsStillThere(file, lockPath))
      return State::Held;
    close(std::exchange(file, -1));
    return State::Busy;
  }
  const bool isHeld = errno == EWOULDBLOCK || errno == EINTR;
  // A file that cannot be locked would only be left behind.
  if (!isHeld)
    unlink(lockPath.c_str());
  close(std::exchange(file, -1));
  return isHeld ? State::Busy : State::Unavailable;
}

} // namespace kit
