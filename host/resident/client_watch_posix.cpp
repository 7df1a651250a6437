#include "host/resident/client_watch.h"

#include "host/resident/socket_message.h"
#include "kit/system_call.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <cstdlib>

namespace resident {

namespace {

constexpr std::array passedSignals = {SIGINT, SIGTERM, SIGHUP};
// A command that was told to end has five seconds; one that does not end serves no client any more.
constexpr auto maxEndWait = std::chrono::seconds(15);

} // namespace

ClientWatch::ClientWatch(int watched) : connection(watched), wake(eventfd(0, EFD_CLOEXEC)) {
  // Signals are for the thread that runs the command.
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_BLOCK, &all, &before);
  thread = std::thread([this] { Watch(); });
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

ClientWatch::~ClientWatch() {
  const uint64_t one = 1;
  static_cast<void>(kit::Repeat([&] { return write(wake.Get(), &one, sizeof one); }));
  thread.join();
}

void ClientWatch::Stop(int signal) {
  isStopped = true;
  kill(getpid(), signal);
}

void ClientWatch::Watch() {
  for (;;) {
    Message message;
    switch (AwaitMessage(connection, message, Deadline::max(), wake.Get())) {
    case Received::Message:
      if (message.kind == MessageKind::Signal && std::ranges::find(passedSignals, message.value) != passedSignals.end())
        Stop(message.value);
      break;
    case Received::Nothing:
      return;
    case Received::End:
      Stop(SIGTERM);
      AwaitEnd();
      return;
    }
  }
}

void ClientWatch::AwaitEnd() const {
  pollfd waiting{wake.Get(), POLLIN, 0};
  const Deadline deadline = std::chrono::steady_clock::now() + maxEndWait;
  if (kit::Repeat([&] { return poll(&waiting, 1, MillisecondsUntil(deadline)); }) == 0)
    std::_Exit(EXIT_FAILURE);
}

} // namespace resident
