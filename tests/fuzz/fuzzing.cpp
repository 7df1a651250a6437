#include "tests/fuzz/fuzzing.h"

#include "kit/utf16.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iostream>

namespace fuzz {

namespace {

bool IsPlainName(std::string_view name) {
  static constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-";
  return !name.empty() && name.size() < 100 && name != "." && name != ".." &&
         name.find_first_not_of(letters) == std::string_view::npos;
}

} // namespace

void Require(bool holds, std::string_view what) {
  if (holds)
    return;
  std::cerr << "does not hold: " << what << std::endl;
  std::abort();
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (;;) {
    const size_t end = std::min(text.find(separator), text.size());
    parts.push_back(text.substr(0, end));
    if (end == text.size())
      return parts;
    text.remove_prefix(end + 1);
  }
}

bool IsUtf8(std::string_view text) { return kit::ToUtf16Strict(text).has_value(); }

std::vector<NamedFile> SplitFiles(std::string_view input) {
  static constexpr std::string_view mark = "=== ";
  std::vector<NamedFile> files;
  bool isKept = false;
  for (const std::string_view line : Split(input, '\n')) {
    if (line.starts_with(mark)) {
      const std::string_view name = line.substr(mark.size());
      isKept = IsPlainName(name);
      if (isKept)
        files.push_back({std::string(name), {}});
    } else if (isKept) {
      files.back().content.append(line).append("\n");
    }
  }
  return files;
}

} // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  fuzz::RunInput({reinterpret_cast<const char *>(data), size});
  return 0;
}
