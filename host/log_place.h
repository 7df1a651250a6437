// The place of a file that a line of the log names, so that a front can open it: "... at file F, line L, char C,
// Message: ..." of the client, and "F:L:C: ..." of everything else.
#ifndef HOST_LOG_PLACE_H
#define HOST_LOG_PLACE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace host {

enum class LogKind { Plain, Heading, Success, Warning, Error };

struct LogPlace {
  std::string path;
  int32_t line = 0;   // 0: not said
  int32_t column = 0; // likewise
  size_t begin = 0;   // where the line names the place
  size_t end = 0;
};

[[nodiscard]] LogKind ClassifyLogLine(std::string_view line);
// Only an absolute path or a file URL counts, since a line does not say what a relative path is relative to.
[[nodiscard]] std::optional<LogPlace> FindLogPlace(std::string_view line);

} // namespace host

#endif
