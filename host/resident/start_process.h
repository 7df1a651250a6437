// Starts the program itself again, as a server or as a worker: without a terminal, with nothing of the one who starts
// it but a connection.
#ifndef HOST_RESIDENT_START_PROCESS_H
#define HOST_RESIDENT_START_PROCESS_H

#include "host/resident/descriptor.h"

#include <string>
#include <sys/types.h>
#include <vector>

namespace resident {

// Where a process that was started finds its connection.
inline constexpr int inheritedConnection = 3;

// A session and a process group of its own; standard streams lead nowhere. -1 with errno when it cannot be started.
[[nodiscard]] pid_t StartProgramAgain(std::vector<std::string> words, std::vector<std::string> environment,
                                      int connection);

} // namespace resident

#endif
