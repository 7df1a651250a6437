#include "host/resident/resident_client.h"

#include "host/resident/command_words.h"
#include "host/resident/resident_place.h"
#include "host/resident/resident_request.h"
#include "host/resident/socket_message.h"
#include "host/resident/start_process.h"
#include "kit/file_lock.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/syscall.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace resident {

namespace {

// A server only passes messages on: it answers at once, or not at all.
constexpr auto maxAnswerWait = std::chrono::seconds(5);
// For a worker that is free, or a new one. Without one the command runs here.
constexpr auto maxWorkerWait = std::chrono::seconds(30);
constexpr auto maxStartWait = std::chrono::seconds(10);
constexpr int maxTries = 3;
constexpr std::array<std::string_view, 4> connectedCommands = {"run", "call", "processors", "dialog"};
constexpr int failed = 1;

Deadline In(std::chrono::seconds time) { return std::chrono::steady_clock::now() + time; }

void Say(const std::string &text) { std::fputs(("vlxslt: " + text + "\n").c_str(), stderr); }

// The header of the C library declares it for C only.
void SendSignal(const Descriptor &process, int signal) {
  static_cast<void>(syscall(SYS_pidfd_send_signal, process.Get(), signal, nullptr, 0));
}

// With the default effect again, whatever it was.
[[noreturn]] void EndBySignal(int signal) {
  std::signal(signal, SIG_DFL);
  sigset_t one;
  sigemptyset(&one);
  sigaddset(&one, signal);
  std::raise(signal);
  sigprocmask(SIG_UNBLOCK, &one, nullptr);
  std::_Exit(128 + signal);
}

// The signals that are passed on, as a descriptor to read them from. While it lives they have no other effect.
class PassedSignals {
public:
  PassedSignals() {
    sigset_t passed;
    sigemptyset(&passed);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGTSTP}) {
      struct sigaction previous = {};
      sigaction(signal, nullptr, &previous);
      // nohup means it, and so does a shell without job control; ignored interrupts only mean the shell's own Ctrl-C.
      if (previous.sa_handler == SIG_IGN && (signal == SIGHUP || signal == SIGTSTP))
        continue;
      sigaddset(&passed, signal);
      std::signal(signal, SIG_DFL);
    }
    sigprocmask(SIG_BLOCK, &passed, &before);
    descriptor = Descriptor(signalfd(-1, &passed, SFD_CLOEXEC | SFD_NONBLOCK));
  }
  ~PassedSignals() { sigprocmask(SIG_SETMASK, &before, nullptr); }
  PassedSignals(const PassedSignals &) = delete;
  PassedSignals &operator=(const PassedSignals &) = delete;

  [[nodiscard]] int Get() const { return descriptor.Get(); }
  // 0 when there is none.
  [[nodiscard]] int Take() const {
    signalfd_siginfo arrived{};
    return read(descriptor.Get(), &arrived, sizeof arrived) == sizeof arrived ? static_cast<int>(arrived.ssi_signo) : 0;
  }

private:
  sigset_t before{};
  Descriptor descriptor;
};

// A worker has no part in the job control of a shell: in the background, or without one of its streams, a command runs
// where the shell expects it.
bool HasOrdinaryStreams() {
  for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    if (fcntl(standard, F_GETFD) < 0)
      return false;
  return isatty(STDIN_FILENO) == 0 || tcgetpgrp(STDIN_FILENO) == getpgrp();
}

// Returns when the server listens, or has ended.
bool StartServer(std::string &problem) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) {
    problem = "no resident server can be started: the process has too many open files";
    return false;
  }
  const Descriptor reading(ends[0]);
  Descriptor writing(ends[1]);
  const ResidentRequest own = DescribeRequest(0, nullptr);
  const pid_t server = StartProgramAgain({"vlxslt", "serve", "--started"}, own.environment, writing.Get());
  writing = Descriptor();
  pollfd waiting{reading.Get(), POLLIN, 0};
  if (server > 0 && poll(&waiting, 1, MillisecondsUntil(In(maxStartWait))) > 0)
    return true;
  problem = "no resident server could be started";
  return false;
}

// Of several clients that find no server, one starts it.
Descriptor ConnectOrStart(const ResidentPlace &place, std::string &problem) {
  Descriptor connection = place.Connect(problem);
  if (connection || !problem.empty())
    return connection;
  const kit::FileLock lock(place.SocketPath(), maxStartWait);
  if (lock.GetState() != kit::FileLock::State::Held) {
    problem = "another process is starting the resident server and does not get done";
    return {};
  }
  connection = place.Connect(problem);
  if (connection || !problem.empty() || !StartServer(problem))
    return connection;
  connection = place.Connect(problem);
  if (!connection && problem.empty())
    problem = "the resident server ended at once";
  return connection;
}

// One request, from the offer to the exit code.
class ClientRequest {
public:
  enum class State { Refused, Lost, Offered, Begun, Ended };

  explicit ClientRequest(Descriptor opened) : connection(std::move(opened)) {}

  // Lost before the worker began: it may be tried again.
  [[nodiscard]] State Begin(int request, int folder, const PassedSignals &signals, std::string &problem) {
    if (!Send(connection.Get(), {MessageKind::Hello}))
      return State::Lost;
    if (const State state = Await(MessageKind::Accepted, maxAnswerWait, signals, problem); state != State::Offered)
      return state;
    if (!Send(connection.Get(), {MessageKind::Request}, {request, folder, STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}))
      return State::Lost;
    if (const State state = Await(MessageKind::Offer, maxWorkerWait, signals, problem); state != State::Offered)
      return state;
    if (!Send(connection.Get(), {MessageKind::Go}))
      return State::Lost;
    const State state = Await(MessageKind::Begun, maxAnswerWait, signals, problem);
    return state == State::Offered ? State::Begun : state;
  }

  // Until the worker is done with it.
  [[nodiscard]] int Finish(const PassedSignals &signals) {
    for (;;) {
      Message message;
      const Received received = AwaitMessage(connection.Get(), message, Deadline::max(), signals.Get());
      if (received == Received::Message && message.kind == MessageKind::Ended)
        return message.value;
      if (received == Received::End)
        return EndWithoutAnswer();
      if (const int signal = signals.Take(); signal != 0)
        PassOn(signal);
    }
  }

private:
  [[nodiscard]] State Await(MessageKind kind, std::chrono::seconds time, const PassedSignals &signals,
                            std::string &problem) {
    const Deadline deadline = In(time);
    for (;;) {
      Message message;
      const Received received = AwaitMessage(connection.Get(), message, deadline, signals.Get());
      if (received == Received::End)
        return State::Lost;
      if (received == Received::Message && message.kind == kind) {
        if (!message.descriptors.empty())
          worker = std::move(message.descriptors.front());
        return State::Offered;
      }
      const int signal = signals.Take();
      if (signal == 0)
        break;
      if (signal == SIGTSTP) {
        std::raise(SIGSTOP);
        continue;
      }
      // As it would end a process that is only just starting.
      connection = Descriptor();
      EndBySignal(signal);
    }
    problem = kind == MessageKind::Accepted ? "the resident server does not answer" : "no resident worker became free";
    return State::Refused;
  }

  void PassOn(int signal) {
    if (signal == SIGTSTP) {
      SendSignal(worker, SIGSTOP);
      std::raise(SIGSTOP);
      SendSignal(worker, SIGCONT);
      return;
    }
    // The second one ends the process.
    if (passed != 0)
      EndBySignal(signal);
    passed = signal;
    if (!Send(connection.Get(), {MessageKind::Signal, signal}))
      EndBySignal(signal);
  }

  [[nodiscard]] int EndWithoutAnswer() const {
    // It came before the worker could catch it.
    if (passed != 0)
      EndBySignal(passed);
    Say("the resident worker ended before it was done; results that were not reported are not there");
    return failed;
  }

  Descriptor connection;
  Descriptor worker; // to send signals to
  int passed = 0;
};

std::optional<int> TryOnce(const ResidentPlace &place, int request, int folder, std::string &problem) {
  Descriptor connection = ConnectOrStart(place, problem);
  if (!connection)
    return std::nullopt;
  ClientRequest pending(std::move(connection));
  const PassedSignals signals;
  if (pending.Begin(request, folder, signals, problem) == ClientRequest::State::Begun)
    return pending.Finish(signals);
  return std::nullopt;
}

} // namespace

bool WantsResident(int count, char **arguments) {
  const CommandWords words = ReadCommandWords(count, arguments);
  const char *wish = std::getenv("VLXSLT_CONNECT");
  const bool isWanted = words.connects || (wish && *wish && std::string_view(wish) != "0");
  // Without a script a dialog is a window.
  const bool isWindow = words.command == "dialog" && !words.playsScript;
  return isWanted && !words.staysHere && !isWindow &&
         std::ranges::find(connectedCommands, words.command) != connectedCommands.end();
}

std::optional<int> RunInWorker(int count, char **arguments, const host::Installation &installation) {
  const Descriptor folder(open(".", O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!HasOrdinaryStreams() || !folder)
    return std::nullopt;
  const Descriptor request = WriteRequest(DescribeRequest(count, arguments));
  ResidentPlace place;
  std::string problem;
  if (request && place.Find(installation, problem))
    // A server that ends just now is followed by another.
    for (int tries = 0; tries < maxTries && problem.empty(); ++tries)
      if (const std::optional<int> code = TryOnce(place, request.Get(), folder.Get(), problem))
        return code;
  Say((problem.empty() ? "the resident server lost the request" : problem) + "; running without it");
  return std::nullopt;
}

int AskServer(ServerQuestion question, const host::Installation &installation) {
  ResidentPlace place;
  std::string problem;
  Descriptor connection = place.Find(installation, problem) ? place.Connect(problem) : Descriptor();
  if (!connection) {
    Say(problem.empty() ? "there is no resident server" : problem);
    return failed;
  }
  const bool isStop = question == ServerQuestion::Stop;
  Message answer;
  const bool isSent = Send(connection.Get(), {isStop ? MessageKind::Stop : MessageKind::Status});
  const Received received =
      isSent ? AwaitMessage(connection.Get(), answer, isStop ? Deadline::max() : In(maxAnswerWait)) : Received::End;
  if (isStop || received != Received::Message) {
    if (!isStop)
      Say("the resident server does not answer");
    return isStop ? 0 : failed;
  }
  return std::fwrite(answer.text.data(), 1, answer.text.size(), stdout) == answer.text.size() ? 0 : failed;
}

} // namespace resident
