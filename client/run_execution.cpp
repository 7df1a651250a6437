#include "client/run_execution.h"

#include "client/expected_jobs.h"
#include "client/output_placement.h"
#include "client/output_sync.h"
#include "client/run_files.h"
#include "kit/paths.h"
#include "kit/unfinished_files.h"
#include "kit/values.h"
#include "processors/processor_list.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>
#include <system_error>
#include <utility>

namespace client {

namespace {

using catalogue::OpenOutputKind;
using report::JobStatus;
using report::MessageId;
using report::OutputKind;
using report::Report;

void ReportUsage(const std::string &what) { V_ApiReportUsage("StructuredVellis", "XSLT", what.c_str()); }

bool SelectProcessor(processors::Processor &processor, const std::string &name) {
  const processors::ProcessorEntry *entry = processors::FindProcessor(name);
  processor.SetPolicy(processors::ReadPolicy());
  if (processor.SelectFactory(entry ? processors::Factory{entry->className, entry->attributes} : processors::Factory()))
    return true;
  report::ReportProblem(MessageId::ProviderNotFound, {name});
  return false;
}

void BeginJob(const RunPlan &plan, const PlannedJob &job, const std::string &output,
              std::optional<report::StartSection> section = {}) {
  Report(report::JobBegins{job.number, job.input, job.stylesheet, plan.processor, output, std::move(section)});
}

// A job that is not carried out.
void ReportSkipped(const RunPlan &plan, const PlannedJob &job, JobStatus status) {
  BeginJob(plan, job, job.output);
  Report(report::JobEnds{status});
}

std::optional<report::Diagnostic> MakeFolderOf(const std::string &output) {
  const std::string folder = kit::FolderOf(output);
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (!error || kit::IsFolder(folder))
    return std::nullopt;
  return report::MakeProblem(MessageId::CannotMakeFolder, {folder, error.message()});
}

class Execution {
public:
  Execution(const RunPlan &chosen, processors::Processor &chosenProcessor) : plan(chosen), processor(chosenProcessor) {}

  RunResult Run() {
    Report(report::RunBegins{static_cast<int32_t>(plan.jobs.size())});
    processor.SetJobCount(plan.jobs.size());
    RunResult result = SelectProcessor(processor, plan.processor) ? RunJobs() : SkipJobs(JobStatus::Failed);
    if (!sync.Sync())
      result = RunResult::Failed;
    OpenOutputs();
    files.DeleteListed();
    Report(report::RunEnds{});
    return result;
  }

private:
  RunResult RunJobs() {
    const auto count = static_cast<int32_t>(std::ranges::count_if(plan.jobs, &PlannedJob::IsToRun));
    int32_t index = 0;
    ExpectedJobs expected(plan, processor, V_ApiGetInt(V_SESSION, V_SP_JOBS));
    for (const PlannedJob &job : plan.jobs) {
      // Asked no more once the person has cancelled.
      isCancelled = isCancelled || (job.IsToRun() && V_ApiIsCancelled());
      if (!job.IsToRun() || isCancelled) {
        ReportSkipped(plan, job, job.IsToRun() ? JobStatus::Cancelled : job.status);
        continue;
      }
      V_ApiReportProgress(index++, count, job.input.c_str());
      expected.TellOfThoseAfter(job.number);
      RunJob(job);
    }
    return lastResult;
  }

  RunResult SkipJobs(JobStatus status) {
    for (const PlannedJob &job : plan.jobs)
      ReportSkipped(plan, job, job.IsToRun() ? status : job.status);
    return RunResult::Failed;
  }

  void RunJob(const PlannedJob &job) {
    const ChosenOutput chosen = ChooseOutput(job);
    const std::string &temporary = job.place == OutputPlace::Temporary ? chosen.output : chosen.temporary;
    files.DeleteAtEnd(temporary);
    const JobStatus status = TryJob(job, chosen, job.place == OutputPlace::Temporary ? std::string() : chosen.output);
    // The name that was reserved for it is free for the next job again.
    std::error_code error;
    if (status != JobStatus::Done && !temporary.empty())
      std::filesystem::remove(temporary, error);
  }

  [[nodiscard]] JobStatus TryJob(const PlannedJob &job, const ChosenOutput &chosen, const std::string &shown) {
    if (!plan.usesInstruction && !kit::Exists(job.stylesheet))
      return Refuse(job, shown, JobStatus::Failed, DescribeMissingStylesheet(job));
    if (IsOwnStylesheet(job, chosen.output))
      return Refuse(job, shown, JobStatus::Refused,
                    report::MakeProblem(MessageId::OutputIsStylesheet, {job.input, chosen.output}));
    if (const OutputCheck check = PrepareOutput(job, chosen); !check.isAccepted)
      return Refuse(job, shown, JobStatus::Refused, check.problem);
    RemoveAbandonedFiles(chosen.output);
    RemoveAbandonedFiles(chosen.Written());
    BeginJob(plan, job, shown, plan.printStartLog ? MakeSection(job, shown) : std::nullopt);
    const JobStatus status = Transform(job, chosen);
    lastResult = status == JobStatus::Done ? RunResult::Done : RunResult::Failed;
    Report(report::JobEnds{status, plan.printEndLog});
    return status;
  }

  [[nodiscard]] OutputCheck PrepareOutput(const PlannedJob &job, const ChosenOutput &chosen) {
    // A temporary one has just been made.
    if (!chosen.elsewhere.empty() || (job.place == OutputPlace::Temporary && kit::Exists(chosen.output)))
      return {true};
    if (plan.makeFolders && !chosen.output.empty()) {
      if (syncsOutputs)
        sync.NoteMissingFolders(kit::FolderOf(chosen.output));
      if (auto problem = MakeFolderOf(chosen.output))
        return {false, std::move(problem)};
    }
    return CheckOutput(chosen.output);
  }

  [[nodiscard]] JobStatus Refuse(const PlannedJob &job, const std::string &output, JobStatus status,
                                 const std::optional<report::Diagnostic> &why) {
    BeginJob(plan, job, output);
    if (why)
      Report(*why);
    Report(report::JobEnds{status});
    return status;
  }

  [[nodiscard]] report::Diagnostic DescribeMissingStylesheet(const PlannedJob &job) const {
    if (plan.section == SectionKind::BareStylesheet)
      return report::MakeProblem(MessageId::FileMissing, {job.stylesheet});
    return report::MakeProblem(MessageId::TransformationXslMissing, {job.stylesheet, plan.transformationName});
  }

  // For a bare stylesheet the host says whether its run is worth a start section, and on whose behalf.
  [[nodiscard]] std::optional<report::StartSection> MakeSection(const PlannedJob &job,
                                                                const std::string &output) const {
    if (plan.section == SectionKind::Catalogue)
      return report::StartSection{job.input, job.stylesheet, output, plan.processor};
    if (V_ApiGetInt(V_SESSION, V_SP_XSL_START_SECTION))
      return report::StartSection{job.input, job.stylesheet, {}, plan.processor};
    const V_ObjectT object =
        V_ApiGetInt(V_SESSION, V_SP_XSL_OBJECT_START_SECTION) ? V_ApiGetObject(V_SESSION, V_SP_XSL_SECTION_OBJECT) : 0;
    if (!object || !V_ApiGetInt(object, V_OP_XSL_START_SECTION))
      return std::nullopt;
    return report::StartSection{kit::GetString(object, V_OP_NAME), job.stylesheet, job.input, plan.processor};
  }

  JobStatus Transform(const PlannedJob &job, const ChosenOutput &chosen) {
    const processors::JobResult result = processor.TransformXMLFile(MakeJob(plan, job, chosen));
    for (const std::string &file : result.filesRead)
      Report(report::FileRead{file});
    if (result.status != JobStatus::Done)
      return result.status;
    if (!PutInPlace(chosen))
      return JobStatus::Failed;
    ReportOutput(job, chosen.output);
    NoteFolders(job, chosen, result.secondaryOutputs);
    for (const std::string &output : result.secondaryOutputs) {
      RemoveAbandonedFiles(output);
      Report(report::OutputWritten{output, OutputKind::Secondary});
    }
    return JobStatus::Done;
  }

  // Of runs that were killed; once in each folder that this run writes to.
  void RemoveAbandonedFiles(const std::string &output) {
    if (const std::string folder = kit::FolderOf(kit::FollowLinks(output));
        !output.empty() && cleanedFolders.insert(folder).second)
      kit::RemoveAbandonedFiles(folder);
  }

  void NoteFolders(const PlannedJob &job, const ChosenOutput &chosen, const std::vector<std::string> &secondary) {
    if (!syncsOutputs)
      return;
    if (job.place != OutputPlace::Temporary && chosen.elsewhere.empty() && !NetLibIsNetFile(chosen.output.c_str()))
      sync.NotePrincipal(chosen.output);
    for (const std::string &output : secondary)
      sync.NoteSecondary(output, chosen.output);
  }

  [[nodiscard]] bool PutInPlace(const ChosenOutput &chosen) const {
    if (chosen.temporary.empty())
      return true;
    const std::string reason =
        ReplaceOutput(chosen.temporary, chosen.output, syncsOutputs ? kit::Durability::Data : kit::Durability::None);
    if (reason.empty())
      return true;
    report::ReportProblem(reason);
    report::ReportProblem(MessageId::OutputOpenElsewhere, {chosen.output});
    return false;
  }

  void ReportOutput(const PlannedJob &job, const std::string &output) {
    const bool isOpened = plan.openOutput != OpenOutputKind::None;
    if (isOpened)
      files.OpenAtEnd(output);
    if (job.place != OutputPlace::Temporary)
      Report(report::OutputWritten{output, OutputKind::Principal});
    else if (isOpened)
      Report(report::OutputWritten{output, plan.openOutput == OpenOutputKind::Vellis ? OutputKind::Opened
                                                                                     : OutputKind::Launched});
  }

  void OpenOutputs() {
    // One policy holds for all jobs.
    const bool areTemporary = !plan.jobs.empty() && plan.jobs.front().place == OutputPlace::Temporary;
    if (plan.openOutput == OpenOutputKind::Vellis)
      files.OpenListedInHost(areTemporary);
    else if (plan.openOutput == OpenOutputKind::DefaultProgram)
      files.LaunchListed();
  }

  const RunPlan &plan;
  processors::Processor &processor;
  RunFiles files;
  std::set<std::string> cleanedFolders;
  const bool syncsOutputs = processors::ReadPolicy().syncsOutputs;
  OutputSync sync;
  bool isCancelled = false;
  RunResult lastResult = RunResult::Failed;
};

} // namespace

RunResult ExecuteRun(const RunPlan &plan, processors::Processor &processor) {
  for (const std::string &what : plan.usage)
    ReportUsage(what);
  return Execution(plan, processor).Run();
}

void ReportRefusedRun(const RunPlan &plan) {
  if (plan.jobs.empty() || std::ranges::any_of(plan.jobs, &PlannedJob::IsToRun))
    return;
  Report(report::RunBegins{static_cast<int32_t>(plan.jobs.size())});
  for (const PlannedJob &job : plan.jobs)
    ReportSkipped(plan, job, job.status);
  Report(report::RunEnds{});
}

} // namespace client
