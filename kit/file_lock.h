// An advisory lock for changing a file that is replaced by rename: the file itself cannot carry it, so an empty file
// beside it does, for as long as the lock is held. Programs that do not ask for the lock are not stopped by it, and
// readers need none.
#ifndef KIT_FILE_LOCK_H
#define KIT_FILE_LOCK_H

#include <chrono>
#include <string>

namespace kit {

class FileLock {
public:
  // Unavailable: the folder takes no file, or its file system knows no locks; the work goes on as it did without locks.
  enum class State { Held, Busy, Unavailable };

  // Waits at most that long while another process, or another lock of this one, holds it. The links of the path are
  // followed, so all names of a file share one lock.
  FileLock(const std::string &path, std::chrono::milliseconds maxWait);
  FileLock(const FileLock &) = delete;
  FileLock &operator=(const FileLock &) = delete;
  ~FileLock();

  [[nodiscard]] State GetState() const { return state; }
  // The file that carries the lock.
  [[nodiscard]] const std::string &Path() const { return lockPath; }

private:
  [[nodiscard]] State TryOnce();

  std::string lockPath;
  State state = State::Unavailable;
  int file = -1;
};

} // namespace kit

#endif
