#include "host/cli/dry_run.h"

#include "host/cli/printing.h"
#include "host/record/json_text.h"
#include "kit/names.h"

#include <algorithm>

namespace cli {

namespace {

using host::Json;
using Strings = std::vector<std::string>;

// Fields of a job in the reply, in their order.
enum Field : uint32_t { Number, Input, Stylesheet, Processor, Parameters, Output, Asks, Status, Problems };

// A nested list as what kit::TypedValues reads, without taking it over.
class Borrowed {
public:
  explicit Borrowed(const V_TypedValsT &list) : values(kit::TypedValues::Adopt(list)) {}
  ~Borrowed() { (void)values.Release(); }
  Borrowed(const Borrowed &) = delete;
  Borrowed &operator=(const Borrowed &) = delete;
  const kit::TypedValues *operator->() const { return &values; }

private:
  kit::TypedValues values;
};

PlannedJob ReadJob(const V_TypedValsT &list) {
  const Borrowed fields(list);
  return {fields->Integer(Number).value_or(-1),
          fields->String(Input).value_or(""),
          fields->String(Stylesheet).value_or(""),
          fields->String(Processor).value_or(""),
          fields->Strings(Parameters).value_or(Strings()),
          fields->String(Output).value_or(""),
          fields->Strings(Asks).value_or(Strings()),
          fields->Integer(Status).value_or(V_JOB_FAILED),
          fields->Strings(Problems).value_or(Strings())};
}

bool AsksFor(const PlannedJob &job, std::string_view what) {
  return std::ranges::find(job.asks, what) != job.asks.end();
}

std::string DescribeOutput(const PlannedJob &job) {
  if (!job.output.empty())
    return job.output;
  return AsksFor(job, "place") ? "(asked for)" : "(temporary)";
}

std::string ListMarks(const PlannedJob &job) {
  std::string marks = AsksFor(job, "overwrite") ? "exists" : "";
  for (const std::string &problem : job.problems)
    marks.append(marks.empty() ? "" : ", ").append(problem);
  return marks;
}

host::RunTally CountJobs(const std::vector<PlannedJob> &jobs) {
  host::RunTally tally;
  tally.count = static_cast<int32_t>(jobs.size());
  for (const PlannedJob &job : jobs)
    ++tally.byStatus.at(host::JobStatusIndex(job.status));
  return tally;
}

Json TextOrNull(const std::string &text) { return text.empty() ? Json() : Json(text); }

} // namespace

std::vector<PlannedJob> ReadPlan(const kit::TypedValues &reply) {
  std::vector<PlannedJob> jobs;
  for (uint32_t index = 0; index < reply.Size(); ++index)
    if (const V_TypedValsT *list = reply.Values(index))
      jobs.push_back(ReadJob(*list));
  return jobs;
}

std::string FormatPlannedJob(const PlannedJob &job) {
  const std::string stylesheet = job.stylesheet.empty() ? "(the input's own)" : job.stylesheet;
  return FormatFields({job.input, stylesheet, job.processor, DescribeOutput(job), ListMarks(job)});
}

std::string FormatPlannedJobAsJson(const PlannedJob &job) {
  Json parameters = Json::array();
  for (size_t index = 0; index + 1 < job.parameters.size(); index += 2)
    parameters.push_back(Json::array({job.parameters[index], job.parameters[index + 1]}));
  Json object{{"job", job.job},
              {"input", job.input},
              {"stylesheet", TextOrNull(job.stylesheet)},
              {"processor", job.processor},
              {"parameters", std::move(parameters)},
              {"output", TextOrNull(job.output)},
              {"asks", job.asks}};
  if (!job.problems.empty())
    object["problems"] = job.problems;
  return host::ToJsonText(object) + "\n";
}

ExitCode PrintPlan(Environment environment, const RunRequest &request) {
  const host::ClientReply reply = environment.session.Send(kit::xsltName, request.PlanText());
  if (!reply.error.empty())
    return Refuse(reply.error);
  const std::optional<int32_t> status = reply.values.Integer(0);
  if (!status)
    return Refuse("the client does not make plans");
  const std::vector<PlannedJob> jobs = ReadPlan(reply.values);
  // The reason stands on the console.
  if (*status == V_ERROR_BAD_REQUEST)
    return ExitCode::BadCommand;
  const auto format = environment.options.printsJson ? FormatPlannedJobAsJson : FormatPlannedJob;
  std::string text;
  for (const PlannedJob &job : jobs)
    text += format(job);
  return Print(text) ? JudgeRun(CountJobs(jobs)) : ExitCode::Failed;
}

} // namespace cli
