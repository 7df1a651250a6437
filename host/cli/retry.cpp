#include "host/cli/retry.h"

#include "host/record/read_run_record.h"
#include "kit/names.h"
#include "kit/request_builder.h"
#include "kit/text.h"

#include <algorithm>
#include <array>
#include <set>
#include <string_view>
#include <vector>

namespace cli {

namespace {

using Strings = std::vector<std::string>;

constexpr std::string_view fileOption = "-file";
constexpr std::string_view outputOption = "-outputfilepath";
// What stands in a record for bytes that are no text.
constexpr std::string_view replacement = "\xEF\xBF\xBD";

struct Option {
  std::string_view name;
  size_t valueCount;
};
// Those that a request of ours may hold. Other ways to name inputs would mean other files by now.
constexpr std::array options = {Option{fileOption, 1},          Option{outputOption, 1},
                                Option{"-xslfilepath", 1},      Option{"-usepi", 0},
                                Option{"-processor", 1},        Option{"-sparam", 2},
                                Option{"-trname", 1},           Option{"-appname", 1},
                                Option{"-trfile", 1},           Option{"-distinctoutputs", 0},
                                Option{"-makefolders", 0},      Option{"-xinclude", 0},
                                Option{"-initialtemplate", 1},  Option{"-initialmode", 1},
                                Option{"-dontusevlconsole", 0}, Option{"-dontprintstartlog", 0},
                                Option{"-dontprintendlog", 0}};

struct RecordedRequest {
  std::vector<Strings> common; // each an option and its values
  Strings files;
  Strings outputs;
};

// Empty, or why the request cannot be run again.
std::string ReadRequest(const std::string &text, RecordedRequest &request) {
  if (text.find(replacement) != std::string::npos)
    return "its request holds a name that is not UTF-8";
  kit::Tokenizer tokens(text);
  std::string token;
  if (!tokens.Next(token) || token != kit::runRequestName)
    return "its request is none that runs transformations";
  while (tokens.Next(token)) {
    const auto *const option = std::ranges::find(options, token, &Option::name);
    if (option == options.end())
      return "its request has the option " + token + ", and only files that are named one by one can be run again";
    Strings words = {token};
    for (size_t count = 0; count < option->valueCount; ++count)
      words.emplace_back(tokens.Next(token) ? token : std::string());
    if (option->name == fileOption)
      request.files.push_back(words[1]);
    else if (option->name == outputOption)
      request.outputs.push_back(words[1]);
    else
      request.common.push_back(std::move(words));
  }
  return request.files.size() == request.outputs.size() && !request.files.empty()
             ? std::string()
             : "its request does not name an output for each input";
}

void AddOption(kit::RequestBuilder &builder, const Strings &words) {
  if (words.size() == 1)
    builder.Add(words[0]);
  else if (words.size() == 2)
    builder.Add(words[0], {words[1]});
  else
    builder.Add(words[0], {words[1], words[2]});
}

std::set<std::string> FindDone(const host::RunRecord &record) {
  std::set<std::string> done;
  for (const host::RecordedJob &job : record.jobs)
    if (job.status == V_JOB_DONE || job.status == V_JOB_LEFT_OUT)
      done.insert(job.input);
    else
      done.erase(job.input);
  return done;
}

} // namespace

std::string FindRetryContradiction(const RunOptions &options) {
  const std::pair<bool, std::string_view> given[] = {{!options.inputs.empty(), "INPUT"},
                                                     {!options.transformation.empty(), "--transformation"},
                                                     {!options.catalogue.file.empty(), "--catalogue"},
                                                     {!options.catalogue.application.empty(), "--application"},
                                                     {!options.stylesheet.empty(), "--xsl"},
                                                     {options.usesInstruction, "--use-pi"},
                                                     {!options.processor.empty(), "--processor"},
                                                     {!options.parameters.empty(), "-p"},
                                                     {!options.output.empty(), "-o"},
                                                     {!options.extension.empty(), "--extension"},
                                                     {options.isRecursive, "--recursive"},
                                                     {options.takesComponents, "--components"},
                                                     {options.includes, "--xinclude"},
                                                     {!options.initialTemplate.empty(), "--initial-template"},
                                                     {!options.initialMode.empty(), "--initial-mode"},
                                                     {!options.patterns.empty(), "--match"}};
  for (const auto &[isGiven, name] : given)
    if (isGiven)
      return "--retry takes everything from the record; leave out " + std::string(name);
  return {};
}

bool ComposeRetry(const std::string &recordPath, RunRequest &request, std::string &error) {
  host::RunRecord record;
  if (!host::ReadRunRecord(recordPath, record, error))
    return false;
  RecordedRequest recorded;
  if (const std::string fault = ReadRequest(record.request, recorded); !fault.empty()) {
    error = recordPath + ":1: " + fault;
    return false;
  }
  const std::set<std::string> done = FindDone(record);
  kit::RequestBuilder builder("");
  for (const Strings &words : recorded.common)
    AddOption(builder, words);
  request.inputCount = 0;
  for (size_t index = 0; index < recorded.files.size(); ++index) {
    if (done.contains(recorded.files[index]))
      continue;
    builder.Add(fileOption, {recorded.files[index]});
    builder.Add(outputOption, {recorded.outputs[index]});
    ++request.inputCount;
  }
  request.options = builder.Text();
  error = builder.Problem();
  return error.empty();
}

} // namespace cli
