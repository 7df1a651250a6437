// A run request as its options say it: "XSLTRunTrScenario " followed by options. Parsing gathers the inputs from the
// host and from folders and reports what it cannot find.
#ifndef CLIENT_RUN_REQUEST_H
#define CLIENT_RUN_REQUEST_H

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace client {

enum class InputKind : int32_t {
  NotSpecified = 0,
  CurrentFile = 1,
  CurrentFileWithChildren = 2,
  File = 3,
  Folder = 4,
  AllOpenFiles = 5
};

// The name under which the host's usage operation knows a kind.
[[nodiscard]] std::string_view ScopeName(InputKind kind);

// How a transformation begins, whatever is transformed.
struct RunStart {
  bool includes = false; // XInclude in inputs, and in documents that the stylesheet reads
  std::string initialTemplate;
  std::string initialMode;
};

struct RunRequest {
  RunStart start;
  bool makeFolders = false;
  bool distinctOutputs = false;
  bool printStartLog = true;
  bool printEndLog = true;
  bool usePI = false;
  InputKind inputKind = InputKind::NotSpecified; // that of the last input option
  std::vector<std::string> inputs;
  std::string applicationName;
  std::string transformationFile;
  std::string transformationName;
  std::string xslPath;
  std::string processor;
  std::vector<std::string> outputs; // by the position of the input, or none at all
  // Files that stand in for named ones: what the input of that position holds, where the output is left.
  std::map<size_t, std::string> inputContents;
  std::map<size_t, std::string> outputContents;
  std::vector<std::string> parameters; // name and expression alternately

  [[nodiscard]] bool RunsBareXsl() const { return usePI || !xslPath.empty(); }
};

enum class RequestCheck { Refused, Accepted };

// Whether the request keeps the host's console quiet; asked first, so that no message is echoed too much.
[[nodiscard]] bool WantsConsole(std::string_view request);
// Whether the reply is to hold the log; asked first as well.
[[nodiscard]] bool WantsLog(std::string_view request);

// Refused when a folder that it names does not exist.
[[nodiscard]] RequestCheck ParseRunOptions(std::string_view options, RunRequest &request);

} // namespace client

#endif
