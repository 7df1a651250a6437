// One command line from its words to its exit code: settings, a session, one command. A resident worker runs many in
// its life, one after the other.
#ifndef HOST_CLI_PROGRAM_H
#define HOST_CLI_PROGRAM_H

#include "host/configuration/configuration.h"

namespace cli {

[[nodiscard]] int RunProgram(int count, char **arguments);
// Whether the Java machine of this process still loads the first processor of the configuration.
[[nodiscard]] bool HasUsableProcessor(host::Configuration configuration);

} // namespace cli

#endif
