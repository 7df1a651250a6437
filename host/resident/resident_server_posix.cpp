#include "host/resident/resident_server.h"

#include "host/resident/resident_place.h"
#include "host/resident/start_process.h"
#include "kit/file_lock.h"
#include "kit/system_call.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <list>
#include <optional>
#include <utility>

namespace resident {

namespace {

constexpr auto maxLockWait = std::chrono::seconds(10);
// Connections that have not said yet what they want.
constexpr size_t maxNewcomers = 256;

class Server {
public:
  Server(ResidentPlace &given, Descriptor socket, const PoolLimits &limits)
      : place(given), listening(std::move(socket)), maxIdle(limits.maxIdle), pool(limits), signals(TakeSignals()) {}

  void Run() {
    lastUse = std::chrono::steady_clock::now();
    while (listening || !pool.IsEmpty()) {
      Wait();
      if (pool.IsServing())
        lastUse = std::chrono::steady_clock::now();
      HandleSignals();
      pool.Reap();
      // Workers first: the one that has just answered a client is free for the client's next request.
      pool.Update();
      Admit();
      HearNewcomers();
      pool.Update();
      if (pool.IsServing())
        lastUse = std::chrono::steady_clock::now();
      else if (listening && (std::chrono::steady_clock::now() >= lastUse + maxIdle || !place.IsOurs()))
        Close();
    }
  }

private:
  static Descriptor TakeSignals() {
    sigset_t taken;
    sigemptyset(&taken);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGCHLD})
      sigaddset(&taken, signal);
    sigprocmask(SIG_BLOCK, &taken, nullptr);
    return Descriptor(signalfd(-1, &taken, SFD_CLOEXEC | SFD_NONBLOCK));
  }

  void Wait() const {
    std::vector<pollfd> waiting = {{signals.Get(), POLLIN, 0}, {listening.Get(), POLLIN, 0}};
    for (const Descriptor &newcomer : newcomers)
      waiting.push_back({newcomer.Get(), POLLIN, 0});
    for (const int connection : pool.Connections())
      waiting.push_back({connection, POLLIN, 0});
    Deadline next = pool.NextDeadline().value_or(Deadline::max());
    if (listening && !pool.IsServing())
      next = std::min<Deadline>(next, lastUse + maxIdle);
    poll(waiting.data(), waiting.size(), next == Deadline::max() ? -1 : MillisecondsUntil(next));
  }

  // The first request to end lets what runs be finished, the second one does not.
  void HandleSignals() {
    signalfd_siginfo arrived{};
    while (read(signals.Get(), &arrived, sizeof arrived) == sizeof arrived)
      if (arrived.ssi_signo != SIGCHLD && !std::exchange(isTold, true))
        Close();
      else if (arrived.ssi_signo != SIGCHLD)
        std::_Exit(128 + static_cast<int>(arrived.ssi_signo));
  }

  void Close() {
    if (!listening)
      return;
    {
      // A new server may be on its way to the same place.
      const kit::FileLock lock(place.SocketPath(), maxLockWait);
      if (place.IsOurs())
        place.Remove();
    }
    // Those that wait in the socket find no server, and start one.
    listening = Descriptor();
    newcomers.clear();
    pool.Close();
  }

  void Admit() {
    while (listening && newcomers.size() < maxNewcomers) {
      Descriptor connection(accept4(listening.Get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
      if (!connection)
        return;
      if (IsOwnPeer(connection.Get()))
        newcomers.push_back(std::move(connection));
    }
  }

  void HearNewcomers() {
    for (auto each = newcomers.begin(); each != newcomers.end();) {
      Message message;
      const Received received = Receive(each->Get(), message);
      Descriptor connection = received == Received::Nothing ? Descriptor() : std::move(*each);
      each = received == Received::Nothing ? std::next(each) : newcomers.erase(each);
      if (received == Received::Message)
        Answer(std::move(connection), std::move(message));
      if (!listening)
        return;
    }
  }

  void Answer(Descriptor connection, Message message) {
    lastUse = std::chrono::steady_clock::now();
    if (message.kind == MessageKind::Status) {
      static_cast<void>(Send(connection.Get(),
                             {MessageKind::Status, 0, "server " + std::to_string(getpid()) + ": " + pool.Describe()}));
    } else if (message.kind == MessageKind::Hello) {
      if (Send(connection.Get(), {MessageKind::Accepted}))
        newcomers.push_back(std::move(connection));
    } else if (message.kind == MessageKind::Stop) {
      stopping.push_back(std::move(connection));
      Close();
    } else if (message.kind == MessageKind::Request) {
      if (std::optional<WaitingRequest> request = AdoptRequest(std::move(connection), std::move(message)))
        pool.Add(std::move(*request));
    }
  }

  static std::optional<WaitingRequest> AdoptRequest(Descriptor connection, Message message) {
    constexpr size_t count = 5;
    if (message.descriptors.size() != count)
      return std::nullopt;
    const std::optional<ResidentRequest> content = ReadRequest(message.descriptors[0].Get());
    if (!content)
      return std::nullopt;
    WaitingRequest request{
        std::move(connection),
        std::move(message.descriptors[0]),
        std::move(message.descriptors[1]),
        {std::move(message.descriptors[2]), std::move(message.descriptors[3]), std::move(message.descriptors[4])},
        FingerprintEnvironment(content->environment)};
    return request;
  }

  ResidentPlace &place;
  Descriptor listening;
  std::chrono::milliseconds maxIdle;
  WorkerPool pool;
  Descriptor signals;
  Deadline lastUse;
  std::list<Descriptor> newcomers;
  std::vector<Descriptor> stopping; // they wait for the end
  bool isTold = false;
};

} // namespace

bool Serve(const host::Installation &installation, const PoolLimits &limits, StartedBy who, std::string &problem) {
  Descriptor client(who == StartedBy::Client ? inheritedConnection : -1);
  umask(077);
  ResidentPlace place;
  if (!place.Find(installation, problem))
    return false;
  Descriptor socket;
  {
    std::optional<kit::FileLock> lock;
    if (who == StartedBy::Person)
      lock.emplace(place.SocketPath(), maxLockWait);
    if (const Descriptor other = place.Connect(problem); other || !problem.empty()) {
      problem = problem.empty() ? "a resident server is running already" : problem;
      return false;
    }
    socket = place.Listen(problem);
  }
  if (!socket)
    return false;
  Server server(place, std::move(socket), limits);
  // The client goes on as soon as this is closed.
  client = Descriptor();
  server.Run();
  return true;
}

} // namespace resident
