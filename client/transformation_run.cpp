#include "client/transformation_run.h"

#include "catalogue/location.h"
#include "client/output_placement.h"
#include "client/run_files.h"
#include "kit/names.h"
#include "kit/paths.h"
#include "kit/text.h"
#include "kit/values.h"
#include "processors/processor_list.h"
#include "report/transformation_log.h"

#include <algorithm>
#include <functional>

namespace client {

namespace {

using catalogue::OpenOutputKind;
using catalogue::OutputLocationKind;
using catalogue::Transformation;
using report::MessageId;

void ReportUsage(std::string_view what) { V_ApiReportUsage("StructuredVellis", "XSLT", std::string(what).c_str()); }

RunResult ToResult(bool success) { return success ? RunResult::Done : RunResult::Failed; }

bool SelectProcessor(processors::Processor &processor, const std::string &name) {
  const std::string *className = processors::FindProcessorClass(name);
  if (processor.SetTransformer(className ? *className : std::string()))
    return true;
  report::AppendMessage(MessageId::ProviderNotFound, {name});
  return false;
}

std::vector<std::string> ResolvePaths(const std::vector<std::string> &paths) {
  std::vector<std::string> resolved;
  resolved.reserve(paths.size());
  std::ranges::transform(paths, std::back_inserter(resolved),
                         [](const std::string &path) { return catalogue::ResolvePath(path); });
  return resolved;
}

// What each input of a run goes through, given by the two variants. Nothing: the input was not transformed.
using RunInput = std::function<std::optional<RunResult>(size_t index, const std::string &input)>;

// Takes the inputs in order until the person cancels. The result is that of the last one transformed.
RunResult RunInputs(const std::vector<std::string> &inputs, const RunInput &runInput) {
  RunResult result = RunResult::Failed;
  const std::vector<std::string> resolved = ResolvePaths(inputs);
  for (size_t index = 0; index < resolved.size() && !V_ApiIsCancelled(); ++index) {
    V_ApiReportProgress(static_cast<int32_t>(index), static_cast<int32_t>(resolved.size()), resolved[index].c_str());
    result = runInput(index, resolved[index]).value_or(result);
  }
  return result;
}

// ---- A transformation of a catalogue

class CatalogueRun {
public:
  CatalogueRun(const RunRequest &validated, Transformation found, processors::Processor &chosen)
      : request(validated), transformation(std::move(found)), processor(chosen) {}

  RunResult Run() {
    if (!SelectProcessor(processor, transformation.processor))
      return RunResult::Failed;
    const RunResult result =
        RunInputs(FilterInputs(), [this](size_t, const std::string &input) { return TransformInput(input); });
    OpenOutputs();
    files.DeleteListed();
    return result;
  }

private:
  [[nodiscard]] std::vector<std::string> FilterInputs() const {
    if (request.applicationName.empty() || kit::EqualsIgnoreCase(request.applicationName, kit::defaultsName))
      return request.inputs;
    std::vector<std::string> kept;
    for (const std::string &input : request.inputs)
      if (const auto names = catalogue::GetApplicationsForFile(catalogue::ResolvePath(input));
          std::ranges::find(names, request.applicationName) != names.end())
        kept.push_back(input);
    return kept;
  }

  std::optional<RunResult> TransformInput(const std::string &input) {
    const std::string xsl =
        transformation.usePI ? std::string() : catalogue::ResolvePath(transformation.xslPath, input);
    const bool isTemporary = transformation.output.outputLocation == OutputLocationKind::DoNotSave;
    const OutputPlan plan = PlanOutput(transformation.output, input);
    files.DeleteAtEnd(isTemporary ? plan.output : plan.temporary);
    if (!transformation.usePI && !kit::Exists(xsl)) {
      report::AppendMessage(MessageId::TransformationXslMissing, {xsl, transformation.name});
      return std::nullopt;
    }
    if (CheckOutput(plan.output) == OutputCheck::Refused)
      return std::nullopt;
    if (request.printStartLog)
      report::WriteStartSection(input, xsl, isTemporary ? std::string() : plan.output, transformation.processor);
    const bool success = Transform(input, xsl, plan.Written()) && PlaceOutput(plan);
    if (request.printEndLog)
      report::WriteEndSection(success);
    return ToResult(success);
  }

  bool Transform(const std::string &input, const std::string &xsl, const std::string &output) {
    return processor.TransformXMLFile({input, xsl, output, transformation.parameters}).status ==
           processors::JobStatus::Done;
  }

  bool PlaceOutput(const OutputPlan &plan) {
    if (!plan.temporary.empty() && !ReplaceOutput(plan.temporary, plan.output)) {
      report::AppendMessage(MessageId::OutputOpenElsewhere, {plan.output});
      return false;
    }
    files.OpenAtEnd(plan.output);
    return true;
  }

  void OpenOutputs() {
    switch (transformation.output.openOutput) {
    case OpenOutputKind::Vellis:
      files.OpenListedInHost(transformation.output.outputLocation == OutputLocationKind::DoNotSave);
      break;
    case OpenOutputKind::DefaultProgram:
      files.LaunchListed();
      break;
    case OpenOutputKind::None:
      break;
    }
  }

  const RunRequest &request;
  Transformation transformation;
  processors::Processor &processor;
  RunFiles files;
};

RunResult RunCatalogueTransformation(const RunRequest &request, processors::Processor &processor) {
  ReportUsage("XSLTRun_Transformation");
  const bool byFile = !request.transformationFile.empty();
  ReportUsage(byFile ? "XSLTRun_DefOrUserSpecifiedTrFile" : "XSLTRun_AppTrFile");
  auto found =
      catalogue::GetTransformation(request.transformationFile, request.applicationName, request.transformationName);
  // Validation found it a moment ago; somebody may have changed the file since.
  if (!found) {
    report::AppendMessage(MessageId::TransformationNotFound, {request.transformationName});
    return RunResult::Failed;
  }
  return CatalogueRun(request, std::move(*found), processor).Run();
}

// ---- A bare stylesheet

class XslRun {
public:
  XslRun(const RunRequest &validated, processors::Processor &chosen)
      : request(validated),
        processorName(validated.processor.empty() ? processors::DefaultProcessorName() : validated.processor),
        processor(chosen) {}

  RunResult Run() {
    if (!SelectProcessor(processor, processorName))
      return RunResult::Failed;
    const RunResult result = RunInputs(
        request.inputs, [this](size_t index, const std::string &input) { return TransformInput(index, input); });
    files.OpenListedInHost(request.outputs.empty());
    files.DeleteListed();
    return result;
  }

private:
  std::optional<RunResult> TransformInput(size_t index, const std::string &input) {
    const std::string xsl = request.usePI ? std::string() : catalogue::ResolvePath(request.xslPath, input);
    const bool isTemporary = request.outputs.empty();
    const std::string output =
        isTemporary ? TemporaryOutput(input) : catalogue::ResolvePath(request.outputs[index], input);
    if (isTemporary)
      files.DeleteAtEnd(output);
    if (!request.usePI && !kit::Exists(xsl)) {
      report::AppendMessage(MessageId::FileMissing, {xsl});
      return std::nullopt;
    }
    if (CheckOutput(output) == OutputCheck::Refused)
      return std::nullopt;
    if (request.printStartLog)
      WriteStart(input, xsl);
    const bool success =
        processor.TransformXMLFile({input, xsl, output, request.parameters}).status == processors::JobStatus::Done;
    if (success && isTemporary)
      files.OpenAtEnd(output);
    if (request.printEndLog)
      report::WriteEndSection(success);
    return ToResult(success);
  }

  // The host says whether a bare stylesheet's run is worth a start section, and on whose behalf.
  void WriteStart(const std::string &input, const std::string &xsl) const {
    if (V_ApiGetInt(V_SESSION, V_SP_XSL_START_SECTION)) {
      report::WriteStartSection(input, xsl, {}, processorName);
      return;
    }
    const V_ObjectT object =
        V_ApiGetInt(V_SESSION, V_SP_XSL_OBJECT_START_SECTION) ? V_ApiGetObject(V_SESSION, V_SP_XSL_SECTION_OBJECT) : 0;
    if (object && V_ApiGetInt(object, V_OP_XSL_START_SECTION))
      report::WriteStartSection(kit::GetString(object, V_OP_NAME), xsl, input, processorName);
  }

  const RunRequest &request;
  std::string processorName;
  processors::Processor &processor;
  RunFiles files;
};

} // namespace

RunResult RunTransformation(const RunRequest &request, processors::Processor &processor) {
  ReportUsage(ScopeName(request.inputKind));
  if (!request.RunsBareXsl())
    return RunCatalogueTransformation(request, processor);
  ReportUsage("XSLTRun_XSL");
  return XslRun(request, processor).Run();
}

} // namespace client
