#include "host/desktop/run_summary.h"

namespace desktop {

namespace {

struct StatusText {
  const char *sign;
  const char *word;
};

constexpr std::array<StatusText, host::jobStatusCount> statusTexts = {{
    {"\u2713", "done"},
    {"\u2717", "failed"},
    {"\u2298", "refused"},
    {"?", "missing"},
    {"\u2013", "left out"},
    {"\u25A0", "cancelled"},
}};

std::string Count(int32_t count, const std::string &what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

} // namespace

void RunSummary::TakeEvent(const host::RunEvent &event) {
  if (hasEnded)
    *this = {};
  switch (event.kind) {
  case V_RUN_BEGINS:
    inputs = event.count;
    break;
  case V_RUN_DIAGNOSTIC:
    ++(event.severity == V_SEVERITY_WARNING ? warnings : errors);
    if (event.severity != V_SEVERITY_WARNING && firstError.empty())
      firstError = event.text;
    break;
  case V_JOB_ENDS:
    ++ended[host::JobStatusIndex(event.status)];
    break;
  case V_RUN_ENDS:
    hasEnded = true;
    break;
  default:
    break;
  }
}

int32_t RunSummary::NotDone() const { return CountOf(V_JOB_FAILED) + CountOf(V_JOB_REFUSED) + CountOf(V_JOB_MISSING); }

std::string RunSummary::DescribeProblems() const {
  std::string text = errors > 0 ? Count(errors, "error") : std::string();
  if (warnings > 0)
    text.append(text.empty() ? "" : ", ").append(Count(warnings, "warning"));
  return text;
}

std::string SummariseRun(const RunSummary &run) {
  if (run.Inputs() == 0)
    return {};
  return host::SummariseJobs(run.Inputs(), run.ByStatus());
}

std::string DescribeStatus(int32_t status) {
  const StatusText &text = statusTexts[host::JobStatusIndex(status)];
  return std::string(text.sign) + " " + text.word;
}

} // namespace desktop
