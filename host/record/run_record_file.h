// The record of a run as JSON Lines: a run line, a line per job the moment it ends, an end line. The run line is put in
// the target's place when the run begins, so a request that never becomes a run leaves an older record alone. What
// cannot be written is told once and ends the record, not the run.
#ifndef HOST_RECORD_RUN_RECORD_FILE_H
#define HOST_RECORD_RUN_RECORD_FILE_H

#include "host/record/append_file.h"
#include "host/record/run_recorder.h"
#include "kit/atomic_file.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace host {

// Hears once why a file cannot be written.
using WriteFailure = std::function<void(const std::string &error)>;

class RunRecordFile final : public RunReporter {
public:
  // Writes the run line beside the target at once; Error says why that failed, and `failure` is not called for it.
  // `expectedCount` is how many jobs the request will have.
  RunRecordFile(std::string path, std::string request, int32_t expectedCount, WriteFailure failure);

  void BeginRun(int32_t count) override;
  void TakeJob(const JobReport &job) override;
  void TakeDiagnostic(const RunDiagnostic &diagnostic) override;
  // The last line; nothing when no run began.
  void End(const RunTally &tally, int32_t exitCode);

  // "path: what the system says"; empty while nothing has failed.
  [[nodiscard]] const std::string &Error() const { return error; }

private:
  void Prepare(int32_t count);
  void Append(const std::string &line);
  void Note(const std::string &problem);

  std::string target;
  std::string requestText;
  std::string started;
  int32_t preparedCount;
  WriteFailure tell;
  std::optional<kit::AtomicFile> beginning; // until the run begins
  AppendFile file;
  bool hasBegun = false;
  std::vector<RunDiagnostic> outsideOfJobs;
  std::string error;
};

} // namespace host

#endif
