// What a run would read, apply and write, without starting it: the client's plan, as a table or as JSON.
#ifndef HOST_CLI_DRY_RUN_H
#define HOST_CLI_DRY_RUN_H

#include "host/cli/commands.h"
#include "host/cli/run_request.h"
#include "kit/values.h"

#include <cstdint>
#include <string>
#include <vector>

namespace cli {

struct PlannedJob {
  int32_t job = -1;
  std::string input;
  std::string stylesheet; // empty: the input's own
  std::string processor;
  std::vector<std::string> parameters; // name and expression alternately
  std::string output;                  // empty: a temporary one, or asked for
  std::vector<std::string> asks;       // "overwrite", "place"
  int32_t status = 0;                  // how it will end, as far as can be told: V_JOB_...
  std::vector<std::string> problems;
};

// The jobs of a reply; what is no job is passed over, and what is not there is empty.
[[nodiscard]] std::vector<PlannedJob> ReadPlan(const kit::TypedValues &reply);

// One line: fields with a tab between them, or an object.
[[nodiscard]] std::string FormatPlannedJob(const PlannedJob &job);
[[nodiscard]] std::string FormatPlannedJobAsJson(const PlannedJob &job);

// Asks for the plan and prints a line per job.
[[nodiscard]] ExitCode PrintPlan(Environment environment, const RunRequest &request);

} // namespace cli

#endif
