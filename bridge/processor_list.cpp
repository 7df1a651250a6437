#include "bridge/processor_list.h"

#include "bridge/processor_bridge.h"
#include "bridge/transformation_log.h"
#include "kit/values.h"

#include <algorithm>

namespace bridge {

namespace {

struct ProcessorList {
  std::string defaultName;
  std::vector<ProcessorEntry> entries;
};

ProcessorList &TheList() {
  static ProcessorList list;
  return list;
}

const ProcessorEntry *FindEntry(std::string_view name) {
  const auto &entries = TheList().entries;
  const auto found = std::ranges::find(entries, name, &ProcessorEntry::name);
  return found == entries.end() ? nullptr : &*found;
}

} // namespace

void LoadProcessors() {
  const auto preferences = kit::TypedValues::Adopt(V_ApiGetTypedVals(V_SESSION, V_SP_XSLT_PROCESSORS));
  ProcessorList list;
  for (uint32_t i = 0; i < preferences.Size(); ++i) {
    auto strings = preferences.Strings(i);
    if (!strings)
      continue;
    if (i == 0 && !strings->empty())
      list.defaultName = strings->front();
    strings->resize(std::max<size_t>(strings->size(), 3));
    list.entries.push_back(
        {(*strings)[0], (*strings)[1], (*strings)[2], static_cast<int32_t>(list.entries.size()) + 1});
  }
  TheList() = std::move(list);
  SetClassPath(BuildClassPath().c_str());
}

const std::vector<ProcessorEntry> &Processors() { return TheList().entries; }

const std::string *FindProcessorClass(std::string_view name) {
  const ProcessorEntry *entry = FindEntry(name);
  return entry ? &entry->className : nullptr;
}

bool IsKnownProcessor(std::string_view name) { return FindEntry(name) != nullptr; }

const std::string &DefaultProcessorName() { return TheList().defaultName; }

std::string BuildClassPath() {
  std::string path = ".;";
  const ProcessorEntry *standard = FindEntry(DefaultProcessorName());
  if (!standard)
    return path;
  path += standard->classPath + ";";
  for (const ProcessorEntry &entry : Processors())
    if (entry.classPath != standard->classPath)
      path += entry.classPath + ";";
  return path;
}

bool CheckProcessor(std::string_view name) {
  if (IsKnownProcessor(name))
    return true;
  AppendMessage(MessageId::ProcessorNotFound, {name});
  return false;
}

ProcessorChoice MakeProcessorChoice(std::string_view currentName) {
  ProcessorChoice choice;
  choice.labels.push_back(LoadMessage(MessageId::XsltProcessors));
  if (!currentName.empty() && !IsKnownProcessor(currentName)) {
    choice.labels.emplace_back(currentName);
    choice.selected = 1;
  }
  for (const ProcessorEntry &entry : Processors()) {
    if (!currentName.empty() && entry.name == currentName)
      choice.selected = static_cast<int32_t>(choice.labels.size());
    choice.labels.push_back(entry.name);
  }
  return choice;
}

} // namespace bridge
