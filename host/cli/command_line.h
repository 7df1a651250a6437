// The command line's grammar: what it accepts, its help, and the command that was chosen.
#ifndef HOST_CLI_COMMAND_LINE_H
#define HOST_CLI_COMMAND_LINE_H

#include "host/cli/commands.h"
#include "host/cli/options.h"

#include <functional>
#include <optional>

namespace cli {

struct CommandLine {
  SessionOptions session;
  ServeOptions serve;
  std::function<ExitCode(Environment)> command;
};

// Nothing when the program is done already (help, version, a bad command line); then `code` says how it ends.
[[nodiscard]] std::optional<CommandLine> ParseCommandLine(int count, char **arguments, ExitCode &code);

} // namespace cli

#endif
