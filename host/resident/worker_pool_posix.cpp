#include "host/resident/worker_pool.h"

#include "host/resident/start_process.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <utility>

namespace resident {

namespace {

// A worker answers an offer at once, once its process has started.
constexpr auto maxOfferTime = std::chrono::seconds(10);
constexpr auto maxEndTime = std::chrono::seconds(10);
constexpr int maxLost = 2;

uint64_t ReadMegabytes(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/statm");
  uint64_t size = 0;
  uint64_t resident = 0;
  file >> size >> resident;
  return resident * static_cast<uint64_t>(sysconf(_SC_PAGESIZE)) >> 20;
}

bool HasGone(int connection) {
  pollfd asked{connection, POLLRDHUP, 0};
  return poll(&asked, 1, 0) > 0 && (asked.revents & (POLLRDHUP | POLLHUP | POLLERR)) != 0;
}

} // namespace

void WorkerPool::Update() {
  for (Worker &worker : workers)
    Listen(worker);
  for (Worker &worker : workers)
    CheckTime(worker);
  DropLost();
  std::erase_if(queue, [this](WaitingRequest &request) { return Place(request); });
}

// Each one may wait for a kind of worker of its own.
bool WorkerPool::Place(WaitingRequest &request) {
  Worker *worker = FindIdle(request);
  if (!worker && MakeRoom())
    worker = Start(request);
  if (!worker)
    return false;
  if (!Offer(*worker, request)) {
    Retire(*worker);
    return false;
  }
  worker->offered = std::move(request);
  SetState(*worker, State::Offered);
  return true;
}

void WorkerPool::DropLost() {
  std::erase_if(
      queue, [](const WaitingRequest &request) { return request.lost > maxLost || HasGone(request.connection.Get()); });
}

// The one that was in use last is the warmest.
WorkerPool::Worker *WorkerPool::FindIdle(const WaitingRequest &request) {
  Worker *best = nullptr;
  for (Worker &worker : workers)
    if (worker.state == State::Idle && worker.fingerprint == request.fingerprint &&
        std::ranges::find(request.misfits, worker.number) == request.misfits.end() &&
        (!best || worker.since > best->since))
      best = &worker;
  return best;
}

// An idle worker that fits no waiting request gives way.
bool WorkerPool::MakeRoom() {
  const auto count = std::ranges::count_if(workers, [](const Worker &each) { return each.state != State::Ending; });
  if (static_cast<size_t>(count) < limits.maxWorkers)
    return true;
  Worker *oldest = nullptr;
  for (Worker &worker : workers)
    if (worker.state == State::Idle && (!oldest || worker.since < oldest->since))
      oldest = &worker;
  if (oldest)
    Retire(*oldest);
  return oldest;
}

WorkerPool::Worker *WorkerPool::Start(const WaitingRequest &request) {
  std::array<int, 2> ends{};
  std::optional<ResidentRequest> content = ReadRequest(request.content.Get());
  if (!content || socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends.data()) != 0)
    return nullptr;
  Worker worker;
  worker.control = Descriptor(ends[0]);
  const Descriptor other(ends[1]);
  worker.process = StartProgramAgain({"vlxslt", "serve", "--worker"}, std::move(content->environment), other.Get());
  if (worker.process < 0)
    return nullptr;
  worker.number = ++started;
  worker.fingerprint = request.fingerprint;
  workers.push_back(std::move(worker));
  return &workers.back();
}

bool WorkerPool::Offer(Worker &worker, const WaitingRequest &request) {
  return Send(worker.control.Get(), {MessageKind::Work},
              {request.connection.Get(), request.content.Get(), request.folder.Get(), request.streams[0].Get(),
               request.streams[1].Get(), request.streams[2].Get()});
}

void WorkerPool::Listen(Worker &worker) {
  Message message;
  while (worker.control)
    switch (Receive(worker.control.Get(), message)) {
    case Received::Message:
      Hear(worker, message.kind);
      break;
    case Received::Nothing:
      return;
    case Received::End:
      ReturnRequest(worker);
      Retire(worker);
      return;
    }
}

void WorkerPool::Hear(Worker &worker, MessageKind kind) {
  switch (kind) {
  case MessageKind::Taken:
    worker.offered.reset();
    ++worker.served;
    ++total;
    SetState(worker, State::Busy);
    break;
  case MessageKind::Misfit:
    if (worker.offered) {
      worker.offered->misfits.push_back(worker.number);
      queue.push_front(std::move(*worker.offered));
    }
    worker.offered.reset();
    SetState(worker, State::Idle);
    break;
  case MessageKind::Withdrawn:
    worker.offered.reset();
    SetState(worker, State::Idle);
    break;
  case MessageKind::Done:
    SetState(worker, State::Idle);
    if (isClosed || IsOverdrawn(worker))
      Retire(worker);
    break;
  default:
    Retire(worker);
  }
}

// Nothing of it has happened yet.
void WorkerPool::ReturnRequest(Worker &worker) {
  if (!worker.offered)
    return;
  ++worker.offered->lost;
  queue.push_front(std::move(*worker.offered));
  worker.offered.reset();
}

bool WorkerPool::IsOverdrawn(const Worker &worker) const {
  return worker.served >= limits.maxRequests || ReadMegabytes(worker.process) > limits.maxMegabytes;
}

void WorkerPool::SetState(Worker &worker, State state) {
  worker.state = state;
  worker.since = std::chrono::steady_clock::now();
}

// It ends by itself when its connection does.
void WorkerPool::Retire(Worker &worker) {
  worker.control = Descriptor();
  if (worker.state != State::Ending)
    SetState(worker, State::Ending);
}

std::optional<Deadline> WorkerPool::DeadlineOf(const Worker &worker) const {
  switch (worker.state) {
  case State::Idle:
    return worker.since + limits.maxIdle;
  case State::Offered:
    return worker.since + maxOfferTime;
  case State::Ending:
    return worker.since + maxEndTime;
  default:
    return std::nullopt;
  }
}

void WorkerPool::CheckTime(Worker &worker) {
  const std::optional<Deadline> deadline = DeadlineOf(worker);
  if (!deadline || std::chrono::steady_clock::now() < *deadline)
    return;
  ReturnRequest(worker);
  if (worker.state != State::Idle) {
    kill(worker.process, SIGKILL);
    kill(worker.process, SIGCONT);
  }
  Retire(worker);
}

void WorkerPool::Reap() {
  std::erase_if(workers, [this](Worker &worker) {
    if (waitpid(worker.process, nullptr, WNOHANG) != worker.process)
      return false;
    Listen(worker);
    ReturnRequest(worker);
    return true;
  });
}

void WorkerPool::Close() {
  isClosed = true;
  queue.clear();
  for (Worker &worker : workers)
    if (worker.state == State::Idle || worker.state == State::Offered) {
      worker.offered.reset();
      Retire(worker);
    }
}

bool WorkerPool::IsServing() const {
  return !queue.empty() || std::ranges::any_of(workers, [](const Worker &worker) {
    return worker.state == State::Busy || worker.state == State::Offered;
  });
}

std::vector<int> WorkerPool::Connections() const {
  std::vector<int> connections;
  for (const Worker &worker : workers)
    if (worker.control)
      connections.push_back(worker.control.Get());
  return connections;
}

std::optional<Deadline> WorkerPool::NextDeadline() const {
  std::optional<Deadline> next;
  for (const Worker &worker : workers)
    if (const auto deadline = DeadlineOf(worker); deadline && (!next || *deadline < *next))
      next = deadline;
  return next;
}

std::string WorkerPool::Describe() const {
  static constexpr std::array<const char *, 4> words = {"idle", "starting", "busy", "ending"};
  std::string text = std::to_string(total) + " requests, " + std::to_string(queue.size()) + " waiting\n";
  for (const Worker &worker : workers)
    text += "worker " + std::to_string(worker.process) + ": " + words.at(static_cast<size_t>(worker.state)) + ", " +
            std::to_string(worker.served) + " requests, " + std::to_string(ReadMegabytes(worker.process)) + " MB\n";
  return text;
}

} // namespace resident
