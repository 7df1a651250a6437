#include "client/catalogue_requests.h"

#include "catalogue/location.h"
#include "catalogue/reader.h"
#include "catalogue/request_options.h"
#include "catalogue/stylesheet_parameters.h"
#include "catalogue/writer.h"
#include "processors/processor_list.h"
#include "report/transformation_log.h"

#include <utility>

namespace client {

namespace {

using catalogue::EditResult;
using catalogue::RequestOptions;
using catalogue::ScanRequestOptions;
using catalogue::Transformation;
using kit::TypedValues;

TypedValues EditReply(EditResult result) {
  TypedValues reply;
  reply.AddInteger(static_cast<int32_t>(result));
  return reply;
}

} // namespace

TypedValues AnswerTransformationFile(std::string_view text, processors::Processor &) {
  const RequestOptions all = ScanRequestOptions(text);
  if (all.applicationName.empty())
    return {};
  return kit::CallClient("VlDispatcher", catalogue::TransformationFileRequest(all.applicationName));
}

TypedValues AnswerTransformations(std::string_view text, processors::Processor &) {
  const RequestOptions all = ScanRequestOptions(text);
  TypedValues reply;
  if (all.transformationFile.empty())
    return reply;
  const auto list = catalogue::LoadTransformationFile(all.transformationFile).list;
  for (const Transformation &transformation : list.value_or(catalogue::TransformationList()))
    if (all.transformationName.empty() || transformation.name == all.transformationName)
      catalogue::AppendTransformation(reply, transformation);
  return reply;
}

TypedValues AnswerDelete(std::string_view text, processors::Processor &) {
  const RequestOptions all = ScanRequestOptions(text);
  if (all.transformationFile.empty() || all.transformationName.empty())
    return {};
  return EditReply(catalogue::DeleteTransformation(all.transformationFile, all.transformationName));
}

TypedValues AnswerAdd(std::string_view text, processors::Processor &) {
  const RequestOptions all = ScanRequestOptions(text);
  TypedValues reply =
      EditReply(catalogue::AddTransformation(all.transformationFile, all.record, processors::IsKnownProcessor));
  reply.AddString(report::LogText());
  return reply;
}

TypedValues AnswerEdit(std::string_view text, processors::Processor &) {
  const RequestOptions all = ScanRequestOptions(text);
  TypedValues reply = EditReply(catalogue::EditTransformation(all.transformationFile, all.record,
                                                              all.transformationName, processors::IsKnownProcessor));
  reply.AddString(report::LogText());
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
    const processors::ProcessorProbe probe = processor.ProbeProcessor(entry.className);
    TypedValues nested;
    for (const std::string *field : {&entry.name, &entry.classPath, &entry.className, &probe.implementation,
                                     &probe.version, &probe.location, &probe.error})
      nested.AddString(*field);
    reply.AddValues(std::move(nested));
  }
  return reply;
}

} // namespace client
