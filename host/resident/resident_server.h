// A resident server: takes requests of this user's processes and gives each to a worker. Ends when told to, or when
// nothing has come for a while; what runs then is finished first.
#ifndef HOST_RESIDENT_RESIDENT_SERVER_H
#define HOST_RESIDENT_RESIDENT_SERVER_H

#include "host/configuration/installation.h"
#include "host/resident/worker_pool.h"

#include <string>

namespace resident {

enum class StartedBy {
  Person, // in the foreground
  Client  // waits for the end of the inherited connection, and has seen to it that no other one is started
};

// Serves until it is over. False with a problem when it cannot begin.
[[nodiscard]] bool Serve(const host::Installation &installation, const PoolLimits &limits, StartedBy who,
                         std::string &problem);

} // namespace resident

#endif
