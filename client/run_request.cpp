#include "client/run_request.h"

#include "catalogue/location.h"
#include "client/open_documents.h"
#include "kit/paths.h"
#include "kit/text.h"
#include "processors/file_listing.h"
#include "report/run_event.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <span>

namespace client {

namespace {

using report::MessageId;

// The tokens that an option takes; fewer where the request ends early.
using Values = std::span<const std::string>;
using Apply = RequestCheck (*)(RunRequest &, Values);

struct Option {
  std::string_view name;
  size_t valueCount;
  Apply apply;
};

// For the options that are looked for before anything is parsed.
RequestCheck DoNothing(RunRequest &, Values) { return RequestCheck::Accepted; }

template <bool RunRequest::*Flag, bool Value> RequestCheck SetFlag(RunRequest &request, Values) {
  request.*Flag = Value;
  return RequestCheck::Accepted;
}

template <std::string RunRequest::*Field> RequestCheck SetText(RunRequest &request, Values values) {
  if (!values.empty())
    request.*Field = values[0];
  return RequestCheck::Accepted;
}

RequestCheck AllowIncludes(RunRequest &request, Values) {
  request.start.includes = true;
  return RequestCheck::Accepted;
}

template <std::string RunStart::*Field> RequestCheck SetStart(RunRequest &request, Values values) {
  if (!values.empty())
    request.start.*Field = values[0];
  return RequestCheck::Accepted;
}

RequestCheck AddFile(RunRequest &request, Values values) {
  request.inputKind = InputKind::File;
  request.inputs.insert(request.inputs.end(), values.begin(), values.end());
  return RequestCheck::Accepted;
}

RequestCheck AddOutput(RunRequest &request, Values values) {
  request.outputs.insert(request.outputs.end(), values.begin(), values.end());
  return RequestCheck::Accepted;
}

// For the input or output that was named last.
template <std::vector<std::string> RunRequest::*Named, std::map<size_t, std::string> RunRequest::*Contents>
RequestCheck AddContent(RunRequest &request, Values values) {
  if (const size_t count = (request.*Named).size(); count > 0 && !values.empty())
    (request.*Contents)[count - 1] = values[0];
  return RequestCheck::Accepted;
}

RequestCheck AddParameter(RunRequest &request, Values values) {
  request.parameters.push_back(values.empty() ? std::string() : values[0]);
  request.parameters.push_back(values.size() < 2 ? std::string() : values[1]);
  return RequestCheck::Accepted;
}

RequestCheck AddCurrentFile(RunRequest &request, Values) {
  request.inputKind = InputKind::CurrentFile;
  V_ObjectT current = ActiveDocument();
  if (!current)
    current = ActiveBook();
  if (current)
    request.inputs.push_back(DocumentPath(current));
  return RequestCheck::Accepted;
}

void Append(std::vector<std::string> &inputs, std::vector<std::string> more) {
  std::ranges::move(more, std::back_inserter(inputs));
}

RequestCheck AddComponents(RunRequest &request, Values) {
  request.inputKind = InputKind::CurrentFileWithChildren;
  Append(request.inputs, ComponentPaths(ActiveBookOrDocument()));
  return RequestCheck::Accepted;
}

RequestCheck AddOpenFiles(RunRequest &request, Values) {
  request.inputKind = InputKind::AllOpenFiles;
  Append(request.inputs, ShownDocumentPaths());
  return RequestCheck::Accepted;
}

template <int IncludeSubFolders> RequestCheck AddFolder(RunRequest &request, Values values) {
  request.inputKind = InputKind::Folder;
  const std::string given = values.empty() ? std::string() : values[0];
  const std::string folder = catalogue::ResolvePath(given);
  if (!kit::IsFolder(folder)) {
    report::ReportProblem(MessageId::InputFolderMissing, {given});
    return RequestCheck::Refused;
  }
  Append(request.inputs, processors::GetAllFilesInFolder(folder.c_str(), IncludeSubFolders).Items());
  return RequestCheck::Accepted;
}

constexpr std::string_view quietOption = "-dontusevlconsole";
constexpr std::string_view withoutLogOption = "-dontreturnlog";

constexpr std::array options = {
    Option{quietOption, 0, DoNothing},
    Option{"-dontprintstartlog", 0, SetFlag<&RunRequest::printStartLog, false>},
    Option{"-dontprintendlog", 0, SetFlag<&RunRequest::printEndLog, false>},
    Option{"-file", 1, AddFile},
    Option{"-currentfile", 0, AddCurrentFile},
    Option{"-currentfilewithchildren", 0, AddComponents},
    Option{"-allopenfiles", 0, AddOpenFiles},
    Option{"-folder", 1, AddFolder<0>},
    Option{"-folders", 1, AddFolder<1>},
    Option{"-appname", 1, SetText<&RunRequest::applicationName>},
    Option{"-trfile", 1, SetText<&RunRequest::transformationFile>},
    Option{"-trname", 1, SetText<&RunRequest::transformationName>},
    Option{"-xslfilepath", 1, SetText<&RunRequest::xslPath>},
    Option{"-processor", 1, SetText<&RunRequest::processor>},
    Option{"-outputfilepath", 1, AddOutput},
    Option{"-sparam", 2, AddParameter},
    Option{"-usepi", 0, SetFlag<&RunRequest::usePI, true>},
    // Of our own hosts.
    Option{withoutLogOption, 0, DoNothing},
    Option{"-makefolders", 0, SetFlag<&RunRequest::makeFolders, true>},
    Option{"-distinctoutputs", 0, SetFlag<&RunRequest::distinctOutputs, true>},
    Option{"-filecontent", 1, AddContent<&RunRequest::inputs, &RunRequest::inputContents>},
    Option{"-outputcontent", 1, AddContent<&RunRequest::outputs, &RunRequest::outputContents>},
    Option{"-xinclude", 0, AllowIncludes},
    Option{"-initialtemplate", 1, SetStart<&RunStart::initialTemplate>},
    Option{"-initialmode", 1, SetStart<&RunStart::initialMode>},
};

const Option *FindOption(std::string_view token) {
  const auto found =
      std::ranges::find_if(options, [&](const Option &each) { return kit::EqualsIgnoreCase(each.name, token); });
  return found == options.end() ? nullptr : &*found;
}

// Calls `visit` with every option and its values until it refuses; what is no option is skipped.
template <class Visit> RequestCheck ForEachOption(std::string_view text, Visit visit) {
  kit::Tokenizer tokens(text);
  for (std::string token; tokens.Next(token);) {
    const Option *option = FindOption(token);
    if (!option)
      continue;
    std::array<std::string, 2> values;
    size_t count = 0;
    while (count < option->valueCount && tokens.Next(values.at(count)))
      ++count;
    if (visit(*option, Values(values.data(), count)) == RequestCheck::Refused)
      return RequestCheck::Refused;
  }
  return RequestCheck::Accepted;
}

bool HasOption(std::string_view request, std::string_view name) {
  return ForEachOption(request, [&](const Option &option, Values) {
           return option.name == name ? RequestCheck::Refused : RequestCheck::Accepted;
         }) == RequestCheck::Refused;
}

} // namespace

std::string_view ScopeName(InputKind kind) {
  static constexpr std::array<std::string_view, 6> names = {
      "Scope_NotSpecified", "Scope_CurrentFile", "Scope_CurrentFileWithChildren",
      "Scope_File",         "Scope_folder",      "Scope_AllOpenFiles"};
  return names.at(static_cast<size_t>(kind));
}

bool WantsConsole(std::string_view request) { return !HasOption(request, quietOption); }
bool WantsLog(std::string_view request) { return !HasOption(request, withoutLogOption); }

RequestCheck ParseRunOptions(std::string_view text, RunRequest &request) {
  return ForEachOption(text, [&](const Option &option, Values values) { return option.apply(request, values); });
}

} // namespace client
