#include "client/catalogue_requests.h"

#include "bridge/processor_bridge.h"
#include "bridge/processor_list.h"
#include "bridge/transformation_log.h"
#include "catalogue/location.h"
#include "catalogue/reader.h"
#include "catalogue/stylesheet_parameters.h"
#include "catalogue/writer.h"
#include "kit/text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace client {

namespace {

using catalogue::EditResult;
using catalogue::OpenOutputKind;
using catalogue::OutputLocationKind;
using catalogue::Transformation;
using kit::TypedValues;

// A transformation in the making, with the catalogue and the name that the request is about.
struct Options {
  std::string applicationName;
  std::string transformationFile;
  std::string transformationName;
  Transformation record;
};

template <class Kind> using KindName = std::pair<std::string_view, Kind>;

constexpr std::array outputNames = {
    KindName<OutputLocationKind>{"donotsave", OutputLocationKind::DoNotSave},
    KindName<OutputLocationKind>{"prompt", OutputLocationKind::Prompt},
    KindName<OutputLocationKind>{"dirpath", OutputLocationKind::DirPath},
    KindName<OutputLocationKind>{"samelocation", OutputLocationKind::SameLocationAsSource}};

constexpr std::array openNames = {KindName<OpenOutputKind>{"none", OpenOutputKind::None},
                                  KindName<OpenOutputKind>{"vellis", OpenOutputKind::Vellis},
                                  KindName<OpenOutputKind>{"default", OpenOutputKind::DefaultProgram}};

template <class Names, class Kind> void SetKind(const Names &names, std::string_view value, Kind &kind) {
  const auto named =
      std::ranges::find_if(names, [&](const auto &each) { return kit::EqualsIgnoreCase(each.first, value); });
  if (named != names.end())
    kind = named->second;
}

struct Option {
  std::string_view name;
  void (*apply)(Options &, std::string value);
};

constexpr std::array options = {
    Option{"-appname", [](Options &all, std::string value) { all.applicationName = std::move(value); }},
    Option{"-trfile", [](Options &all, std::string value) { all.transformationFile = std::move(value); }},
    Option{"-trname", [](Options &all, std::string value) { all.transformationName = std::move(value); }},
    Option{"-name", [](Options &all, std::string value) { all.record.name = std::move(value); }},
    Option{"-xslfilepath", [](Options &all, std::string value) { all.record.xslPath = std::move(value); }},
    Option{"-processor", [](Options &all, std::string value) { all.record.processor = std::move(value); }},
    Option{"-dirpath", [](Options &all, std::string value) { all.record.output.dirPath = std::move(value); }},
    Option{"-suffix", [](Options &all, std::string value) { all.record.output.suffix = std::move(value); }},
    Option{"-output",
           [](Options &all, std::string value) { SetKind(outputNames, value, all.record.output.outputLocation); }},
    Option{"-openoutput",
           [](Options &all, std::string value) { SetKind(openNames, value, all.record.output.openOutput); }},
};

Options ScanOptions(std::string_view text) {
  Options all;
  kit::Tokenizer tokens(text);
  std::string token;
  std::string value;
  while (tokens.Next(token)) {
    const auto option =
        std::ranges::find_if(options, [&](const Option &each) { return kit::EqualsIgnoreCase(each.name, token); });
    if (option != options.end()) {
      if (tokens.Next(value))
        option->apply(all, value);
    } else if (kit::EqualsIgnoreCase(token, "-usepi")) {
      all.record.usePI = true;
    } else if (kit::EqualsIgnoreCase(token, "-sparam")) {
      for (int part = 0; part < 2; ++part)
        all.record.parameters.push_back(tokens.Next(value) ? value : std::string());
    }
  }
  return all;
}

TypedValues EditReply(EditResult result) {
  TypedValues reply;
  reply.AddInteger(static_cast<int32_t>(result));
  return reply;
}

} // namespace

TypedValues AnswerTransformationFile(std::string_view text) {
  const Options all = ScanOptions(text);
  if (all.applicationName.empty())
    return {};
  return kit::CallClient("VlDispatcher", catalogue::TransformationFileRequest(all.applicationName));
}

TypedValues AnswerTransformations(std::string_view text) {
  const Options all = ScanOptions(text);
  TypedValues reply;
  if (all.transformationFile.empty())
    return reply;
  const auto list = catalogue::LoadTransformationFile(all.transformationFile).list;
  for (const Transformation &transformation : list.value_or(catalogue::TransformationList()))
    if (all.transformationName.empty() || transformation.name == all.transformationName)
      catalogue::AppendTransformation(reply, transformation);
  return reply;
}

TypedValues AnswerDelete(std::string_view text) {
  const Options all = ScanOptions(text);
  if (all.transformationFile.empty() || all.transformationName.empty())
    return {};
  return EditReply(catalogue::DeleteTransformation(all.transformationFile, all.transformationName));
}

TypedValues AnswerAdd(std::string_view text) {
  const Options all = ScanOptions(text);
  TypedValues reply = EditReply(catalogue::AddTransformation(all.transformationFile, all.record));
  reply.AddString(bridge::LogText());
  return reply;
}

TypedValues AnswerEdit(std::string_view text) {
  const Options all = ScanOptions(text);
  TypedValues reply =
      EditReply(catalogue::EditTransformation(all.transformationFile, all.record, all.transformationName));
  reply.AddString(bridge::LogText());
  return reply;
}

TypedValues AnswerStylesheetParameters(std::string_view text) {
  TypedValues reply;
  if (const auto parameters = catalogue::GetStylesheetParameters(ScanOptions(text).record.xslPath))
    reply.AddStrings(*parameters);
  return reply;
}

TypedValues AnswerProcessors(std::string_view) {
  TypedValues reply;
  for (const bridge::ProcessorEntry &entry : bridge::Processors()) {
    const bridge::ProcessorProbe probe = bridge::ProbeProcessor(entry.className.c_str());
    TypedValues nested;
    for (const std::string *field : {&entry.name, &entry.classPath, &entry.className, &probe.implementation,
                                     &probe.version, &probe.location, &probe.error})
      nested.AddString(*field);
    reply.AddValues(std::move(nested));
  }
  return reply;
}

} // namespace client
