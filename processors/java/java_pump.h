// Two threads that take turns: the host's thread gives work to the Java thread and waits; while it waits, it carries
// out whatever the Java thread asks of the host, in order, and the Java thread waits for the answer. So no kit call is
// ever made from another thread, and stylesheets that recurse deeply get a stack of their own.
#ifndef PROCESSORS_JAVA_JAVA_PUMP_H
#define PROCESSORS_JAVA_JAVA_PUMP_H

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <pthread.h>
#include <vector>

namespace processors {

class JavaPump {
public:
  using Task = std::function<void()>;
  using Condition = std::function<bool()>;

  JavaPump() = default;
  JavaPump(const JavaPump &) = delete;
  JavaPump &operator=(const JavaPump &) = delete;
  ~JavaPump() { Stop(); }

  // From the host's thread: runs `task` on the Java thread, which is started when it does not run yet, and returns when
  // it is done. False when the thread cannot be started, or was abandoned. Tasks must not throw. `mustGiveUp` is asked
  // several times a second, and abandons the thread; the task may go on then, and must own what it touches.
  [[nodiscard]] bool RunOnJava(Task task, const Condition &mustGiveUp = {});
  // From the Java thread, or another one that it started, inside a task; dropped when there is none.
  void RunOnHost(const Task &call);
  // The same without waiting for it, which is many times faster for many calls: it is carried out within some
  // milliseconds, in order, and before whatever else is asked of the host. `size` is what it holds, in bytes.
  void LeaveToHost(Task call, size_t size);
  // From any thread: the Java thread will not return. The host's thread stops waiting for it, and
  // nothing more can be run.
  void Abandon();
  // Waits for the Java thread to end, unless it was abandoned.
  void Stop();

private:
  [[nodiscard]] bool Start();
  void Work();
  void AwaitNews(std::unique_lock<std::mutex> &lock, const Condition &mustGiveUp);
  void AwaitMoreLeft(std::unique_lock<std::mutex> &lock);
  void RunLeft(std::unique_lock<std::mutex> &lock);
  [[nodiscard]] bool HasNews() const { return !task || call || !left.empty() || isAbandoned; }
  [[nodiscard]] bool IsFull() const;

  std::mutex mutex;
  std::condition_variable changed;
  std::shared_ptr<const Task> task; // waits for the Java thread, or is being run there
  const Task *call = nullptr;       // waits for the host's thread
  std::vector<Task> left;           // for the host's thread, before `call`
  size_t sizeOfLeft = 0;
  bool isStopping = false;
  bool isRunning = false;
  bool isAbandoned = false;
  std::chrono::steady_clock::time_point nextQuestion; // to the condition
  pthread_t thread{};
};

} // namespace processors

#endif
