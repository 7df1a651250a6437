#include "host/desktop/ui_thread.h"

#include <condition_variable>
#include <mutex>

namespace desktop {

namespace {

// One lock for everything that crosses between the two threads, so that every wait can also end when the windows go.
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

bool WaitFor(std::chrono::seconds maxTime, const std::function<bool()> &isDone) {
  std::unique_lock lock(mutex);
  return changed.wait_for(lock, maxTime, isDone);
}

void ChangeShared(const std::function<void()> &change) {
  {
    const std::lock_guard lock(mutex);
    change();
  }
  changed.notify_all();
}

} // namespace desktop
