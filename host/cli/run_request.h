// The request of a run, composed from the command line or from the record of an earlier run.
#ifndef HOST_CLI_RUN_REQUEST_H
#define HOST_CLI_RUN_REQUEST_H

#include "host/cli/commands.h"
#include "host/cli/standard_streams.h"
#include "kit/names.h"

#include <cstdint>
#include <string>

namespace cli {

struct RunRequest {
  std::string options; // with a blank in front of each
  int32_t inputCount = 0;

  [[nodiscard]] std::string Text() const { return std::string(kit::runRequestName) + options; }
  // Asks for the plan of that run.
  [[nodiscard]] std::string PlanText() const { return std::string(kit::planRequestName) + options; }
};

// False and an error text when the options do not fit together or name what is not there; without a text when the
// person interrupts. Reads standard input where the options name it; its stand-in and that of standard output must
// outlive the run.
[[nodiscard]] bool ComposeRun(Environment environment, const RunOptions &options, StandardStreams &streams,
                              RunRequest &request, std::string &error);

} // namespace cli

#endif
