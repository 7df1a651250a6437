// The XSLT processors that the host's preferences name. Read once at initialisation, host's thread only.
#ifndef PROCESSORS_PROCESSOR_LIST_H
#define PROCESSORS_PROCESSOR_LIST_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace processors {

class Processor;
struct Policy;

struct ProcessorEntry {
  std::string name; // compared byte for byte
  std::string classPath;
  std::string className;
  std::vector<std::string> attributes = {}; // of the factory: name, type and value alternately
  int32_t position = 0;                     // from 1, counting only the preference values that describe processors
};

// Reads the preferences into the list, then builds the class path and sets it.
void LoadProcessors(Processor &processor);

// What the host trusts documents and stylesheets with.
[[nodiscard]] Policy ReadPolicy();

[[nodiscard]] const std::vector<ProcessorEntry> &Processors();
// The first entry of that name; null when there is none.
[[nodiscard]] const ProcessorEntry *FindProcessor(std::string_view name);
[[nodiscard]] const std::string *FindProcessorClass(std::string_view name);
[[nodiscard]] bool IsKnownProcessor(std::string_view name);
[[nodiscard]] const std::string &DefaultProcessorName();
// ".;", the default's class path, then every other one that differs from it, each with ";" behind it.
[[nodiscard]] std::string BuildClassPath();

// Known, or a line in the log that says it is not.
[[nodiscard]] bool CheckProcessor(std::string_view name);

// What the processor pop-up of the dialogs shows.
struct ProcessorChoice {
  std::vector<std::string> labels;
  int32_t selected = -1;
};
[[nodiscard]] ProcessorChoice MakeProcessorChoice(std::string_view currentName);

} // namespace processors

#endif
