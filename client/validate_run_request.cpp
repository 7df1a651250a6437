#include "client/run_request.h"

#include "catalogue/location.h"
#include "catalogue/writer.h"
#include "client/open_documents.h"
#include "kit/paths.h"
#include "processors/processor_list.h"
#include "report/transformation_log.h"

#include <array>
#include <set>

namespace client {

namespace {

using report::MessageId;

RequestCheck Refuse(MessageId message, std::initializer_list<std::string_view> values = {}) {
  report::AppendMessage(message, values);
  return RequestCheck::Refused;
}

RequestCheck CheckInputKind(RunRequest &request) {
  return request.inputKind == InputKind::NotSpecified ? Refuse(MessageId::InvalidCommand) : RequestCheck::Accepted;
}

// Looks at the document first, although gathering prefers the book: with a plain document and a book both active, a
// run with children is refused rather than started on something that is not in front of the person.
RequestCheck CheckActiveObject(RunRequest &request) {
  const bool withChildren = request.inputKind == InputKind::CurrentFileWithChildren;
  if (request.inputKind != InputKind::CurrentFile && !withChildren)
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

RequestCheck CheckInputList(RunRequest &request) {
  return request.inputs.empty() ? Refuse(MessageId::NoInputs) : RequestCheck::Accepted;
}

RequestCheck CheckOutputCount(RunRequest &request) {
  const size_t expected = request.inputKind == InputKind::File ? request.inputs.size() : 0;
  return request.outputs.size() == expected ? RequestCheck::Accepted : Refuse(MessageId::OutputCountMismatch);
}

// Keeps the inputs that `keep` accepts, and their outputs with them.
template <class Keep> void FilterInputs(RunRequest &request, Keep keep) {
  std::vector<std::string> inputs;
  std::vector<std::string> outputs;
  for (size_t index = 0; index < request.inputs.size(); ++index) {
    if (!keep(request.inputs[index]))
      continue;
    inputs.push_back(std::move(request.inputs[index]));
    if (index < request.outputs.size())
      outputs.push_back(std::move(request.outputs[index]));
  }
  request.inputs = std::move(inputs);
  request.outputs = std::move(outputs);
}

RequestCheck DropUnsavedInputs(RunRequest &request) {
  const std::set<std::string> unsaved = UnsavedPaths();
  if (unsaved.empty())
    return RequestCheck::Accepted;
  FilterInputs(request, [&](const std::string &input) {
    if (!unsaved.contains(kit::AbsolutePath(input)) &&
        !unsaved.contains(kit::AbsolutePath(catalogue::ResolvePath(input))))
      return true;
    report::AppendMessage(MessageId::SaveDocumentFirst, {input});
    return false;
  });
  return RequestCheck::Accepted;
}

RequestCheck DropMissingInputs(RunRequest &request) {
  FilterInputs(request, [](const std::string &input) {
    if (input.empty() || kit::Exists(catalogue::ResolvePath(input)))
      return true;
    report::AppendMessage(MessageId::FileMissing, {input});
    return false;
  });
  return request.inputs.empty() ? RequestCheck::Refused : RequestCheck::Accepted;
}

RequestCheck CheckTransformation(const RunRequest &request) {
  const bool byFile = !request.transformationFile.empty();
  const auto found =
      catalogue::GetTransformation(request.transformationFile, request.applicationName, request.transformationName);
  if (!found && byFile)
    return Refuse(MessageId::TransformationNotFoundInFile, {request.transformationName, request.transformationFile});
  if (!found)
    return Refuse(MessageId::TransformationNotFoundForApplication,
                  {request.transformationName, request.applicationName});
  return catalogue::CheckTransformationFields(*found, catalogue::CheckMode::Quiet, processors::IsKnownProcessor) ==
                 catalogue::FieldCheck::GoOn
             ? RequestCheck::Accepted
             : RequestCheck::Refused;
}

// Later pairs are left to the processor.
RequestCheck CheckFirstParameter(const RunRequest &request) {
  const auto &parameters = request.parameters;
  const bool broken = !parameters.empty() && (parameters[0].empty() || parameters.size() < 2 || parameters[1].empty());
  return broken ? Refuse(MessageId::InvalidStylesheetParams) : RequestCheck::Accepted;
}

// What is to be run: a complete transformation of a catalogue passes at once, a bare stylesheet has its processor and
// its parameters looked at.
RequestCheck CheckWhatToRun(RunRequest &request) {
  const bool namesCatalogue = !request.applicationName.empty() || !request.transformationFile.empty();
  const bool namesTransformation = !request.transformationName.empty();
  if (!request.RunsBareXsl() && !(namesCatalogue && namesTransformation))
    return Refuse(MessageId::NothingToRun);
  if (namesCatalogue && namesTransformation)
    return CheckTransformation(request);
  if (namesCatalogue && !request.processor.empty() && !processors::CheckProcessor(request.processor))
    return RequestCheck::Refused;
  return CheckFirstParameter(request);
}

constexpr std::array checks = {CheckInputKind,    CheckActiveObject, CheckInputList, CheckOutputCount,
                               DropUnsavedInputs, DropMissingInputs, CheckWhatToRun};

} // namespace

RequestCheck ValidateRunRequest(RunRequest &request) {
  for (const auto check : checks)
    if (check(request) == RequestCheck::Refused)
      return RequestCheck::Refused;
  return RequestCheck::Accepted;
}

} // namespace client
