// Carries out a plan: every job in turn, with its events, its output put in place, and the outputs opened at the end.
#ifndef CLIENT_RUN_EXECUTION_H
#define CLIENT_RUN_EXECUTION_H

#include "client/run_plan.h"
#include "processors/processor.h"

namespace client {

// Failed when the last job that was transformed failed, or when none was.
enum class RunResult { Failed, Done };

[[nodiscard]] RunResult ExecuteRun(const RunPlan &plan, processors::Processor &processor);
// For a plan that was refused: reports its jobs if each of them has a reason of its own not to be run.
void ReportRefusedRun(const RunPlan &plan);

} // namespace client

#endif
