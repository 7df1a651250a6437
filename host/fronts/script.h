// A script that stands in for a person: one step a line, blanks between words, double quotes around words with blanks,
// # before a comment. Reading checks every step's form, so that a slip of the pen is found before anything runs.
#ifndef HOST_FRONTS_SCRIPT_H
#define HOST_FRONTS_SCRIPT_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

enum class StepKind {
  Answer,
  Choose,
  Dismiss,
  Dialog,
  Set,
  Click,
  DoubleClick,
  Frame,
  GridAdd,
  GridSet,
  GridSelect,
  ExpectTitle,
  ExpectContent, // text or state
  ExpectFlag,    // sensitive, insensitive, visible or hidden
  ExpectLabels,
  ExpectGridRow,
  ExpectGridRows,
};

struct ScriptStep {
  StepKind kind = StepKind::Answer;
  size_t line = 0;                // from 1
  std::vector<std::string> words; // the first is the verb
  std::string text;               // as it stands in the file

  [[nodiscard]] const std::string &Word(size_t index) const { return words[index]; }
  // A word that the step's form makes a number.
  [[nodiscard]] int Number(size_t index) const { return std::stoi(words[index]); }
};

struct ScriptResult {
  std::vector<ScriptStep> steps;
  std::string error; // not empty when the script cannot be used
};

[[nodiscard]] ScriptResult ReadScript(const std::string &path);
[[nodiscard]] ScriptResult ParseScript(std::string_view text);

} // namespace host

#endif
