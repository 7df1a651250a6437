// Standard input as the input of a run, and standard output as its output. Files of a private folder stand in for them
// while it runs: an input may be read twice, and an output that fails is not to be seen.
#ifndef HOST_CLI_STANDARD_STREAMS_H
#define HOST_CLI_STANDARD_STREAMS_H

#include "host/temp_folder.h"

#include <string>
#include <string_view>

namespace cli {

// What stands for a stream on the command line. As a path it lies in the working folder, where references start.
inline constexpr std::string_view streamName = "-";

class StandardStreams {
public:
  // Names the files; empty when there is no folder for them.
  [[nodiscard]] std::string InputFile() { return FileNamed("input"); }
  [[nodiscard]] std::string OutputFile() { return FileNamed("output"); }

  // Reads standard input to its end. False when interrupted, or with an error text.
  [[nodiscard]] bool ReadInput(std::string &error);
  // Writes what the run left to standard output, if anything. False when it cannot take it.
  [[nodiscard]] bool WriteOutput();

private:
  [[nodiscard]] std::string FileNamed(std::string_view name);

  host::TempFolder folder{{}};
};

} // namespace cli

#endif
