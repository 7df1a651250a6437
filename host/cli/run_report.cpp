#include "host/cli/run_report.h"

#include "kit/paths.h"

#include <array>
#include <string_view>
#include <vector>

namespace cli {

namespace {

struct StatusWord {
  int32_t status;
  std::string_view word;
  std::string_view reason = {}; // behind the word, above the names
};
constexpr std::array statusWords = {StatusWord{V_JOB_DONE, "transformed"},
                                    StatusWord{V_JOB_FAILED, "failed"},
                                    StatusWord{V_JOB_REFUSED, "refused"},
                                    StatusWord{V_JOB_MISSING, "missing"},
                                    StatusWord{V_JOB_LEFT_OUT, "left out", ", not being of the application"},
                                    StatusWord{V_JOB_CANCELLED, "cancelled"}};

void AppendNames(std::string &text, const host::RunTally &tally, const StatusWord &each) {
  const std::vector<std::string> &names = tally.names.at(static_cast<size_t>(each.status));
  if (names.empty())
    return;
  text.append("\n  ").append(each.word).append(each.reason).append(":");
  for (const std::string &name : names)
    text.append("\n    ").append(name);
  if (const size_t left = static_cast<size_t>(tally.Of(each.status)) - names.size(); left > 0)
    text.append("\n    and ").append(std::to_string(left)).append(" more");
}

} // namespace

std::string FormatSummary(const host::RunTally &tally) {
  std::string text = std::to_string(tally.count) + (tally.count == 1 ? " input:" : " inputs:");
  std::string_view separator = " ";
  for (const StatusWord &each : statusWords)
    if (tally.Of(each.status) > 0) {
      text.append(separator).append(std::to_string(tally.Of(each.status))).append(" ").append(each.word);
      separator = ", ";
    }
  for (const StatusWord &each : statusWords)
    AppendNames(text, tally, each);
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
