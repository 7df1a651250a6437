// A worker of a resident server: a process that runs one command line after the other, for one client at a time, and
// keeps its Java machine between them.
#ifndef HOST_RESIDENT_RESIDENT_WORKER_H
#define HOST_RESIDENT_RESIDENT_WORKER_H

#include "host/configuration/configuration.h"
#include "host/configuration/installation.h"

#include <functional>

namespace resident {

struct WorkerProgram {
  // Runs a command line on this process's streams, folder and environment; its exit code.
  std::function<int(int count, char **arguments)> run;
  // After a command that failed: whether the next one may run in this process.
  std::function<bool(const host::Configuration &configuration)> isUsable;
};

// Serves what arrives on the inherited connection until that ends.
void ServeAsWorker(const WorkerProgram &program, const host::Installation &installation);

} // namespace resident

#endif
