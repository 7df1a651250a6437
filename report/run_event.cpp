#include "report/run_event.h"

#include "kit/values.h"
#include "report/transformation_log.h"

#include <utility>

namespace report {

namespace {

constexpr int32_t noJob = -1;

// The job that is under way.
int32_t &CurrentJob() {
  static int32_t job = noJob;
  return job;
}

V_RunEventT MakeEvent(int32_t kind, int32_t job) {
  V_RunEventT event{};
  event.kind = kind;
  event.job = job;
  event.line = -1;
  event.column = -1;
  return event;
}

// The event as the host gets it, with texts borrowed from the argument.
class Translation {
public:
  explicit Translation(int32_t current) : job(current) {}

  V_RunEventT operator()(const RunBegins &begins) const {
    V_RunEventT event = MakeEvent(V_RUN_BEGINS, noJob);
    event.count = begins.count;
    return event;
  }
  V_RunEventT operator()(const JobBegins &begins) const {
    V_RunEventT event = MakeEvent(V_JOB_BEGINS, begins.job);
    event.path = begins.input.c_str();
    event.stylesheet = kit::OrNull(begins.stylesheet);
    event.processor = begins.processor.c_str();
    event.output = kit::OrNull(begins.output);
    return event;
  }
  V_RunEventT operator()(const Diagnostic &diagnostic) const {
    V_RunEventT event = MakeEvent(V_RUN_DIAGNOSTIC, job);
    event.severity = static_cast<int32_t>(diagnostic.severity);
    event.text = diagnostic.text.c_str();
    event.code = kit::OrNull(diagnostic.code);
    if (diagnostic.place) {
      event.path = kit::OrNull(diagnostic.place->file);
      event.line = diagnostic.place->line;
      event.column = diagnostic.place->column;
    }
    return event;
  }
  V_RunEventT operator()(const Message &message) const {
    V_RunEventT event = MakeEvent(V_RUN_MESSAGE, job);
    event.text = message.text.c_str();
    return event;
  }
  V_RunEventT operator()(const FileRead &read) const {
    V_RunEventT event = MakeEvent(V_RUN_FILE_READ, job);
    event.path = read.path.c_str();
    return event;
  }
  V_RunEventT operator()(const OutputWritten &output) const {
    V_RunEventT event = MakeEvent(V_RUN_OUTPUT, job);
    event.path = output.path.c_str();
    event.outputKind = static_cast<int32_t>(output.kind);
    return event;
  }
  V_RunEventT operator()(const JobEnds &ends) const {
    V_RunEventT event = MakeEvent(V_JOB_ENDS, job);
    event.status = static_cast<int32_t>(ends.status);
    return event;
  }
  V_RunEventT operator()(const RunEnds &) const { return MakeEvent(V_RUN_ENDS, noJob); }

private:
  int32_t job;
};

} // namespace

void Report(const RunEvent &event) {
  if (const auto *begins = std::get_if<JobBegins>(&event))
    CurrentJob() = begins->job;
  V_ApiReportRunEvent(std::visit(Translation(CurrentJob()), event));
  ShowInLog(event);
  if (std::holds_alternative<JobEnds>(event))
    CurrentJob() = noJob;
}

void ReportForJob(int32_t job, const Diagnostic &problem) {
  const int32_t before = std::exchange(CurrentJob(), job);
  Report(problem);
  CurrentJob() = before;
}

Diagnostic MakeProblem(MessageId id, std::initializer_list<std::string_view> values) {
  return {Severity::Error, FormatMessage(id, values)};
}

void ReportProblem(const std::string &text) {
  if (!text.empty())
    Report(Diagnostic{Severity::Error, text});
}

void ReportProblem(MessageId id, std::initializer_list<std::string_view> values) { Report(MakeProblem(id, values)); }

} // namespace report
