// What happens during a request, as values: the start and end of a run and of its jobs, diagnostics, messages, files.
// Report passes an event to the host and then to the transformation log. Host's thread only.
#ifndef REPORT_RUN_EVENT_H
#define REPORT_RUN_EVENT_H

#include "kit/vdk.h"
#include "report/messages.h"

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace report {

enum class Severity : int32_t {
  Warning = V_SEVERITY_WARNING,
  Error = V_SEVERITY_ERROR,
  Fatal = V_SEVERITY_FATAL,
};

enum class JobStatus : int32_t {
  Done = V_JOB_DONE,
  Failed = V_JOB_FAILED,
  Refused = V_JOB_REFUSED,
  Missing = V_JOB_MISSING,
  LeftOut = V_JOB_LEFT_OUT,
  Cancelled = V_JOB_CANCELLED,
};

enum class OutputKind : int32_t {
  Principal = V_OUTPUT_PRINCIPAL,
  Secondary = V_OUTPUT_SECONDARY,
  Opened = V_OUTPUT_OPENED,
  Launched = V_OUTPUT_LAUNCHED,
};

struct RunBegins {
  int32_t count = 0;
};

// What the log shows above a transformation; empty texts leave their lines out, an empty stylesheet means "the one
// named by the input".
struct StartSection {
  std::string input;
  std::string stylesheet;
  std::string output;
  std::string processor;
};

struct JobBegins {
  int32_t job = 0;
  std::string input;
  std::string stylesheet; // empty: the input names it itself
  std::string processor;
  std::string output = {};                  // empty: temporary, or none
  std::optional<StartSection> section = {}; // nothing when the log shows none
};

struct Place {
  std::string file; // as people know it
  int32_t line = -1;
  int32_t column = -1;
};

// With a place it is shown as "Error at file ..."; without one the text is all.
struct Diagnostic {
  Severity severity = Severity::Error;
  std::string text;
  std::optional<Place> place = {};
  std::string code = {};
};

struct Message {
  std::string text;
};

struct FileRead {
  std::string path;
};

struct OutputWritten {
  std::string path;
  OutputKind kind = OutputKind::Principal;
};

struct JobEnds {
  JobStatus status = JobStatus::Failed;
  bool showsEndSection = false;
};

struct RunEnds {};

using RunEvent = std::variant<RunBegins, JobBegins, Diagnostic, Message, FileRead, OutputWritten, JobEnds, RunEnds>;

// Events between the start and the end of a job are that job's.
void Report(const RunEvent &event);
// A problem that keeps a job from being done, found before the job begins.
void ReportForJob(int32_t job, const Diagnostic &problem);

// An error that the client itself has found, in a text of the string table.
[[nodiscard]] Diagnostic MakeProblem(MessageId id, std::initializer_list<std::string_view> values = {});
void ReportProblem(MessageId id, std::initializer_list<std::string_view> values = {});
// The same in words of the system or of a library; nothing for an empty text.
void ReportProblem(const std::string &text);

} // namespace report

#endif
