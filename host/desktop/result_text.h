// The text of a result as a window can show it: the beginning of a large file, without the over-long lines that text
// controls cannot lay out. No windows; any thread.
#ifndef HOST_DESKTOP_RESULT_TEXT_H
#define HOST_DESKTOP_RESULT_TEXT_H

#include <cstddef>
#include <string>

namespace desktop {

inline constexpr size_t maxResultBytes = size_t{2} << 20; // of a file
inline constexpr size_t maxLineBytes = 4096;

struct ResultText {
  std::string text; // UTF-8 if the file is
  std::string note; // how `text` differs from the file, for the user; empty when it is the same
  std::string error;
};

[[nodiscard]] ResultText ReadResultText(const std::string &path);

} // namespace desktop

#endif
