// A transformation as it stands in a reply, and as options of a request.
#ifndef HOST_CLI_TRANSFORMATION_RECORD_H
#define HOST_CLI_TRANSFORMATION_RECORD_H

#include "host/cli/options.h"
#include "kit/request_builder.h"
#include "kit/vdk.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cli {

enum class OutputPolicy : int32_t { DoNotSave = 0, Prompt = 1, Folder = 2, SameLocation = 3 };

struct TransformationRecord {
  std::string name;
  bool usesInstruction = false;
  std::string stylesheet;
  std::string processor;
  std::vector<std::string> parameters; // name and expression alternately
  OutputPolicy output = OutputPolicy::DoNotSave;
  std::string folder;
  std::string suffix;
  int32_t openOutput = 0;
};

// The records of a reply; values that are no record are passed over.
[[nodiscard]] std::vector<TransformationRecord> ReadRecords(const V_TypedValsT &reply);
// Changes what the options say. False and an error text when they contradict themselves or are misspelt.
[[nodiscard]] bool ApplyOptions(TransformationRecord &record, const RecordOptions &options, std::string &error);
void AddToRequest(kit::RequestBuilder &request, const TransformationRecord &record);
// Where the output goes, in words.
[[nodiscard]] std::string DescribeOutput(const TransformationRecord &record);
// "NAME=EXPRESSION"; nothing without a name.
[[nodiscard]] std::optional<std::pair<std::string, std::string>> SplitParameter(std::string_view text);

} // namespace cli

#endif
