#include "catalogue/request_options.h"

#include "kit/request_words.h"
#include "kit/text.h"
#include "report/messages.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace catalogue {

namespace {

using report::MessageId;
using Value = const std::string &;
template <class Kind> using KindName = std::pair<std::string_view, Kind>;

constexpr std::array locationNames = {
    KindName<OutputLocationKind>{"donotsave", OutputLocationKind::DoNotSave},
    KindName<OutputLocationKind>{"prompt", OutputLocationKind::Prompt},
    KindName<OutputLocationKind>{"dirpath", OutputLocationKind::DirPath},
    KindName<OutputLocationKind>{"samelocation", OutputLocationKind::SameLocationAsSource}};

constexpr std::array openNames = {KindName<OpenOutputKind>{"none", OpenOutputKind::None},
                                  KindName<OpenOutputKind>{"vellis", OpenOutputKind::Vellis},
                                  KindName<OpenOutputKind>{"default", OpenOutputKind::DefaultProgram}};

void Refuse(RequestOptions &all, std::string message) {
  if (all.problem.empty())
    all.problem = std::move(message);
}

template <class Names, class Kind>
void SetKind(RequestOptions &all, std::string_view option, const Names &names, Value value, Kind &kind) {
  const auto named =
      std::ranges::find_if(names, [&](const auto &each) { return kit::EqualsIgnoreCase(each.first, value); });
  if (named != names.end()) {
    kind = named->second;
    return;
  }
  std::string known;
  for (const auto &each : names)
    known.append(known.empty() ? "" : ", ").append(each.first);
  Refuse(all, report::FormatMessage(MessageId::UnknownOptionValue, {option, known, value}));
}

// A folder or a suffix says by itself where the output goes.
void ImplyLocation(RequestOptions &all, OutputLocationKind location) {
  if (!all.namesLocation)
    all.record.output.outputLocation = location;
}

// The place of a parameter's name in the flat list; its end when it is not there.
std::vector<std::string>::iterator FindParameter(std::vector<std::string> &parameters, Value name) {
  for (size_t at = 0; at + 1 < parameters.size(); at += 2)
    if (parameters[at] == name)
      return parameters.begin() + static_cast<std::ptrdiff_t>(at);
  return parameters.end();
}

void SetParameter(RequestOptions &all, Value name, Value expression) {
  std::vector<std::string> &parameters = all.record.parameters;
  if (const auto found = FindParameter(parameters, name); found != parameters.end())
    *(found + 1) = expression;
  else
    parameters.insert(parameters.end(), {name, expression});
}

void DropParameter(RequestOptions &all, Value name) {
  std::vector<std::string> &parameters = all.record.parameters;
  if (const auto found = FindParameter(parameters, name); found != parameters.end())
    parameters.erase(found, found + 2);
  else
    Refuse(all, report::FormatMessage(MessageId::NoSuchParameter, {all.record.name, name}));
}

using Values = std::array<std::string, 2>;

struct Option {
  std::string_view name;
  size_t valueCount; // the last ones may be missing at the end of the request, but not the first
  void (*apply)(RequestOptions &all, const Values &values);
};

constexpr Option application = {"-appname", 1,
                                [](RequestOptions &all, const Values &values) { all.applicationName = values[0]; }};
constexpr Option file = {"-trfile", 1,
                         [](RequestOptions &all, const Values &values) { all.transformationFile = values[0]; }};
constexpr Option transformation = {
    "-trname", 1, [](RequestOptions &all, const Values &values) { all.transformationName = values[0]; }};
constexpr Option stylesheet = {"-xslfilepath", 1, [](RequestOptions &all, const Values &values) {
                                 all.record.xslPath = values[0];
                                 all.record.usePI = false;
                               }};
constexpr Option instruction = {"-usepi", 0, [](RequestOptions &all, const Values &) {
                                  all.record.usePI = true;
                                  all.record.xslPath.clear();
                                }};
constexpr Option name = {"-name", 1, [](RequestOptions &all, const Values &values) { all.record.name = values[0]; }};
constexpr Option processor = {"-processor", 1,
                              [](RequestOptions &all, const Values &values) { all.record.processor = values[0]; }};
constexpr Option parameter = {
    "-sparam", 2, [](RequestOptions &all, const Values &values) { SetParameter(all, values[0], values[1]); }};
constexpr Option droppedParameter = {"-dropparam", 1,
                                     [](RequestOptions &all, const Values &values) { DropParameter(all, values[0]); }};
constexpr Option folder = {"-dirpath", 1, [](RequestOptions &all, const Values &values) {
                             all.record.output.dirPath = values[0];
                             ImplyLocation(all, OutputLocationKind::DirPath);
                           }};
constexpr Option suffix = {"-suffix", 1, [](RequestOptions &all, const Values &values) {
                             all.record.output.suffix = values[0];
                             ImplyLocation(all, OutputLocationKind::SameLocationAsSource);
                           }};
constexpr Option output = {"-output", 1, [](RequestOptions &all, const Values &values) {
                             SetKind(all, "-output", locationNames, values[0], all.record.output.outputLocation);
                             all.namesLocation = true;
                           }};
constexpr Option openOutput = {"-openoutput", 1, [](RequestOptions &all, const Values &values) {
                                 SetKind(all, "-openoutput", openNames, values[0], all.record.output.openOutput);
                               }};
constexpr Option replace = {"-replace", 0, [](RequestOptions &all, const Values &) { all.replacesInvalid = true; }};
constexpr Option records = {"-records", 0, [](RequestOptions &all, const Values &) { all.wantsRecords = true; }};

constexpr std::array classicOptions = {application, file, transformation};
constexpr std::array listOptions = {file, transformation, records};
constexpr std::array addOptions = {file,   name,   stylesheet, instruction, processor, parameter,
                                   folder, suffix, output,     openOutput,  replace};
constexpr std::array editOptions = {file,      transformation,   name,   stylesheet, instruction, processor,
                                    parameter, droppedParameter, folder, suffix,     output,      openOutput};
constexpr std::array deleteOptions = {file, transformation};
constexpr std::array pathOptions = {application, stylesheet};
constexpr std::array parametersOptions = {stylesheet};

std::span<const Option> OptionsOf(RequestKind kind) {
  switch (kind) {
  case RequestKind::List:
    return listOptions;
  case RequestKind::Add:
    return addOptions;
  case RequestKind::Edit:
    return editOptions;
  case RequestKind::Delete:
    return deleteOptions;
  case RequestKind::ResolvePath:
    return pathOptions;
  case RequestKind::StylesheetParameters:
    return parametersOptions;
  default:
    return classicOptions;
  }
}

void Apply(const Option &option, kit::RequestWords &words, RequestOptions &all) {
  Values values;
  for (size_t index = 0; index < option.valueCount; ++index)
    if (!words.Next(values[index]) && index == 0)
      return;
  option.apply(all, values);
}

} // namespace

RequestOptions ScanRequestOptions(std::string_view request, RequestKind kind, Transformation start) {
  using Grammar = kit::RequestWords::Grammar;
  RequestOptions all;
  all.record = std::move(start);
  request.remove_prefix(std::min(request.find(' '), request.size()));
  kit::RequestWords words(request, kind == RequestKind::Classic ? Grammar::Classic : Grammar::ClassicOrJson);
  if (!words.Problem().empty())
    Refuse(all, report::FormatMessage(MessageId::OptionsUnreadable, {kit::jsonOption, words.Problem()}));
  const std::span<const Option> options = OptionsOf(kind);
  for (std::string word; words.Next(word);) {
    const auto option =
        std::ranges::find_if(options, [&](const Option &each) { return kit::EqualsIgnoreCase(each.name, word); });
    if (option != options.end())
      Apply(*option, words, all);
  }
  return all;
}

} // namespace catalogue
