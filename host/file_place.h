// A place in a file, and the form in which the host's own messages name one: "FILE:LINE:COLUMN: message".
#ifndef HOST_FILE_PLACE_H
#define HOST_FILE_PLACE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace host {

struct FilePlace {
  std::string path;
  int32_t line = 0;   // from 1; 0 or less when unknown
  int32_t column = 0; // likewise
};

struct NamedPlace {
  FilePlace place;
  size_t begin = 0; // of the path in the text
  size_t end = 0;
};

// At the beginning of the text, or behind a colon and a blank. Only absolute paths count, since nothing says what a
// relative one is relative to.
[[nodiscard]] std::optional<NamedPlace> FindFilePlace(std::string_view text);

} // namespace host

#endif
