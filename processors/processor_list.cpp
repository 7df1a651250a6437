#include "processors/processor_list.h"

#include "kit/values.h"
#include "processors/processor.h"
#include "report/messages.h"
#include "report/run_event.h"

#include <algorithm>
#include <iterator>

namespace processors {

namespace {

struct ProcessorList {
  std::string defaultName;
  std::vector<ProcessorEntry> entries;
};

ProcessorList &TheList() {
  static ProcessorList list;
  return list;
}

ProcessorEntry MakeEntry(std::vector<std::string> fields, int32_t position) {
  constexpr size_t ownFields = 3;
  fields.resize(std::max(fields.size(), ownFields));
  std::vector<std::string> attributes(std::make_move_iterator(fields.begin() + ownFields),
                                      std::make_move_iterator(fields.end()));
  return {std::move(fields[0]), std::move(fields[1]), std::move(fields[2]), std::move(attributes), position};
}

} // namespace

void LoadProcessors(Processor &processor) {
  ProcessorList list;
  const kit::TypedValues preferences = kit::TypedValues::Adopt(V_ApiGetTypedVals(V_SESSION, V_SP_XSLT_PROCESSORS));
  for (uint32_t index = 0; index < preferences.Size(); ++index)
    if (auto fields = preferences.Strings(index))
      list.entries.push_back(MakeEntry(std::move(*fields), static_cast<int32_t>(list.entries.size()) + 1));
  if (preferences.Strings(0))
    list.defaultName = list.entries.front().name;
  TheList() = std::move(list);
  processor.SetClassPath(BuildClassPath());
}

Policy ReadPolicy() {
  return {kit::GetStrings(V_SESSION, V_SP_TRUSTED_HOSTS), V_ApiGetInt(V_SESSION, V_SP_ALLOW_EXTENSIONS) != 0,
          kit::GetStrings(V_SESSION, V_SP_WRITE_FOLDERS), V_ApiGetInt(V_SESSION, V_SP_UNSYNCED_OUTPUTS) == 0};
}

const std::vector<ProcessorEntry> &Processors() { return TheList().entries; }

const ProcessorEntry *FindProcessor(std::string_view name) {
  const auto found = std::ranges::find(TheList().entries, name, &ProcessorEntry::name);
  return found == TheList().entries.end() ? nullptr : &*found;
}

const std::string *FindProcessorClass(std::string_view name) {
  const ProcessorEntry *found = FindProcessor(name);
  return found ? &found->className : nullptr;
}

bool IsKnownProcessor(std::string_view name) { return FindProcessorClass(name) != nullptr; }

const std::string &DefaultProcessorName() { return TheList().defaultName; }

std::string BuildClassPath() {
  std::string classPath = ".;";
  const auto &entries = TheList().entries;
  const auto chosen = std::ranges::find(entries, TheList().defaultName, &ProcessorEntry::name);
  if (chosen == entries.end())
    return classPath;
  classPath += chosen->classPath + ";";
  for (const ProcessorEntry &entry : entries)
    if (entry.classPath != chosen->classPath)
      classPath += entry.classPath + ";";
  return classPath;
}

bool CheckProcessor(std::string_view name) {
  if (IsKnownProcessor(name))
    return true;
  report::ReportProblem(report::MessageId::ProcessorNotFound, {name});
  return false;
}

ProcessorChoice MakeProcessorChoice(std::string_view currentName) {
  ProcessorChoice choice{{report::LoadMessage(report::MessageId::XsltProcessors)}, -1};
  if (!currentName.empty() && !IsKnownProcessor(currentName)) {
    choice.labels.emplace_back(currentName);
    choice.selected = 1;
  }
  for (const ProcessorEntry &entry : TheList().entries) {
    if (!currentName.empty() && entry.name == currentName)
      choice.selected = static_cast<int32_t>(choice.labels.size());
    choice.labels.push_back(entry.name);
  }
  return choice;
}

} // namespace processors
