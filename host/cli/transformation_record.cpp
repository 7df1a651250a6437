#include "host/cli/transformation_record.h"

#include "kit/values.h"

#include <algorithm>
#include <array>
#include <span>

namespace cli {

namespace {

struct Word {
  std::string_view word; // in requests and on the command line
  int32_t number;        // in replies
};

constexpr std::array outputWords = {Word{"donotsave", 0}, Word{"prompt", 1}, Word{"dirpath", 2},
                                    Word{"samelocation", 3}};
constexpr std::array openWords = {Word{"none", 0}, Word{"vellis", 1}, Word{"default", 2}};

std::string_view WordFor(std::span<const Word> words, int32_t number) {
  const auto found = std::ranges::find(words, number, &Word::number);
  return found == words.end() ? words.front().word : found->word;
}

// False when there is no such word; the error lists those that there are.
bool ReadWord(std::span<const Word> words, const std::string &option, const std::string &text, int32_t &number,
              std::string &error) {
  const auto found = std::ranges::find(words, text, &Word::word);
  if (found != words.end()) {
    number = found->number;
    return true;
  }
  error = option + " knows";
  for (const Word &each : words)
    error.append(&each == &words.front() ? " " : ", ").append(each.word);
  error += "; not \"" + text + "\"";
  return false;
}

const V_TypedValT *Find(const V_TypedValsT &values, uint32_t index, int32_t kind) {
  return index < values.len && values.val[index].kind == kind ? &values.val[index] : nullptr;
}

std::string Text(const V_TypedValsT &values, uint32_t index) {
  const V_TypedValT *value = Find(values, index, V_KIND_STRING);
  return value && value->u.string ? value->u.string : "";
}

int32_t Number(const V_TypedValsT &values, uint32_t index) {
  const V_TypedValT *value = Find(values, index, V_KIND_INTEGER);
  return value ? value->u.integer : 0;
}

TransformationRecord ReadRecord(const V_TypedValsT &fields) {
  TransformationRecord record;
  record.name = Text(fields, 0);
  if (const V_TypedValT *source = Find(fields, 1, V_KIND_TYPED_VALUES)) {
    record.usesInstruction = Number(source->u.values, 0) != 0;
    record.stylesheet = Text(source->u.values, 1);
  }
  record.processor = Text(fields, 2);
  if (const V_TypedValT *parameters = Find(fields, 3, V_KIND_STRINGS))
    record.parameters = kit::ReadStrings(parameters->u.strings);
  if (const V_TypedValT *output = Find(fields, 4, V_KIND_TYPED_VALUES)) {
    record.output = static_cast<OutputPolicy>(Number(output->u.values, 0));
    record.folder = Text(output->u.values, 1);
    record.suffix = Text(output->u.values, 2);
    record.openOutput = Number(output->u.values, 3);
  }
  return record;
}

// The place of a parameter's name in the flat list; the list's size when it is not there.
size_t FindParameter(const std::vector<std::string> &parameters, const std::string &name) {
  size_t at = 0;
  while (at < parameters.size() && parameters[at] != name)
    at += 2;
  return std::min(at, parameters.size());
}

bool ApplyParameters(TransformationRecord &record, const RecordOptions &options, std::string &error) {
  std::vector<std::string> &parameters = record.parameters;
  for (const std::string &name : options.droppedParameters) {
    const size_t at = FindParameter(parameters, name);
    if (at == parameters.size()) {
      error = "the transformation has no parameter \"" + name + "\"";
      return false;
    }
    const auto first = parameters.begin() + static_cast<std::ptrdiff_t>(at);
    parameters.erase(first, first + std::min<std::ptrdiff_t>(2, parameters.end() - first));
  }
  for (const std::string &text : options.parameters) {
    const auto parameter = SplitParameter(text);
    if (!parameter) {
      error = "-p wants NAME=EXPRESSION, not \"" + text + "\"";
      return false;
    }
    const size_t at = FindParameter(parameters, parameter->first);
    if (at + 1 < parameters.size())
      parameters[at + 1] = parameter->second;
    else
      parameters.insert(parameters.end(), {parameter->first, parameter->second});
  }
  return true;
}

bool ApplyOutput(TransformationRecord &record, const RecordOptions &options, std::string &error) {
  auto policy = static_cast<int32_t>(record.output);
  // A folder or a suffix says by itself where the output goes.
  if (!options.folder.empty())
    policy = static_cast<int32_t>(OutputPolicy::Folder);
  else if (options.suffix)
    policy = static_cast<int32_t>(OutputPolicy::SameLocation);
  if (!options.output.empty() && !ReadWord(outputWords, "--output", options.output, policy, error))
    return false;
  record.output = static_cast<OutputPolicy>(policy);
  if (!options.folder.empty())
    record.folder = options.folder;
  if (options.suffix)
    record.suffix = *options.suffix;
  return options.openOutput.empty() ||
         ReadWord(openWords, "--open-output", options.openOutput, record.openOutput, error);
}

} // namespace

std::vector<TransformationRecord> ReadRecords(const V_TypedValsT &reply) {
  std::vector<TransformationRecord> records;
  for (uint32_t index = 0; index < reply.len; ++index)
    if (const V_TypedValT *record = Find(reply, index, V_KIND_TYPED_VALUES))
      records.push_back(ReadRecord(record->u.values));
  return records;
}

bool ApplyOptions(TransformationRecord &record, const RecordOptions &options, std::string &error) {
  if (!options.newName.empty())
    record.name = options.newName;
  if (!options.stylesheet.empty()) {
    record.stylesheet = options.stylesheet;
    record.usesInstruction = false;
  }
  if (options.usesInstruction) {
    record.usesInstruction = true;
    record.stylesheet.clear();
  }
  if (!options.processor.empty())
    record.processor = options.processor;
  return ApplyParameters(record, options, error) && ApplyOutput(record, options, error);
}

void AddToRequest(kit::RequestBuilder &request, const TransformationRecord &record) {
  request.Add("-name", {record.name});
  if (record.usesInstruction)
    request.Add("-usepi");
  request.AddIfGiven("-xslfilepath", record.stylesheet);
  request.AddIfGiven("-processor", record.processor);
  for (size_t at = 0; at + 1 < record.parameters.size(); at += 2)
    request.Add("-sparam", {record.parameters[at], record.parameters[at + 1]});
  request.Add("-output", {WordFor(outputWords, static_cast<int32_t>(record.output))});
  request.AddIfGiven("-dirpath", record.folder);
  request.AddIfGiven("-suffix", record.suffix);
  request.Add("-openoutput", {WordFor(openWords, record.openOutput)});
}

std::string DescribeOutput(const TransformationRecord &record) {
  switch (record.output) {
  case OutputPolicy::Prompt:
    return "asks";
  case OutputPolicy::Folder:
    return "folder " + record.folder;
  case OutputPolicy::SameLocation:
    return record.suffix.empty() ? "replaces the input" : "beside the input, suffix " + record.suffix;
  default:
    return "not saved";
  }
}

std::optional<std::pair<std::string, std::string>> SplitParameter(std::string_view text) {
  const size_t equals = text.find('=');
  if (equals == std::string_view::npos || equals == 0)
    return std::nullopt;
  return std::pair(std::string(text.substr(0, equals)), std::string(text.substr(equals + 1)));
}

} // namespace cli
