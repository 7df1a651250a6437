// The diagnostics of a run as SARIF 2.1.0, for code review and editors. Written beside the target as the jobs end, so
// memory does not grow with them, and put in its place whole at the end.
#ifndef HOST_RECORD_SARIF_FILE_H
#define HOST_RECORD_SARIF_FILE_H

#include "host/record/run_record_file.h"
#include "host/record/run_recorder.h"
#include "kit/atomic_file.h"

#include <cstdint>
#include <set>
#include <string>

namespace host {

class SarifFile final : public RunReporter {
public:
  // Begins to write at once; Error says why that failed, and `failure` is not called for it.
  SarifFile(const std::string &path, std::string programVersion, WriteFailure failure);

  void BeginRun(int32_t) override {}
  void TakeJob(const JobReport &job) override;
  void TakeDiagnostic(const RunDiagnostic &diagnostic) override;
  // Puts the file in its place.
  void End(int32_t exitCode);

  // "path: what the system says"; empty while nothing has failed.
  [[nodiscard]] const std::string &Error() const { return file.Error(); }

private:
  void WriteResult(const RunDiagnostic &diagnostic, const JobReport *job);
  void Write(const std::string &text);

  kit::AtomicFile file;
  std::string version;
  std::string started;
  WriteFailure tell;
  std::set<std::string> rules;
  bool hasResults = false;
  bool hasFailed = false;
};

} // namespace host

#endif
