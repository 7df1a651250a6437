#include "bridge/pump.h"

#include <pthread.h>
#include <unistd.h>

namespace bridge {

namespace {

// Enough for a recursion of some hundred thousand template calls, and filled within a second by one without end. Only
// what is used takes memory.
constexpr size_t stackSize = size_t{256} << 20;

} // namespace

Pump &Pump::GetInst() {
  static auto *pump = new Pump;
  return *pump;
}

Pump::Outcome Pump::Run(const Work &work) {
  std::unique_lock lock(mutex);
  if (isLost || (!hasThread && !StartThread()))
    return Outcome::ThreadLost;
  job = &work;
  isRunning = true;
  changed.notify_all();
  while (isRunning && !isLost) {
    changed.wait(lock, [this] { return call || !isRunning || isLost; });
    if (!call)
      continue;
    const Work *asked = call;
    lock.unlock();
    (*asked)();
    lock.lock();
    call = nullptr;
    changed.notify_all();
  }
  isRunning = false;
  call = nullptr; // nobody is left to answer it
  changed.notify_all();
  return isLost ? Outcome::ThreadLost : Outcome::Done;
}

bool Pump::CallHost(const Work &work) {
  std::unique_lock lock(mutex);
  changed.wait(lock, [this] { return !call; });
  if (!isRunning)
    return false;
  call = &work;
  changed.notify_all();
  changed.wait(lock, [this, &work] { return call != &work; });
  return true;
}

void Pump::AbandonThread() {
  {
    const std::scoped_lock lock(mutex);
    isLost = true;
  }
  changed.notify_all();
  while (true)
    pause();
}

void *Pump::RunThread(void *pump) {
  static_cast<Pump *>(pump)->TakeJobs();
  return nullptr;
}

bool Pump::StartThread() {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, stackSize);
  pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
  pthread_t thread{};
  hasThread = pthread_create(&thread, &attributes, RunThread, this) == 0;
  pthread_attr_destroy(&attributes);
  return hasThread;
}

void Pump::TakeJobs() {
  std::unique_lock lock(mutex);
  while (true) {
    changed.wait(lock, [this] { return job; });
    const Work *next = job;
    job = nullptr;
    lock.unlock();
    (*next)();
    lock.lock();
    isRunning = false;
    changed.notify_all();
  }
}

} // namespace bridge
