#include "host/cli/run_report.h"

#include "kit/paths.h"

#include <vector>

namespace cli {

namespace {

void AppendNames(std::string &text, const host::RunTally &tally, int32_t status) {
  const std::vector<std::string> &names = tally.names.at(static_cast<size_t>(status));
  if (names.empty())
    return;
  text.append("\n  ").append(host::CountedJobStatus(status));
  text.append(status == V_JOB_LEFT_OUT ? ", not being of the application:" : ":");
  for (const std::string &name : names)
    text.append("\n    ").append(name);
  if (const size_t left = static_cast<size_t>(tally.Of(status)) - names.size(); left > 0)
    text.append("\n    and ").append(std::to_string(left)).append(" more");
}

} // namespace

std::string FormatSummary(const host::RunTally &tally) {
  std::string text = host::SummariseJobs(tally.count, tally.byStatus);
  for (int32_t status = V_JOB_DONE; status <= V_JOB_CANCELLED; ++status)
    AppendNames(text, tally, status);
  return text;
}

RunReport::RunReport(Environment given, const RunOptions &options, const RunRequest &request) : environment(given) {
  std::vector<host::RunReporter *> reporters;
  if (!options.record.empty()) {
    record.emplace(kit::AbsolutePath(options.record), request.Text(), request.inputCount, Complain("record"));
    reporters.push_back(&*record);
    if (!record->Error().empty())
      problem = "the record cannot be written: " + record->Error();
  }
  if (!options.sarif.empty()) {
    sarif.emplace(kit::AbsolutePath(options.sarif), VLXSLT_VERSION, Complain("SARIF file"));
    reporters.push_back(&*sarif);
    if (!sarif->Error().empty())
      problem = "the SARIF file cannot be written: " + sarif->Error();
  }
  recorder.emplace(std::move(reporters));
  environment.session.Listen(&*recorder);
}

RunReport::~RunReport() { environment.session.Listen(nullptr); }

host::WriteFailure RunReport::Complain(const char *what) {
  return [this, what](const std::string &error) {
    hasWriteFailed = true;
    environment.session.WriteConsole("vlxslt: the " + std::string(what) + " cannot be written any more: " + error);
  };
}

ExitCode RunReport::Finish(const host::ClientReply &reply) {
  recorder->Finish();
  const host::RunTally &tally = recorder->Tally();
  ExitCode code = cli::Finish(environment, reply, &tally);
  // Of a single one the log has told all, unless it was left out.
  if (tally.count > 1 || tally.Of(V_JOB_LEFT_OUT) > 0)
    PrintError(FormatSummary(tally));
  code = Settle(environment, code);
  const auto worsen = [&] { return hasWriteFailed && code == ExitCode::Done ? ExitCode::Failed : code; };
  if (sarif)
    sarif->End(static_cast<int>(code = worsen()));
  if (record)
    record->End(tally, static_cast<int>(code = worsen()));
  return worsen();
}

} // namespace cli
