// What is told about a run beside its log: the record, SARIF, the summary on standard error, and the exit code.
#ifndef HOST_CLI_RUN_REPORT_H
#define HOST_CLI_RUN_REPORT_H

#include "host/cli/commands.h"
#include "host/cli/run_request.h"
#include "host/record/run_record_file.h"
#include "host/record/run_recorder.h"
#include "host/record/sarif_file.h"

#include <optional>
#include <string>

namespace cli {

class RunReport {
public:
  // Begins to write the files that the options name; Problem says why one cannot be written.
  RunReport(Environment given, const RunOptions &options, const RunRequest &request);
  RunReport(const RunReport &) = delete;
  RunReport &operator=(const RunReport &) = delete;
  ~RunReport();

  [[nodiscard]] const std::string &Problem() const { return problem; }
  // When the request has been served: finishes the files; how the program ends.
  [[nodiscard]] ExitCode Finish(const host::ClientReply &reply);

private:
  [[nodiscard]] host::WriteFailure Complain(const char *what);

  Environment environment;
  std::optional<host::RunRecordFile> record;
  std::optional<host::SarifFile> sarif;
  std::optional<host::RunRecorder> recorder;
  std::string problem;
  bool hasWriteFailed = false; // during the run
};

// "3 inputs: 2 transformed, 1 failed", and lines that name those that were not transformed.
[[nodiscard]] std::string FormatSummary(const host::RunTally &tally);

} // namespace cli

#endif
