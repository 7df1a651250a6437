// The workers of a resident server, and the requests that wait for one. A request goes to an idle worker that was
// started in the same environment, else to a new one; a worker that dies before it began gives its request back. On
// the server's only thread; nothing waits.
#ifndef HOST_RESIDENT_WORKER_POOL_H
#define HOST_RESIDENT_WORKER_POOL_H

#include "host/resident/resident_request.h"
#include "host/resident/socket_message.h"

#include <array>
#include <cstdint>
#include <deque>
#include <list>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace resident {

struct PoolLimits {
  size_t maxWorkers = 2;
  uint64_t maxMegabytes = 1024; // of one worker between two requests
  uint64_t maxRequests = 20000; // that one worker serves
  std::chrono::milliseconds maxIdle = std::chrono::minutes(30);
};

struct WaitingRequest {
  Descriptor connection;
  Descriptor content;
  Descriptor folder;
  std::array<Descriptor, 3> streams;
  uint64_t fingerprint = 0;
  std::vector<int> misfits = {}; // workers that cannot serve it
  int lost = 0;                  // times that a worker died over it
};

class WorkerPool {
public:
  explicit WorkerPool(PoolLimits given) : limits(given) {}

  void Add(WaitingRequest request) { queue.push_back(std::move(request)); }
  // Reads what workers say and hands out what waits. Call it whenever something may have happened, first of all.
  void Update();
  // Collects processes that have ended.
  void Reap();
  // No more requests: idle workers end, those that wait are turned away.
  void Close();

  [[nodiscard]] bool IsEmpty() const { return workers.empty() && queue.empty(); }
  [[nodiscard]] bool IsServing() const;
  // What poll is to watch, and when something is due.
  [[nodiscard]] std::vector<int> Connections() const;
  [[nodiscard]] std::optional<Deadline> NextDeadline() const;
  [[nodiscard]] std::string Describe() const;

private:
  enum class State { Idle, Offered, Busy, Ending };
  struct Worker {
    int number = 0;
    pid_t process = -1;
    Descriptor control;
    State state = State::Idle;
    uint64_t fingerprint = 0;
    uint64_t served = 0;
    Deadline since;
    std::optional<WaitingRequest> offered = std::nullopt;
  };

  void Listen(Worker &worker);
  void Hear(Worker &worker, MessageKind kind);
  void ReturnRequest(Worker &worker);
  void CheckTime(Worker &worker);
  void SetState(Worker &worker, State state);
  void Retire(Worker &worker);
  void DropLost();
  [[nodiscard]] bool Place(WaitingRequest &request);
  [[nodiscard]] Worker *FindIdle(const WaitingRequest &request);
  [[nodiscard]] bool MakeRoom();
  [[nodiscard]] Worker *Start(const WaitingRequest &request);
  [[nodiscard]] static bool Offer(Worker &worker, const WaitingRequest &request);
  [[nodiscard]] bool IsOverdrawn(const Worker &worker) const;
  [[nodiscard]] std::optional<Deadline> DeadlineOf(const Worker &worker) const;

  PoolLimits limits;
  std::list<Worker> workers;
  std::deque<WaitingRequest> queue;
  bool isClosed = false;
  int started = 0;
  uint64_t total = 0;
};

} // namespace resident

#endif
