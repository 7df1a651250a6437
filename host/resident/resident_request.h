// A command line on its way to a worker: the arguments, and what of the client's process they depend on. It travels as
// an anonymous file, whatever its size.
#ifndef HOST_RESIDENT_RESIDENT_REQUEST_H
#define HOST_RESIDENT_RESIDENT_REQUEST_H

#include "host/resident/descriptor.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace resident {

struct ResidentRequest {
  uint32_t fileMask = 0;
  std::vector<std::string> arguments;   // the program's name first
  std::vector<std::string> environment; // "NAME=value"
};

// Of this process.
[[nodiscard]] ResidentRequest DescribeRequest(int count, char **arguments);
// None when there is no memory for it.
[[nodiscard]] Descriptor WriteRequest(const ResidentRequest &request);
// Nothing when the file holds no request.
[[nodiscard]] std::optional<ResidentRequest> ReadRequest(int file);

// Equal for environments that one Java may serve: a Java machine reads its environment once. Variables that tell about
// the terminal, the shell and the session, which differ from window to window, and those that only this program reads
// do not count.
[[nodiscard]] uint64_t FingerprintEnvironment(const std::vector<std::string> &environment);

} // namespace resident

#endif
