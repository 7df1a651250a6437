// Two threads that take turns. Everything in Java runs on one thread of the bridge, which has a stack large enough for
// deeply recursive stylesheets; the host's thread waits meanwhile and carries out what Java asks of the host. So the
// host never sees a call from a thread that is not its own.
#ifndef BRIDGE_PUMP_H
#define BRIDGE_PUMP_H

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>

namespace bridge {

class Pump {
public:
  using Work = std::function<void()>;

  // One per process, never destroyed: Java's thread may outlive everything else.
  [[nodiscard]] static Pump &GetInst();

  enum class Outcome { Done, ThreadLost };

  // Host's thread: runs `job` on Java's thread and serves CallHost until it is done. The thread starts with the first
  // job. ThreadLost when there is no thread, or when Java took it down in the middle of the job.
  [[nodiscard]] Outcome Run(const Work &job);

  // Any other thread: has `work` carried out on the host's thread and returns afterwards. False, with nothing done,
  // when the host waits for nothing.
  bool CallHost(const Work &work);

  // Java's thread, from the virtual machine's exit: gives the job up and never returns.
  [[noreturn]] void AbandonThread();

private:
  Pump() = default;
  static void *RunThread(void *pump);
  [[nodiscard]] bool StartThread();
  void TakeJobs();

  std::mutex mutex;
  std::condition_variable changed;
  const Work *job = nullptr;
  const Work *call = nullptr;
  bool isRunning = false; // a job was handed over and is not done
  bool hasThread = false;
  bool isLost = false;
};

} // namespace bridge

#endif
