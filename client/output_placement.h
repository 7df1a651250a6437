// Where the result of one input goes, whether it may go there, and how finished outputs are put in place and opened.
#ifndef CLIENT_OUTPUT_PLACEMENT_H
#define CLIENT_OUTPUT_PLACEMENT_H

#include "catalogue/transformation.h"

#include <string>

namespace client {

struct OutputPlan {
  std::string output;    // empty: none, the input is refused
  std::string temporary; // when not empty, the processor writes here and the file then replaces the output

  [[nodiscard]] const std::string &Written() const { return temporary.empty() ? output : temporary; }
};

// By the policy of a transformation. `input` is expanded already. May ask the person for a path.
[[nodiscard]] OutputPlan PlanOutput(const catalogue::TransformationOutput &policy, const std::string &input);

// An unused name in the host's temporary folder, made of the input's name.
[[nodiscard]] std::string TemporaryOutput(const std::string &input);

enum class OutputCheck { Refused, Accepted };

// Whether the output may be written; asks before an existing file is overwritten and logs why not.
[[nodiscard]] OutputCheck CheckOutput(const std::string &output);

// Puts the temporary file in the output's place, whole or not at all, and removes it.
[[nodiscard]] bool ReplaceOutput(const std::string &temporary, const std::string &output);

} // namespace client

#endif
