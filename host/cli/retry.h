// What is left to do of a run, by its record.
#ifndef HOST_CLI_RETRY_H
#define HOST_CLI_RETRY_H

#include "host/cli/options.h"
#include "host/cli/run_request.h"

#include <string>

namespace cli {

// Empty, or an option that says what the record says already.
[[nodiscard]] std::string FindRetryContradiction(const RunOptions &options);

// The recorded request without the inputs that the record lists as done or left out; all else stays as it was. A
// request without inputs when nothing is left. False and an error text when the record cannot be used.
[[nodiscard]] bool ComposeRetry(const std::string &recordPath, RunRequest &request, std::string &error);

} // namespace cli

#endif
