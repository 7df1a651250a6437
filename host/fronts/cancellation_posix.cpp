#include "host/fronts/cancellation.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <ctime>
#include <fcntl.h>
#include <initializer_list>
#include <unistd.h>

namespace host {

namespace {

// The input in hand may end well meanwhile; the rest of five seconds is for cleaning up.
constexpr int64_t patienceSeconds = 3;

volatile std::sig_atomic_t interrupted = 0;
std::atomic<int64_t> terminationTime = 0; // of the system's clock that only counts on; 0 without SIGTERM and SIGHUP
static_assert(std::atomic<int64_t>::is_always_lock_free);
int wakePipe[2] = {-1, -1};

int64_t SecondsNow() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec;
}

// Only calls that are safe in a signal handler.
extern "C" void NoteInterrupt(int signal) {
  if (interrupted) {
    std::signal(signal, SIG_DFL);
    std::raise(signal);
    return;
  }
  interrupted = 1;
  if (signal != SIGINT)
    terminationTime = SecondsNow();
  const int errorBefore = errno;
  if (write(wakePipe[1], "!", 1) < 0) {
    // The flag alone does; only a pending prompt waits a little longer.
  }
  errno = errorBefore;
}

} // namespace

void CatchInterrupts() {
  if (wakePipe[0] >= 0 || pipe2(wakePipe, O_CLOEXEC | O_NONBLOCK) != 0)
    return;
  struct sigaction action = {};
  action.sa_handler = NoteInterrupt;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    // nohup means it; shells that start a background job with interrupts ignored only mean their own Ctrl-C.
    struct sigaction before = {};
    if (signal != SIGHUP || (sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN))
      sigaction(signal, &action, nullptr);
  }
}

bool IsInterrupted() { return interrupted != 0; }

bool IsTerminationOverdue() { return terminationTime != 0 && SecondsNow() - terminationTime >= patienceSeconds; }

int InterruptDescriptor() { return wakePipe[0]; }

} // namespace host
