#include "catalogue/request_options.h"

#include "kit/text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace catalogue {

namespace {

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

using Value = const std::string &;

struct Option {
  std::string_view name;
  void (*apply)(RequestOptions &, Value value);
};

constexpr std::array options = {
    Option{"-appname", [](RequestOptions &all, Value value) { all.applicationName = value; }},
    Option{"-trfile", [](RequestOptions &all, Value value) { all.transformationFile = value; }},
    Option{"-trname", [](RequestOptions &all, Value value) { all.transformationName = value; }},
    Option{"-name", [](RequestOptions &all, Value value) { all.record.name = value; }},
    Option{"-xslfilepath", [](RequestOptions &all, Value value) { all.record.xslPath = value; }},
    Option{"-processor", [](RequestOptions &all, Value value) { all.record.processor = value; }},
    Option{"-dirpath", [](RequestOptions &all, Value value) { all.record.output.dirPath = value; }},
    Option{"-suffix", [](RequestOptions &all, Value value) { all.record.output.suffix = value; }},
    Option{"-output",
           [](RequestOptions &all, Value value) { SetKind(outputNames, value, all.record.output.outputLocation); }},
    Option{"-openoutput",
           [](RequestOptions &all, Value value) { SetKind(openNames, value, all.record.output.openOutput); }},
};

} // namespace

RequestOptions ScanRequestOptions(std::string_view request) {
  RequestOptions all;
  kit::Tokenizer tokens(request);
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

} // namespace catalogue
