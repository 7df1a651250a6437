// The side of a resident host that the person sees: hands this process's command line to a warm worker of a server,
// which is started when there is none, and stands for it: signals go there, the exit code comes back. The worker reads
// and writes this process's own standard streams. Meant to run before anything else does, on the only thread.
#ifndef HOST_RESIDENT_RESIDENT_CLIENT_H
#define HOST_RESIDENT_RESIDENT_CLIENT_H

#include "host/configuration/installation.h"

#include <optional>

namespace resident {

// Whether the command line asks for a resident host, or the environment does, and it is one that gains by it.
[[nodiscard]] bool WantsResident(int count, char **arguments);

// The exit code. Nothing when the command is to run in this process: nothing of it has happened then, and what keeps it
// from a server was said on standard error, unless it is the command itself. Does not return where the worker ended by
// a signal that was passed on.
[[nodiscard]] std::optional<int> RunInWorker(int count, char **arguments, const host::Installation &installation);

enum class ServerQuestion { Status, Stop };
// The exit code, after the answer was printed.
[[nodiscard]] int AskServer(ServerQuestion question, const host::Installation &installation);

} // namespace resident

#endif
