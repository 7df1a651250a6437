#include "client/run_plan.h"

#include "catalogue/location.h"
#include "catalogue/writer.h"
#include "client/open_documents.h"
#include "client/output_placement.h"
#include "kit/names.h"
#include "kit/paths.h"
#include "kit/text.h"
#include "processors/processor_list.h"

#include <algorithm>
#include <array>
#include <optional>
#include <set>

namespace client {

namespace {

using catalogue::OutputLocationKind;
using catalogue::Transformation;
using report::JobStatus;
using report::MessageId;

// What the checks look at and fill in, one after the other.
struct Planning {
  const RunRequest &request;
  RunPlan &plan;
  std::optional<Transformation> transformation = {};
};

RequestCheck Refuse(MessageId message, std::initializer_list<std::string_view> values = {}) {
  report::ReportProblem(message, values);
  return RequestCheck::Refused;
}

RequestCheck CheckInputKind(Planning &planning) {
  return planning.request.inputKind == InputKind::NotSpecified ? Refuse(MessageId::InvalidCommand)
                                                               : RequestCheck::Accepted;
}

// Looks at the document first, although gathering prefers the book: with a plain document and a book both active, a
// run with children is refused rather than started on something that is not in front of the person.
RequestCheck CheckActiveObject(Planning &planning) {
  const bool withChildren = planning.request.inputKind == InputKind::CurrentFileWithChildren;
  if (planning.request.inputKind != InputKind::CurrentFile && !withChildren)
    return RequestCheck::Accepted;
  const V_ObjectT document = ActiveDocument();
  if (!document && !ActiveBook())
    return Refuse(MessageId::NoActiveDocument);
  if (!document && !withChildren)
    return Refuse(MessageId::CannotApplyToBook);
  if (document && withChildren && !V_ApiGetInt(document, V_OP_IS_DITA_MAP))
    return Refuse(MessageId::NoActiveBookOrMap);
  return RequestCheck::Accepted;
}

RequestCheck CheckInputList(Planning &planning) {
  return planning.request.inputs.empty() ? Refuse(MessageId::NoInputs) : RequestCheck::Accepted;
}

RequestCheck CheckOutputCount(Planning &planning) {
  const RunRequest &request = planning.request;
  const size_t expected = request.inputKind == InputKind::File ? request.inputs.size() : 0;
  return request.outputs.size() == expected ? RequestCheck::Accepted : Refuse(MessageId::OutputCountMismatch);
}

std::string FindContent(const std::map<size_t, std::string> &contents, const PlannedJob &job) {
  const auto found = contents.find(static_cast<size_t>(job.number));
  return found == contents.end() ? std::string() : found->second;
}

RequestCheck MakeJobs(Planning &planning) {
  std::vector<PlannedJob> &jobs = planning.plan.jobs;
  jobs.reserve(planning.request.inputs.size());
  for (const std::string &input : planning.request.inputs) {
    PlannedJob job;
    job.number = static_cast<int32_t>(jobs.size());
    job.input = catalogue::ResolvePath(input);
    job.inputContent = FindContent(planning.request.inputContents, job);
    jobs.push_back(std::move(job));
  }
  return RequestCheck::Accepted;
}

// `inputs` are named as the request names them.
void Drop(PlannedJob &job, JobStatus status, MessageId message, const std::string &input) {
  job.status = status;
  report::ReportForJob(job.number, report::MakeProblem(message, {input}));
}

RequestCheck DropUnsavedInputs(Planning &planning) {
  const std::set<std::string> unsaved = UnsavedPaths();
  if (unsaved.empty())
    return RequestCheck::Accepted;
  for (PlannedJob &job : planning.plan.jobs) {
    const std::string &given = planning.request.inputs[static_cast<size_t>(job.number)];
    if (unsaved.contains(kit::AbsolutePath(given)) || unsaved.contains(kit::AbsolutePath(job.input)))
      Drop(job, JobStatus::Refused, MessageId::SaveDocumentFirst, given);
  }
  return RequestCheck::Accepted;
}

RequestCheck DropMissingInputs(Planning &planning) {
  for (PlannedJob &job : planning.plan.jobs) {
    const std::string &given = planning.request.inputs[static_cast<size_t>(job.number)];
    if (job.IsToRun() && !given.empty() && !kit::Exists(job.ReadFile()))
      Drop(job, JobStatus::Missing, MessageId::FileMissing, given);
  }
  return std::ranges::any_of(planning.plan.jobs, &PlannedJob::IsToRun) ? RequestCheck::Accepted : RequestCheck::Refused;
}

RequestCheck FindTransformation(Planning &planning) {
  const RunRequest &request = planning.request;
  const bool byFile = !request.transformationFile.empty();
  planning.transformation =
      catalogue::GetTransformation(request.transformationFile, request.applicationName, request.transformationName);
  const auto &found = planning.transformation;
  if (!found && byFile)
    return Refuse(MessageId::TransformationNotFoundInFile, {request.transformationName, request.transformationFile});
  if (!found)
    return Refuse(MessageId::TransformationNotFoundForApplication,
                  {request.transformationName, request.applicationName});
  const auto check =
      catalogue::CheckTransformationFields(*found, catalogue::CheckMode::Quiet, processors::IsKnownProcessor);
  return check == catalogue::FieldCheck::GoOn ? RequestCheck::Accepted : RequestCheck::Refused;
}

// Later pairs are left to the processor.
RequestCheck CheckFirstParameter(const RunRequest &request) {
  const auto &parameters = request.parameters;
  const bool broken = !parameters.empty() && (parameters[0].empty() || parameters.size() < 2 || parameters[1].empty());
  return broken ? Refuse(MessageId::InvalidStylesheetParams) : RequestCheck::Accepted;
}

// What is to be run: a complete transformation of a catalogue passes at once, a bare stylesheet has its processor and
// its parameters looked at.
RequestCheck CheckWhatToRun(Planning &planning) {
  const RunRequest &request = planning.request;
  const bool namesCatalogue = !request.applicationName.empty() || !request.transformationFile.empty();
  const bool namesTransformation = !request.transformationName.empty();
  if (!request.RunsBareXsl() && !(namesCatalogue && namesTransformation))
    return Refuse(MessageId::NothingToRun);
  if (namesCatalogue && namesTransformation)
    return FindTransformation(planning);
  if (namesCatalogue && !request.processor.empty() && !processors::CheckProcessor(request.processor))
    return RequestCheck::Refused;
  return CheckFirstParameter(request);
}

// ---- The two variants

bool IsOfApplication(const std::string &input, const std::string &application) {
  const auto names = catalogue::GetApplicationsForFile(input);
  return std::ranges::find(names, application) != names.end();
}

void PlanTransformation(const RunRequest &request, const Transformation &transformation, RunPlan &plan) {
  const bool byFile = !request.transformationFile.empty();
  plan.usage = {"XSLTRun_Transformation", byFile ? "XSLTRun_DefOrUserSpecifiedTrFile" : "XSLTRun_AppTrFile"};
  plan.processor = transformation.processor;
  plan.usesInstruction = transformation.usePI;
  plan.parameters = transformation.parameters;
  plan.transformationName = transformation.name;
  plan.applicationName = request.applicationName;
  plan.section = SectionKind::Catalogue;
  plan.openOutput = transformation.output.openOutput;
  const bool filters =
      !request.applicationName.empty() && !kit::EqualsIgnoreCase(request.applicationName, kit::defaultsName);
  for (PlannedJob &job : plan.jobs) {
    if (job.IsToRun() && filters && !IsOfApplication(job.input, request.applicationName))
      job.status = JobStatus::LeftOut;
    if (!transformation.usePI)
      job.stylesheet = catalogue::ResolvePath(transformation.xslPath, job.input);
    PlaceByPolicy(transformation.output, job);
  }
}

void PlanBareStylesheet(const RunRequest &request, RunPlan &plan) {
  plan.usage = {"XSLTRun_XSL"};
  plan.processor = request.processor.empty() ? processors::DefaultProcessorName() : request.processor;
  plan.usesInstruction = request.usePI;
  plan.parameters = request.parameters;
  plan.section = SectionKind::BareStylesheet;
  // What was written where the request says is not opened.
  plan.openOutput = request.outputs.empty() ? catalogue::OpenOutputKind::Vellis : catalogue::OpenOutputKind::None;
  for (PlannedJob &job : plan.jobs) {
    if (!request.usePI)
      job.stylesheet = catalogue::ResolvePath(request.xslPath, job.input);
    if (request.outputs.empty())
      continue;
    job.outputContent = FindContent(request.outputContents, job);
    job.place = job.outputContent.empty() ? OutputPlace::Named : OutputPlace::Elsewhere;
    job.output = catalogue::ResolvePath(request.outputs[static_cast<size_t>(job.number)], job.input);
  }
}

RequestCheck FillJobs(Planning &planning) {
  const RunRequest &request = planning.request;
  RunPlan &plan = planning.plan;
  if (request.RunsBareXsl())
    PlanBareStylesheet(request, plan);
  else
    PlanTransformation(request, *planning.transformation, plan);
  plan.usage.insert(plan.usage.begin(), std::string(ScopeName(request.inputKind)));
  plan.printStartLog = request.printStartLog;
  plan.printEndLog = request.printEndLog;
  plan.start = request.start;
  plan.makeFolders = request.makeFolders;
  plan.distinctOutputs = request.distinctOutputs;
  plan.isComplete = true;
  return RequestCheck::Accepted;
}

constexpr std::array steps = {CheckInputKind,    CheckActiveObject, CheckInputList, CheckOutputCount, MakeJobs,
                              DropUnsavedInputs, DropMissingInputs, CheckWhatToRun, FillJobs};

} // namespace

RequestCheck PlanRun(const RunRequest &request, RunPlan &plan) {
  Planning planning{request, plan};
  for (const auto step : steps)
    if (step(planning) == RequestCheck::Refused)
      return RequestCheck::Refused;
  return RequestCheck::Accepted;
}

} // namespace client
