// Which files a run reads, and where each result goes, worked out before anything starts.
#ifndef HOST_CLI_RUN_INPUTS_H
#define HOST_CLI_RUN_INPUTS_H

#include "host/cli/options.h"

#include <string>
#include <vector>

namespace cli {

struct RunInput {
  std::string path;     // absolute
  std::string relative; // below the folder that was named, or the file's name
  std::string output;   // absolute; empty when the transformation decides
  // The files that stand in for standard input and output.
  std::string content = {};
  std::string outputContent = {};
};

// Whether an input of the run is standard input, and whether its output is standard output.
[[nodiscard]] bool ReadsStandardInput(const RunOptions &options);
[[nodiscard]] bool WritesStandardOutput(const RunOptions &options);

// Files as they are named, the files of folders by name, the components of books and maps in their order; those need
// not exist. False and an error text when a named file is not there. `warnings` gets what could not be read of a map.
[[nodiscard]] bool FindInputs(const RunOptions &options, std::vector<RunInput> &inputs,
                              std::vector<std::string> &warnings, std::string &error);

// Fills in the outputs that -o and --extension ask for. False and an error text when they cannot be told apart or a
// folder is needed and none was named.
[[nodiscard]] bool PlaceOutputs(const RunOptions &options, std::vector<RunInput> &inputs, std::string &error);

// Whether -o means a folder: one that is there, or is to be made.
[[nodiscard]] bool NamesFolder(const std::string &output);

} // namespace cli

#endif
