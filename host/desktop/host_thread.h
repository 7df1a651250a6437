// The thread of the session and the client, beside the thread of the windows. Tasks run in the order of posting.
#ifndef HOST_DESKTOP_HOST_THREAD_H
#define HOST_DESKTOP_HOST_THREAD_H

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace desktop {

class HostThread {
public:
  using Task = std::function<void()>;

  HostThread();
  // Waits until all that was posted has run.
  ~HostThread();
  HostThread(const HostThread &) = delete;
  HostThread &operator=(const HostThread &) = delete;

  void Post(Task task);

private:
  void Run();

  std::mutex mutex;
  std::condition_variable changed;
  std::deque<Task> tasks;
  bool ending = false;
  std::thread thread; // last: it uses the rest
};

} // namespace desktop

#endif
