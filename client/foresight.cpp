// What is known of the jobs of a plan before it is run, and conflicts between their outputs.
#include "client/output_placement.h"
#include "client/run_plan.h"
#include "kit/paths.h"
#include "processors/processor_list.h"

#include <map>

namespace client {

namespace {

using report::JobStatus;
using report::MessageId;

enum class Conflict { None, OwnInput, OwnStylesheet, SharedOutput };

struct FoundConflict {
  Conflict kind = Conflict::None;
  const PlannedJob *other = nullptr; // with a shared output: the first job that has it
};

// Follows the jobs in their order.
class Conflicts {
public:
  explicit Conflicts(const RunPlan &given) : plan(given) {}

  FoundConflict Find(const PlannedJob &job) {
    if (!job.IsToRun() || job.output.empty() || job.place == OutputPlace::Elsewhere)
      return {};
    const std::string output = kit::RealPath(job.output);
    const auto [first, isNew] = byOutput.try_emplace(output, &job);
    if (IsOwnStylesheet(job, job.output))
      return {Conflict::OwnStylesheet};
    if (!isNew)
      return {Conflict::SharedOutput, first->second};
    return {output == kit::RealPath(job.input) ? Conflict::OwnInput : Conflict::None};
  }

  // A run may be meant to replace its input: the result takes its place when it is whole.
  [[nodiscard]] bool IsFatal(const FoundConflict &conflict) const {
    return conflict.kind == Conflict::OwnStylesheet ||
           (conflict.kind == Conflict::SharedOutput && plan.distinctOutputs);
  }

private:
  const RunPlan &plan;
  std::map<std::string, const PlannedJob *> byOutput;
};

class Forecaster {
public:
  explicit Forecaster(const RunPlan &given)
      : plan(given), conflicts(given), knowsProcessor(processors::IsKnownProcessor(given.processor)) {}

  Foresight Look(const PlannedJob &job) {
    Foresight foresight;
    foresight.status = job.status;
    LookAtInput(job, foresight);
    if (plan.isComplete && !plan.usesInstruction && !kit::Exists(job.stylesheet))
      Stop(foresight, JobStatus::Failed, MessageId::ForeseenStylesheetMissing);
    if (plan.isComplete && !knowsProcessor)
      Stop(foresight, JobStatus::Failed, MessageId::ForeseenProcessorUnknown);
    const FoundConflict conflict = conflicts.Find(job);
    if (conflict.kind == Conflict::OwnStylesheet)
      Stop(foresight, JobStatus::Refused, MessageId::ForeseenOwnStylesheet);
    else if (job.place == OutputPlace::Asked)
      foresight.asks.emplace_back("place");
    else if (job.place != OutputPlace::Temporary && job.place != OutputPlace::Elsewhere)
      LookAtOutput(job, foresight);
    TellConflict(conflict, foresight);
    return foresight;
  }

private:
  static void Stop(Foresight &foresight, JobStatus status, MessageId why, const std::string &value = {}) {
    foresight.problems.push_back(report::FormatMessage(why, {value}));
    if (foresight.status == JobStatus::Done)
      foresight.status = status;
  }

  void LookAtInput(const PlannedJob &job, Foresight &foresight) const {
    if (job.status == JobStatus::Missing)
      Stop(foresight, job.status, MessageId::ForeseenInputMissing);
    else if (job.status == JobStatus::Refused)
      Stop(foresight, job.status, MessageId::ForeseenUnsavedChanges);
    else if (job.status == JobStatus::LeftOut)
      Stop(foresight, job.status, MessageId::ForeseenOtherApplication, plan.applicationName);
  }

  void LookAtOutput(const PlannedJob &job, Foresight &foresight) {
    const std::string folder = kit::FolderOf(job.output);
    const auto [known, isNew] = folders.try_emplace(folder);
    if (isNew)
      known->second = FindFolderObstacle(job.output);
    if (known->second == MessageId::FolderMissing && !plan.makeFolders)
      Stop(foresight, JobStatus::Refused, MessageId::ForeseenFolderMissing);
    if (known->second == MessageId::FolderNotWritable)
      Stop(foresight, JobStatus::Refused, MessageId::ForeseenFolderReadOnly);
    if (!kit::Exists(job.output))
      return;
    foresight.asks.emplace_back("overwrite");
    if (IsProtected(job.output))
      Stop(foresight, JobStatus::Refused, MessageId::ForeseenOutputReadOnly);
  }

  void TellConflict(const FoundConflict &conflict, Foresight &foresight) const {
    if (conflict.kind == Conflict::OwnInput)
      foresight.problems.push_back(report::LoadMessage(MessageId::ForeseenOwnInput));
    else if (conflict.kind == Conflict::SharedOutput)
      foresight.problems.push_back(report::FormatMessage(MessageId::ForeseenSameOutput, {conflict.other->input}));
    if (foresight.status == JobStatus::Done && conflicts.IsFatal(conflict))
      foresight.status = JobStatus::Failed;
  }

  const RunPlan &plan;
  Conflicts conflicts;
  bool knowsProcessor;
  std::map<std::string, std::optional<MessageId>> folders; // and what keeps files from being written there
};

} // namespace

std::vector<Foresight> Foresee(const RunPlan &plan) {
  Forecaster forecaster(plan);
  std::vector<Foresight> all;
  all.reserve(plan.jobs.size());
  for (const PlannedJob &job : plan.jobs)
    all.push_back(forecaster.Look(job));
  return all;
}

RequestCheck CheckDistinctOutputs(const RunPlan &plan) {
  if (!plan.distinctOutputs)
    return RequestCheck::Accepted;
  Conflicts conflicts(plan);
  for (const PlannedJob &job : plan.jobs) {
    const FoundConflict conflict = conflicts.Find(job);
    if (!conflicts.IsFatal(conflict))
      continue;
    if (conflict.kind == Conflict::OwnStylesheet)
      report::ReportProblem(MessageId::OutputIsStylesheet, {job.input, job.output});
    else
      report::ReportProblem(MessageId::SharedOutput, {job.input, job.output, conflict.other->input});
    return RequestCheck::Refused;
  }
  return RequestCheck::Accepted;
}

} // namespace client
