#include "host/desktop/ui_thread.h"

#include <condition_variable>
#include <mutex>

namespace desktop {

namespace {

// One lock for all that crosses between the two threads: it is held for moments only, and a wait for anything can end
// because of the windows.
std::mutex mutex;
std::condition_variable changed;
bool areGone = false;

} // namespace

bool AreWindowsGone() {
  const std::lock_guard lock(mutex);
  return areGone;
}

void LoseWindows() {
  ChangeShared([] { areGone = true; });
}

bool WaitForWindows(const std::function<bool()> &isDone) {
  std::unique_lock lock(mutex);
  changed.wait(lock, [&] { return areGone || isDone(); });
  return isDone();
}

bool WaitFor(std::chrono::seconds longest, const std::function<bool()> &isDone) {
  std::unique_lock lock(mutex);
  return changed.wait_for(lock, longest, isDone);
}

void ChangeShared(const std::function<void()> &change) {
  {
    const std::lock_guard lock(mutex);
    change();
  }
  changed.notify_all();
}

} // namespace desktop
