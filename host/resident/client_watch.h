// Watches the connection to the client while its command runs: signals that arrive there reach this process as its own,
// and a client that has gone counts as a request to end.
#ifndef HOST_RESIDENT_CLIENT_WATCH_H
#define HOST_RESIDENT_CLIENT_WATCH_H

#include "host/resident/descriptor.h"

#include <atomic>
#include <thread>

namespace resident {

class ClientWatch {
public:
  explicit ClientWatch(int connection);
  ~ClientWatch();
  ClientWatch(const ClientWatch &) = delete;
  ClientWatch &operator=(const ClientWatch &) = delete;

  // Whether a signal came, or the client went.
  [[nodiscard]] bool HasStopped() const { return isStopped; }

private:
  void Watch();
  void Stop(int signal);
  void AwaitEnd() const;

  int connection;
  Descriptor wake;
  std::atomic<bool> isStopped = false;
  std::thread thread;
};

} // namespace resident

#endif
