// Any bytes as the record of a run: what can be read, written as a record, reads the same.
#include "host/record/read_run_record.h"
#include "host/record/run_record_file.h"
#include "kit/vdk.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/unit/folder.h"

namespace {

void WriteAndReadAgain(const std::string &path, const host::RunRecord &record) {
  host::RunRecordFile file(path, record.request, record.count, [](const std::string &) {});
  file.BeginRun(record.count);
  for (const host::RecordedJob &job : record.jobs)
    file.TakeJob({.job = job.job, .input = job.input, .status = job.status});
  if (record.exitCode)
    file.End({}, *record.exitCode);
  fuzz::Require(file.Error().empty(), "the record is written");
  host::RunRecord again;
  std::string error;
  fuzz::Require(host::ReadRunRecord(path, again, error), "what was written can be read");
  fuzz::Require(again.request == record.request && again.count == record.count && again.exitCode == record.exitCode &&
                    again.jobs.size() == record.jobs.size(),
                "what was written is what was read");
  for (size_t index = 0; index < record.jobs.size(); ++index) {
    const host::RecordedJob &before = record.jobs[index];
    const host::RecordedJob &after = again.jobs[index];
    fuzz::Require(before.job == after.job && before.input == after.input && before.status == after.status,
                  "a job is what was read");
  }
}

} // namespace

void fuzz::RunInput(std::string_view input) {
  static const test::Folder folder;
  const std::string path = folder.Write("in.jsonl", input);
  host::RunRecord record;
  std::string error;
  const bool isRead = host::ReadRunRecord(path, record, error);
  Require(isRead == error.empty(), "what is wrong is said");
  Require(isRead || error.starts_with(path + ":"), "what is wrong has its file");
  if (!isRead)
    return;
  Require(record.count >= 0, "a run has a number of jobs");
  for (const host::RecordedJob &job : record.jobs)
    Require(job.status >= V_JOB_DONE && job.status <= V_JOB_CANCELLED, "a status is one of the known ones");
  WriteAndReadAgain(folder.Path("again.jsonl"), record);
}
