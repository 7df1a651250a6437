#include "client/catalogue_requests.h"

#include "catalogue/location.h"
#include "catalogue/reader.h"
#include "catalogue/request_options.h"
#include "catalogue/stylesheet_parameters.h"
#include "catalogue/writer.h"
#include "catalogue/xml_text.h"
#include "kit/names.h"
#include "processors/processor_list.h"
#include "report/run_event.h"
#include "report/transformation_log.h"

#include <optional>
#include <utility>

namespace client {

namespace {

using catalogue::EditResult;
using catalogue::OutputLocationKind;
using catalogue::RequestKind;
using catalogue::RequestOptions;
using catalogue::ScanRequestOptions;
using catalogue::Transformation;
using kit::TypedValues;
using report::MessageId;

// The transformations that the options name: one, or all of the catalogue.
catalogue::LoadResult ReadNamed(const RequestOptions &all) {
  if (all.transformationFile.empty())
    return {};
  catalogue::LoadResult loaded = catalogue::LoadTransformationFile(all.transformationFile);
  if (loaded.list && !all.transformationName.empty())
    std::erase_if(*loaded.list, [&](const Transformation &each) { return each.name != all.transformationName; });
  return loaded;
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
  if (result == EditResult::NotFound)
    V_ApiSetError(V_ERROR_BAD_REQUEST);
  TypedValues reply = EditReply(result == EditResult::NotFound ? EditResult::Failed : result);
  reply.AddString(report::LogText());
  return reply;
}

// True when every option can be applied; else says why not.
bool CheckOptions(const RequestOptions &all) {
  if (all.problem.empty())
    return true;
  report::ReportProblem(all.problem);
  V_ApiSetError(V_ERROR_BAD_REQUEST);
  return false;
}

bool CheckRecord(const RequestOptions &all) {
  const bool hasName = !catalogue::Trim(all.record.name).empty();
  if (!CheckOptions(all) || hasName)
    return all.problem.empty();
  report::ReportProblem(MessageId::NameMissing);
  V_ApiSetError(V_ERROR_BAD_REQUEST);
  return false;
}

} // namespace

TypedValues AnswerTransformationFile(std::string_view text, processors::Processor &) {
  const RequestOptions all = ScanRequestOptions(text, RequestKind::Classic);
  if (all.applicationName.empty())
    return {};
  return kit::CallClient(kit::dispatcherName, catalogue::TransformationFileRequest(all.applicationName));
}

TypedValues AnswerTransformations(std::string_view text, processors::Processor &) {
  TypedValues reply;
  const catalogue::LoadResult loaded = ReadNamed(ScanRequestOptions(text, RequestKind::Classic));
  if (loaded.list)
    for (const Transformation &each : *loaded.list)
      catalogue::AppendTransformation(reply, each);
  return reply;
}

TypedValues AnswerListing(std::string_view text, processors::Processor &) {
  TypedValues reply;
  const RequestOptions all = ScanRequestOptions(text, RequestKind::List);
  if (!CheckOptions(all) || all.transformationFile.empty())
    return reply;
  const catalogue::LoadResult loaded = ReadNamed(all);
  if (!loaded.list) {
    V_ApiSetError(V_ERROR_FAILED);
    if (loaded.status == catalogue::LoadStatus::FileMissing)
      report::ReportProblem(MessageId::FileMissing, {all.transformationFile});
    else if (loaded.status == catalogue::LoadStatus::NotATransformationFile)
      report::ReportProblem(MessageId::NotATransformationFile, {all.transformationFile});
    return reply;
  }
  for (const Transformation &each : *loaded.list) {
    if (all.wantsRecords)
      catalogue::AppendTransformation(reply, each);
    else
      reply.AddStrings({each.name, each.usePI ? report::LoadMessage(MessageId::XslFromInstruction) : each.xslPath,
                        each.processor, DescribeLocation(each.output), DescribeOpening(each.output.openOutput)});
  }
  return reply;
}

TypedValues AnswerDelete(std::string_view text, processors::Processor &) {
  const RequestOptions all = ScanRequestOptions(text, RequestKind::Classic);
  if (all.transformationFile.empty() || all.transformationName.empty())
    return {};
  return EditReply(catalogue::DeleteTransformation(all.transformationFile, all.transformationName));
}

TypedValues AnswerDeleteExisting(std::string_view text, processors::Processor &) {
  const RequestOptions all = ScanRequestOptions(text, RequestKind::Delete);
  if (!CheckOptions(all))
    return ChangeReply(EditResult::Failed);
  return ChangeReply(catalogue::DeleteExistingTransformation(all.transformationFile, all.transformationName));
}

TypedValues AnswerAdd(std::string_view text, processors::Processor &) {
  Transformation start;
  start.processor = processors::DefaultProcessorName();
  const RequestOptions all = ScanRequestOptions(text, RequestKind::Add, std::move(start));
  if (!CheckRecord(all))
    return ChangeReply(EditResult::Failed);
  return ChangeReply(catalogue::AddTransformation(all.transformationFile, all.record, processors::IsKnownProcessor,
                                                  all.replacesInvalid ? catalogue::InvalidFile::AskToReplace
                                                                      : catalogue::InvalidFile::Keep));
}

TypedValues AnswerEdit(std::string_view text, processors::Processor &) {
  const RequestOptions named = ScanRequestOptions(text, RequestKind::Edit);
  if (named.transformationFile.empty() && !CheckOptions(named))
    return ChangeReply(EditResult::Failed);
  // Applied to what stands in the file when it is locked: another program may have changed other fields by then.
  const auto change = [&](const Transformation &current) -> std::optional<Transformation> {
    RequestOptions all = ScanRequestOptions(text, RequestKind::Edit, current);
    return CheckRecord(all) ? std::optional(std::move(all.record)) : std::nullopt;
  };
  return ChangeReply(catalogue::ChangeTransformation(named.transformationFile, named.transformationName, change,
                                                     processors::IsKnownProcessor));
}

TypedValues AnswerResolvePath(std::string_view text, processors::Processor &) {
  const RequestOptions options = ScanRequestOptions(text, RequestKind::ResolvePath);
  TypedValues reply;
  if (!CheckOptions(options))
    return reply;
  const std::string path = options.applicationName.empty() ? catalogue::ResolvePath(options.record.xslPath)
                                                           : catalogue::GetTransformationFile(options.applicationName);
  if (!path.empty())
    reply.AddString(path);
  return reply;
}

TypedValues AnswerStylesheetParameters(std::string_view text, processors::Processor &) {
  TypedValues reply;
  const RequestOptions options = ScanRequestOptions(text, RequestKind::StylesheetParameters);
  if (!CheckOptions(options))
    return reply;
  const auto parameters = catalogue::ReadStylesheetParameters(options.record.xslPath);
  if (parameters.list && !parameters.isRead)
    V_ApiSetError(V_ERROR_FAILED);
  if (parameters.list)
    reply.AddStrings(*parameters.list);
  return reply;
}

TypedValues AnswerProcessors(std::string_view text, processors::Processor &processor) {
  const bool isToPrepare = text.find(" -prepare") != text.npos;
  TypedValues reply;
  for (const processors::ProcessorEntry &entry : processors::Processors()) {
    const processors::Factory factory{entry.className, entry.attributes};
    const processors::ProcessorProbe probe = processor.ProbeProcessor(factory);
    TypedValues nested;
    for (const std::string *field : {&entry.name, &entry.classPath, &entry.className, &probe.implementation,
                                     &probe.version, &probe.location, &probe.error})
      nested.AddString(*field);
    reply.AddValues(std::move(nested));
    if (!isToPrepare || !probe.error.empty() || processor.PrepareStart(factory))
      continue;
    report::ReportProblem(report::MessageId::JavaStartNotPrepared, {entry.name});
    V_ApiSetError(V_ERROR_FAILED);
  }
  if (const std::string advice = processor.AdviseOnStart(); !advice.empty())
    report::ReportProblem(advice);
  return reply;
}

} // namespace client
