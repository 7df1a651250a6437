#include "host/record/run_recorder.h"

#include <numeric>
#include <utility>

namespace host {

void RunRecorder::OnRunEvent(const RunEvent &event) {
  switch (event.kind) {
  case V_RUN_BEGINS:
    tally.count += event.count;
    for (RunReporter *reporter : reporters)
      reporter->BeginRun(event.count);
    break;
  case V_JOB_BEGINS:
    BeginJob(event);
    break;
  case V_RUN_DIAGNOSTIC:
    TakeDiagnostic(event);
    break;
  case V_RUN_OUTPUT:
    if (current && current->job == event.job)
      current->outputs.push_back({event.path, event.outputKind});
    break;
  case V_JOB_ENDS:
    EndJob(event);
    break;
  case V_RUN_ENDS:
    Finish();
    break;
  default:
    break;
  }
}

void RunRecorder::BeginJob(const RunEvent &event) {
  current =
      JobReport{.job = event.job, .input = event.path, .stylesheet = event.stylesheet, .processor = event.processor};
  if (auto said = early.extract(event.job))
    current->diagnostics = std::move(said.mapped());
  begun = std::chrono::steady_clock::now();
}

void RunRecorder::EndJob(const RunEvent &event) {
  // A job that ends without having begun is still one of the run.
  if (!current || current->job != event.job)
    BeginJob(event);
  const size_t index = JobStatusIndex(event.status);
  current->status = static_cast<int32_t>(index);
  current->time = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begun);
  ++tally.byStatus.at(index);
  if (auto &names = tally.names.at(index); index != V_JOB_DONE && names.size() < RunTally::maxNames)
    names.push_back(current->input);
  for (RunReporter *reporter : reporters)
    reporter->TakeJob(*current);
  current.reset();
}

void RunRecorder::TakeDiagnostic(const RunEvent &event) {
  RunDiagnostic diagnostic{event.severity, event.path, event.line, event.column, event.code, event.text};
  if (current && current->job == event.job)
    current->diagnostics.push_back(std::move(diagnostic));
  else if (event.job >= 0)
    early[event.job].push_back(std::move(diagnostic));
  else
    TakeDiagnosticOfRun(diagnostic);
}

void RunRecorder::TakeDiagnosticOfRun(const RunDiagnostic &diagnostic) {
  const int32_t ended = std::accumulate(tally.byStatus.begin(), tally.byStatus.end(), 0);
  if (tally.count > 0 && ended == tally.count && diagnostic.severity != V_SEVERITY_WARNING)
    tally.hasFailed = true;
  for (RunReporter *reporter : reporters)
    reporter->TakeDiagnostic(diagnostic);
}

void RunRecorder::Finish() {
  for (const auto &[job, diagnostics] : std::exchange(early, {}))
    for (const RunDiagnostic &diagnostic : diagnostics)
      for (RunReporter *reporter : reporters)
        reporter->TakeDiagnostic(diagnostic);
}

} // namespace host
