#include "processors/java/java_pump.h"

#include <csignal>
#include <utility>

namespace processors {

namespace {

// Enough for recursion over long documents; endless recursion exhausts it within a second or two.
constexpr size_t stackSize = size_t{256} << 20;
constexpr auto questionInterval = std::chrono::milliseconds(200);
// The host's thread waits so long for more of what is left to it: to wake it for each would take most of the time.
constexpr auto collectingTime = std::chrono::milliseconds(10);
constexpr size_t maxLeft = 1000;
constexpr size_t maxSizeOfLeft = size_t{4} << 20;

} // namespace

bool JavaPump::Start() {
  if (isRunning || isAbandoned)
    return isRunning;
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, stackSize);
  // Signals are for the host's thread, which knows what Ctrl-C means.
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP})
    sigdelset(&all, fault);
  pthread_sigmask(SIG_BLOCK, &all, &before);
  const auto body = [](void *pump) -> void * {
    static_cast<JavaPump *>(pump)->Work();
    return nullptr;
  };
  isRunning = pthread_create(&thread, &attributes, body, this) == 0;
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  pthread_attr_destroy(&attributes);
  return isRunning;
}

void JavaPump::Work() {
  std::unique_lock lock(mutex);
  for (;;) {
    changed.wait(lock, [this] { return task || isStopping; });
    if (!task)
      return;
    const std::shared_ptr<const Task> current = task;
    lock.unlock();
    (*current)();
    lock.lock();
    task = nullptr;
    changed.notify_all();
  }
}

// Until the task is done, there is a call, or the thread is abandoned, which the condition may do.
void JavaPump::AwaitNews(std::unique_lock<std::mutex> &lock, const Condition &mustGiveUp) {
  const auto hasNews = [this] { return HasNews(); };
  if (!mustGiveUp) {
    changed.wait(lock, hasNews);
    return;
  }
  bool isOver = false;
  while (!isOver) {
    const auto now = std::chrono::steady_clock::now();
    if (now < nextQuestion) {
      isOver = changed.wait_until(lock, nextQuestion, hasNews);
      continue;
    }
    nextQuestion = now + questionInterval;
    lock.unlock();
    const bool givesUp = mustGiveUp();
    lock.lock();
    isAbandoned = isAbandoned || (givesUp && task);
    isOver = hasNews();
  }
}

bool JavaPump::IsFull() const { return left.size() >= maxLeft || sizeOfLeft >= maxSizeOfLeft; }

void JavaPump::AwaitMoreLeft(std::unique_lock<std::mutex> &lock) {
  changed.wait_for(lock, collectingTime, [this] { return !task || call || isAbandoned || IsFull(); });
}

void JavaPump::RunLeft(std::unique_lock<std::mutex> &lock) {
  const std::vector<Task> calls = std::exchange(left, {});
  sizeOfLeft = 0;
  changed.notify_all();
  lock.unlock();
  for (const Task &each : calls)
    each();
  lock.lock();
}

bool JavaPump::RunOnJava(Task given, const Condition &mustGiveUp) {
  if (!Start())
    return false;
  std::unique_lock lock(mutex);
  if (isAbandoned)
    return false;
  task = std::make_shared<const Task>(std::move(given));
  changed.notify_all();
  for (;;) {
    AwaitNews(lock, mustGiveUp);
    if (!left.empty()) {
      AwaitMoreLeft(lock);
      RunLeft(lock);
      continue;
    }
    if (isAbandoned) {
      call = nullptr;
      changed.notify_all();
      return false;
    }
    if (!call)
      return true;
    const Task *current = call;
    lock.unlock();
    (*current)();
    lock.lock();
    call = nullptr;
    changed.notify_all();
  }
}

void JavaPump::RunOnHost(const Task &given) {
  std::unique_lock lock(mutex);
  // A processor may use threads of its own: they take turns. Between tasks the host's thread is elsewhere.
  changed.wait(lock, [this] { return !call; });
  if (!task || isAbandoned)
    return;
  call = &given;
  changed.notify_all();
  changed.wait(lock, [this, &given] { return call != &given; });
}

void JavaPump::LeaveToHost(Task given, size_t size) {
  std::unique_lock lock(mutex);
  changed.wait(lock, [this] { return !IsFull() || !task || isAbandoned; });
  if (!task || isAbandoned)
    return;
  left.push_back(std::move(given));
  sizeOfLeft += size;
  if (left.size() == 1 || IsFull())
    changed.notify_all();
}

void JavaPump::Abandon() {
  const std::scoped_lock lock(mutex);
  isAbandoned = true;
  changed.notify_all();
}

void JavaPump::Stop() {
  if (!isRunning)
    return;
  if (isAbandoned) {
    pthread_detach(thread);
    isRunning = false;
    return;
  }
  {
    const std::scoped_lock lock(mutex);
    isStopping = true;
    changed.notify_all();
  }
  pthread_join(thread, nullptr);
  isRunning = false;
  isStopping = false;
}

} // namespace processors
