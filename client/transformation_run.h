// Carries out a validated run request: every input in turn, with its log sections, its output put in place, and the
// outputs opened at the end.
#ifndef CLIENT_TRANSFORMATION_RUN_H
#define CLIENT_TRANSFORMATION_RUN_H

#include "client/run_request.h"
#include "processors/processor.h"

namespace client {

// Failed when the last input that was transformed failed, or when none was.
enum class RunResult { Failed, Done };

[[nodiscard]] RunResult RunTransformation(const RunRequest &request, processors::Processor &processor);

} // namespace client

#endif
