#include "host/record/run_record_file.h"

#include "host/record/json_text.h"
#include "host/record/time_text.h"
#include "kit/paths.h"
#include "kit/unfinished_files.h"

#include <utility>

namespace host {

namespace {

constexpr int recordVersion = 1;

Json NumberOrNull(int32_t number) { return number > 0 ? Json(number) : Json(); }

Json ToJson(const RunDiagnostic &diagnostic) {
  Json object{{"severity", NameSeverity(diagnostic.severity)},
              {"file", diagnostic.file.empty() ? Json() : Json(diagnostic.file)},
              {"line", NumberOrNull(diagnostic.line)},
              {"column", NumberOrNull(diagnostic.column)}};
  if (!diagnostic.code.empty())
    object["code"] = diagnostic.code;
  object["text"] = diagnostic.text;
  return object;
}

Json ToJson(const std::vector<RunDiagnostic> &diagnostics) {
  Json list = Json::array();
  for (const RunDiagnostic &diagnostic : diagnostics)
    list.push_back(ToJson(diagnostic));
  return list;
}

Json ToJson(const JobReport &job) {
  Json outputs = Json::array();
  for (const RunOutput &output : job.outputs)
    outputs.push_back(Json{{"path", output.path}, {"kind", NameOutputKind(output.kind)}});
  return Json{{"type", "job"},
              {"job", job.job},
              {"input", job.input},
              {"stylesheet", job.stylesheet ? Json(*job.stylesheet) : Json()},
              {"processor", job.processor},
              {"status", NameJobStatus(job.status)},
              {"milliseconds", job.time.count()},
              {"outputs", std::move(outputs)},
              {"diagnostics", ToJson(job.diagnostics)}};
}

} // namespace

RunRecordFile::RunRecordFile(std::string path, std::string request, int32_t expectedCount, WriteFailure failure)
    : target(std::move(path)), requestText(std::move(request)), started(FormatTime(std::chrono::system_clock::now())),
      preparedCount(expectedCount), tell(std::move(failure)) {
  kit::RemoveAbandonedFiles(kit::FolderOf(kit::FollowLinks(target)));
  Prepare(expectedCount);
  error = beginning->Error();
}

void RunRecordFile::Prepare(int32_t count) {
  preparedCount = count;
  beginning.emplace(target);
  (void)beginning->Write(ToJsonText({{"type", "run"},
                                     {"version", recordVersion},
                                     {"started", started},
                                     {"count", count},
                                     {"request", requestText}}) +
                         "\n");
}

void RunRecordFile::BeginRun(int32_t count) {
  if (hasBegun || !error.empty())
    return;
  hasBegun = true;
  if (count != preparedCount)
    Prepare(count);
  if (!beginning->Commit())
    Note(beginning->Error());
  else if (!file.Open(target))
    Note(file.Error());
  beginning.reset();
}

void RunRecordFile::TakeJob(const JobReport &job) { Append(ToJsonText(ToJson(job))); }

void RunRecordFile::TakeDiagnostic(const RunDiagnostic &diagnostic) { outsideOfJobs.push_back(diagnostic); }

void RunRecordFile::End(const RunTally &tally, int32_t exitCode) {
  Json line{{"type", "end"}};
  for (size_t status = 0; status < jobStatusCount; ++status)
    line[std::string(NameJobStatus(static_cast<int32_t>(status)))] = tally.byStatus.at(status);
  line["exit"] = exitCode;
  if (!outsideOfJobs.empty())
    line["diagnostics"] = ToJson(outsideOfJobs);
  Append(ToJsonText(line));
  if (hasBegun && error.empty() && !file.Close())
    Note(file.Error());
}

void RunRecordFile::Append(const std::string &line) {
  if (hasBegun && error.empty() && !file.Append(line + "\n"))
    Note(file.Error());
}

void RunRecordFile::Note(const std::string &problem) {
  error = problem;
  tell(problem);
}

} // namespace host
