#include "host/desktop/host_thread.h"

#include "host/guard.h"

#include <utility>

namespace desktop {

HostThread::HostThread() : thread([this] { Run(); }) {}

HostThread::~HostThread() {
  {
    const std::lock_guard lock(mutex);
    ending = true;
  }
  changed.notify_one();
  thread.join();
}

void HostThread::Post(Task task) {
  {
    const std::lock_guard lock(mutex);
    tasks.push_back(std::move(task));
  }
  changed.notify_one();
}

void HostThread::Run() {
  for (;;) {
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return ending || !tasks.empty(); });
    if (tasks.empty())
      return;
    const Task task = std::move(tasks.front());
    tasks.pop_front();
    lock.unlock();
    host::Guarded(task);
  }
}

} // namespace desktop
