// What a run would read, apply and write, without starting it.
#ifndef HOST_CLI_DRY_RUN_H
#define HOST_CLI_DRY_RUN_H

#include "host/cli/commands.h"
#include "host/cli/run_inputs.h"
#include "host/cli/transformation_record.h"

#include <vector>

namespace cli {

// Whether a run for that application takes the input; every one does without an application, or for the defaults.
[[nodiscard]] bool IsTakenBy(const host::Configuration &configuration, const std::string &application,
                             const std::string &input);

// Where the transformation's policy puts the result of an input; empty when that is known only during the run.
[[nodiscard]] std::string PlaceByPolicy(const host::Configuration &configuration, const TransformationRecord &record,
                                        const std::string &input);

// Prints one line per input. `record` is the transformation, or null for a bare stylesheet; then the inputs hold their
// outputs.
[[nodiscard]] ExitCode PrintDryRun(Environment environment, const RunOptions &options, std::vector<RunInput> inputs,
                                   const TransformationRecord *record);

} // namespace cli

#endif
