// Where the result of one job goes, whether it may go there, and how a finished output is put in place.
#ifndef CLIENT_OUTPUT_PLACEMENT_H
#define CLIENT_OUTPUT_PLACEMENT_H

#include "client/run_plan.h"
#include "kit/atomic_file.h"
#include "report/run_event.h"

#include <functional>
#include <optional>
#include <string>

namespace client {

// The place that the policy of a transformation gives an expanded input; fills in `output` and `place`.
void PlaceByPolicy(const catalogue::TransformationOutput &policy, PlannedJob &job);

struct ChosenOutput {
  std::string output;         // empty: none, the job is refused
  std::string temporary;      // when not empty, the processor writes here and the file then replaces the output
  std::string elsewhere = {}; // when not empty, the processor writes here, and the output is only a name

  [[nodiscard]] const std::string &Written() const {
    return !elsewhere.empty() ? elsewhere : temporary.empty() ? output : temporary;
  }
};

// The files of a job whose turn it is. May ask the person for a path.
[[nodiscard]] ChosenOutput ChooseOutput(const PlannedJob &job);

// A new file in the host's temporary folder, named after the input; empty, and of no other process. When it cannot be
// made, its name all the same.
[[nodiscard]] std::string TemporaryOutput(const std::string &input);

// The first of the names for such a file that `takes` accepts.
[[nodiscard]] std::string NameTemporaryOutput(const std::string &input,
                                              const std::function<bool(const std::string &)> &takes);

// What keeps a file from being written there: the folder is missing or read-only.
[[nodiscard]] std::optional<report::MessageId> FindFolderObstacle(const std::string &output);
// Whether an existing file cannot be replaced.
[[nodiscard]] bool IsProtected(const std::string &output);

// Whether the job would write over the stylesheet that it applies; not known where the input names its own.
[[nodiscard]] bool IsOwnStylesheet(const PlannedJob &job, const std::string &output);

struct OutputCheck {
  bool isAccepted = false;
  std::optional<report::Diagnostic> problem = {}; // why not, unless the person has just said no
};
// Whether the output may be written; asks before an existing file is overwritten.
[[nodiscard]] OutputCheck CheckOutput(const std::string &output);

// Puts the temporary file in the output's place, whole or not at all, and removes it. Empty, or why that failed; what
// the new file could not keep of the old one is reported.
[[nodiscard]] std::string ReplaceOutput(const std::string &temporary, const std::string &output,
                                        kit::Durability durability);

} // namespace client

#endif
