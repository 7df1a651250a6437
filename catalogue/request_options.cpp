#include "catalogue/request_options.h"

#include "kit/text.h"
#include "report/messages.h"

#include <algorithm>
#include <array>
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

struct Option {
  std::string_view name;
  void (*apply)(RequestOptions &, Value value);
};

constexpr std::array options = {
    Option{"-appname", [](RequestOptions &all, Value value) { all.applicationName = value; }},
    Option{"-trfile", [](RequestOptions &all, Value value) { all.transformationFile = value; }},
    Option{"-trname", [](RequestOptions &all, Value value) { all.transformationName = value; }},
    Option{"-name", [](RequestOptions &all, Value value) { all.record.name = value; }},
    Option{"-xslfilepath",
           [](RequestOptions &all, Value value) {
             all.record.xslPath = value;
             all.record.usePI = false;
           }},
    Option{"-processor", [](RequestOptions &all, Value value) { all.record.processor = value; }},
    Option{"-dropparam", DropParameter},
    Option{"-dirpath",
           [](RequestOptions &all, Value value) {
             all.record.output.dirPath = value;
             ImplyLocation(all, OutputLocationKind::DirPath);
           }},
    Option{"-suffix",
           [](RequestOptions &all, Value value) {
             all.record.output.suffix = value;
             ImplyLocation(all, OutputLocationKind::SameLocationAsSource);
           }},
    Option{"-output",
           [](RequestOptions &all, Value value) {
             SetKind(all, "-output", locationNames, value, all.record.output.outputLocation);
             all.namesLocation = true;
           }},
    Option{"-openoutput",
           [](RequestOptions &all, Value value) {
             SetKind(all, "-openoutput", openNames, value, all.record.output.openOutput);
           }},
};

} // namespace

RequestOptions ScanRequestOptions(std::string_view request, Transformation start) {
  RequestOptions all;
  all.record = std::move(start);
  kit::Tokenizer tokens(request);
  std::string token;
  while (tokens.Next(token)) {
    const auto option =
        std::ranges::find_if(options, [&](const Option &each) { return kit::EqualsIgnoreCase(each.name, token); });
    if (option != options.end()) {
      if (std::string value; tokens.Next(value))
        option->apply(all, value);
    } else if (kit::EqualsIgnoreCase(token, "-usepi")) {
      all.record.usePI = true;
      all.record.xslPath.clear();
    } else if (kit::EqualsIgnoreCase(token, "-sparam")) {
      std::string name;
      std::string expression;
      if (tokens.Next(name))
        (void)tokens.Next(expression);
      SetParameter(all, name, expression);
    }
  }
  return all;
}

} // namespace catalogue
