// Puts the events of runs together: each job with its time, outputs and diagnostics, handed on when it ends, and the
// counts of all. Keeps nothing of a job that has ended but its name where it was not done, and of those only the first
// few. Used on the host's thread; the reporters are the caller's and must outlive it.
#ifndef HOST_RECORD_RUN_RECORDER_H
#define HOST_RECORD_RUN_RECORDER_H

#include "host/record/run_event.h"
#include "host/record/run_words.h"

#include <array>
#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace host {

struct RunDiagnostic {
  int32_t severity = 0; // V_SEVERITY_...
  std::string file;     // empty when unknown
  int32_t line = 0;     // below 1 when unknown
  int32_t column = 0;   // likewise
  std::string code;
  std::string text;
};

struct RunOutput {
  std::string path;
  int32_t kind = 0; // V_OUTPUT_...
};

struct JobReport {
  int32_t job = -1;
  std::string input = {};
  std::optional<std::string> stylesheet = {}; // nothing: the input's own
  std::string processor = {};
  int32_t status = 0; // V_JOB_...
  std::chrono::milliseconds time{};
  std::vector<RunOutput> outputs = {};
  std::vector<RunDiagnostic> diagnostics = {};
};

// Takes a run piece by piece. Must not throw.
class RunReporter {
public:
  virtual ~RunReporter() = default;
  virtual void BeginRun(int32_t count) = 0;
  // The job has ended.
  virtual void TakeJob(const JobReport &job) = 0;
  // One that belongs to no job.
  virtual void TakeDiagnostic(const RunDiagnostic &diagnostic) = 0;
};

// How many jobs ended in which way.
struct RunTally {
  static constexpr size_t maxNames = 20;

  int32_t count = 0;      // jobs that the runs announced
  bool hasFailed = false; // by an error after its last job, whatever became of the jobs
  std::array<int32_t, jobStatusCount> byStatus{};
  // The inputs of the first jobs of each status but "done".
  std::array<std::vector<std::string>, jobStatusCount> names;

  // Takes one of V_JOB_...
  [[nodiscard]] int32_t Of(int32_t status) const { return byStatus.at(static_cast<size_t>(status)); }
};

class RunRecorder final : public RunListener {
public:
  explicit RunRecorder(std::vector<RunReporter *> to = {}) : reporters(std::move(to)) {}

  void OnRunEvent(const RunEvent &event) override;
  // When the request has been served: reports the diagnostics of jobs that never began.
  void Finish();
  [[nodiscard]] const RunTally &Tally() const { return tally; }

private:
  void BeginJob(const RunEvent &event);
  void EndJob(const RunEvent &event);
  void TakeDiagnostic(const RunEvent &event);
  void TakeDiagnosticOfRun(const RunDiagnostic &diagnostic);

  std::vector<RunReporter *> reporters;
  RunTally tally;
  std::optional<JobReport> current;
  std::chrono::steady_clock::time_point begun;
  std::map<int32_t, std::vector<RunDiagnostic>> early; // by job, while it has not begun
};

} // namespace host

#endif
