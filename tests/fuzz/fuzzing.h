// What the fuzz targets share. A target is one source file that defines RunInput; it is linked with libFuzzer, or with
// play_inputs.cpp, which plays files. State that one input leaves must not change what the next one does.
#ifndef TESTS_FUZZ_FUZZING_H
#define TESTS_FUZZ_FUZZING_H

#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

// The target. Returns when all is well.
void RunInput(std::string_view input);

// Ends the process unless `holds`; libFuzzer keeps the input then.
void Require(bool holds, std::string_view what);

[[nodiscard]] std::vector<std::string_view> Split(std::string_view text, char separator);
[[nodiscard]] bool IsUtf8(std::string_view text);

struct NamedFile {
  std::string name;
  std::string content;
};
// An input that stands for several files: each begins behind a line "=== NAME". Names with other characters than
// letters, digits, ".", "_" and "-" are left out.
[[nodiscard]] std::vector<NamedFile> SplitFiles(std::string_view input);

} // namespace fuzz

#endif
