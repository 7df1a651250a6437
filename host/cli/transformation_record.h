// What a dry run wants to know of a transformation, as it stands in a reply.
#ifndef HOST_CLI_TRANSFORMATION_RECORD_H
#define HOST_CLI_TRANSFORMATION_RECORD_H

#include "host/cli/split_parameter.h"
#include "kit/vdk.h"

#include <cstdint>
#include <string>

namespace cli {

enum class OutputPolicy : int32_t {
  DoNotSave = V_SAVE_NOT,
  Prompt = V_SAVE_WHERE_ASKED,
  Folder = V_SAVE_IN_FOLDER,
  SameLocation = V_SAVE_BESIDE_INPUT
};

struct TransformationRecord {
  bool usesInstruction = false;
  std::string stylesheet;
  std::string processor;
  OutputPolicy output = OutputPolicy::DoNotSave;
  std::string folder;
  std::string suffix;
};

// Fields that are missing or of another kind are empty.
[[nodiscard]] TransformationRecord ReadRecord(const V_TypedValsT &fields);

} // namespace cli

#endif
