#include "client/catalogue_requests.h"

#include "catalogue/location.h"
#include "catalogue/reader.h"
#include "catalogue/request_options.h"
#include "catalogue/stylesheet_parameters.h"
#include "catalogue/writer.h"
#include "catalogue/xml_text.h"
#include "kit/names.h"
#include "processors/processor_list.h"
#include "report/transformation_log.h"

#include <utility>

namespace client {

namespace {

using catalogue::EditResult;
using catalogue::OutputLocationKind;
using catalogue::RequestOptions;
using catalogue::ScanRequestOptions;
using catalogue::Transformation;
using kit::TypedValues;
using report::MessageId;

// The transformations that the options name: one, or all of the catalogue.
catalogue::TransformationList ReadNamed(const RequestOptions &all) {
  if (all.transformationFile.empty())
    return {};
  auto list = catalogue::LoadTransformationFile(all.transformationFile).list.value_or(catalogue::TransformationList());
  if (!all.transformationName.empty())
    std::erase_if(list, [&](const Transformation &each) { return each.name != all.transformationName; });
  return list;
}

std::string DescribeLocation(const catalogue::TransformationOutput &output) {
  switch (output.outputLocation) {
  case OutputLocationKind::Prompt:
    return report::LoadMessage(MessageId::OutputAsked);
  case OutputLocationKind::DirPath:
    return report::FormatMessage(MessageId::OutputInFolder, {output.dirPath});
  case OutputLocationKind::SameLocationAsSource:
    return output.suffix.empty() ? report::LoadMessage(MessageId::OutputReplacesInput)
                                 : report::FormatMessage(MessageId::OutputBesideInput, {output.suffix});
  default:
    return report::LoadMessage(MessageId::OutputNotSaved);
  }
}

std::string DescribeOpening(catalogue::OpenOutputKind kind) {
  switch (kind) {
  case catalogue::OpenOutputKind::Vellis:
    return report::LoadMessage(MessageId::OpensInHost);
  case catalogue::OpenOutputKind::DefaultProgram:
    return report::LoadMessage(MessageId::OpensInDefaultProgram);
  default:
    return {};
  }
}

TypedValues EditReply(EditResult result) {
  TypedValues reply;
  reply.AddInteger(static_cast<int32_t>(result));
  return reply;
}

// The result of a change, then the log.
TypedValues ChangeReply(EditResult result) {
  TypedValues reply = EditReply(result);
  reply.AddString(report::LogText());
  return reply;
}

// Carries the change out, unless an option cannot be applied or no name is left.
TypedValues AnswerChange(const RequestOptions &all, EditResult (*change)(const RequestOptions &all)) {
  const bool hasName = !catalogue::Trim(all.record.name).empty();
  if (all.problem.empty() && hasName)
    return ChangeReply(change(all));
  report::ReportProblem(all.problem.empty() ? report::LoadMessage(MessageId::NameMissing) : all.problem);
  V_ApiSetError(V_ERROR_BAD_REQUEST);
  return ChangeReply(EditResult::Failed);
}

} // namespace

TypedValues AnswerTransformationFile(std::string_view text, processors::Processor &) {
  const RequestOptions all = ScanRequestOptions(text);
  if (all.applicationName.empty())
    return {};
  return kit::CallClient(kit::dispatcherName, catalogue::TransformationFileRequest(all.applicationName));
}

TypedValues AnswerTransformations(std::string_view text, processors::Processor &) {
  TypedValues reply;
  for (const Transformation &each : ReadNamed(ScanRequestOptions(text)))
    catalogue::AppendTransformation(reply, each);
  return reply;
}

TypedValues AnswerListing(std::string_view text, processors::Processor &) {
  TypedValues reply;
  for (const Transformation &each : ReadNamed(ScanRequestOptions(text)))
    reply.AddStrings({each.name, each.usePI ? report::LoadMessage(MessageId::XslFromInstruction) : each.xslPath,
                      each.processor, DescribeLocation(each.output), DescribeOpening(each.output.openOutput)});
  return reply;
}

TypedValues AnswerDelete(std::string_view text, processors::Processor &) {
  const RequestOptions all = ScanRequestOptions(text);
  if (all.transformationFile.empty() || all.transformationName.empty())
    return {};
  return EditReply(catalogue::DeleteTransformation(all.transformationFile, all.transformationName));
}

TypedValues AnswerAdd(std::string_view text, processors::Processor &) {
  Transformation start;
  start.processor = processors::DefaultProcessorName();
  return AnswerChange(ScanRequestOptions(text, std::move(start)), [](const RequestOptions &all) {
    return catalogue::AddTransformation(all.transformationFile, all.record, processors::IsKnownProcessor);
  });
}

TypedValues AnswerEdit(std::string_view text, processors::Processor &) {
  const RequestOptions named = ScanRequestOptions(text);
  auto start = catalogue::GetTransformation(named.transformationFile, {}, named.transformationName);
  if (!start) {
    report::ReportProblem(MessageId::TransformationNotFoundInFile,
                          {named.transformationName, named.transformationFile});
    return ChangeReply(EditResult::Failed);
  }
  return AnswerChange(ScanRequestOptions(text, std::move(*start)), [](const RequestOptions &all) {
    return catalogue::EditTransformation(all.transformationFile, all.record, all.transformationName,
                                         processors::IsKnownProcessor);
  });
}

TypedValues AnswerResolvePath(std::string_view text, processors::Processor &) {
  const RequestOptions options = ScanRequestOptions(text);
  const std::string path = options.applicationName.empty() ? catalogue::ResolvePath(options.record.xslPath)
                                                           : catalogue::GetTransformationFile(options.applicationName);
  TypedValues reply;
  if (!path.empty())
    reply.AddString(path);
  return reply;
}

TypedValues AnswerStylesheetParameters(std::string_view text, processors::Processor &) {
  TypedValues reply;
  if (const auto parameters = catalogue::GetStylesheetParameters(ScanRequestOptions(text).record.xslPath))
    reply.AddStrings(*parameters);
  return reply;
}

TypedValues AnswerProcessors(std::string_view, processors::Processor &processor) {
  TypedValues reply;
  for (const processors::ProcessorEntry &entry : processors::Processors()) {
    const processors::ProcessorProbe probe = processor.ProbeProcessor({entry.className, entry.attributes});
    TypedValues nested;
    for (const std::string *field : {&entry.name, &entry.classPath, &entry.className, &probe.implementation,
                                     &probe.version, &probe.location, &probe.error})
      nested.AddString(*field);
    reply.AddValues(std::move(nested));
  }
  return reply;
}

} // namespace client
