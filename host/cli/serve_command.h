// `serve`: the resident server and its workers.
#ifndef HOST_CLI_SERVE_COMMAND_H
#define HOST_CLI_SERVE_COMMAND_H

#include "host/cli/options.h"
#include "host/configuration/installation.h"

namespace cli {

[[nodiscard]] ExitCode ServeRequests(const ServeOptions &options, const host::Installation &installation);

} // namespace cli

#endif
