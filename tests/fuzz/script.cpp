// Any bytes as a dialog script: what can be read, written with every word in quotes, reads the same.
#include "host/fronts/script.h"
#include "tests/fuzz/fuzzing.h"

#include <string>

namespace {

// The steps on the lines that they stand on.
std::string Compose(const std::vector<host::ScriptStep> &steps) {
  std::string text;
  size_t line = 1;
  for (const host::ScriptStep &step : steps) {
    for (; line < step.line; ++line)
      text += "\n";
    for (const std::string &word : step.words)
      text += '"' + word + "\" ";
  }
  return text;
}

void UseNumbers(const host::ScriptStep &step) {
  using Kind = host::StepKind;
  switch (step.kind) {
  case Kind::Dialog:
  case Kind::Set:
  case Kind::Click:
  case Kind::DoubleClick:
  case Kind::ExpectContent:
  case Kind::ExpectFlag:
  case Kind::ExpectLabels:
    fuzz::Require(step.Number(1) >= 0, "numbers are numbers");
    break;
  case Kind::GridSet:
  case Kind::GridSelect:
  case Kind::ExpectGridRow:
    fuzz::Require(step.Number(2) >= 0, "numbers are numbers");
    break;
  case Kind::ExpectGridRows:
    fuzz::Require(step.Number(3) >= 0, "numbers are numbers");
    break;
  default:
    break;
  }
}

} // namespace

void fuzz::RunInput(std::string_view input) {
  const host::ScriptResult read = host::ParseScript(input);
  if (!read.error.empty()) {
    Require(read.error.starts_with("line "), "what is wrong has a line");
    return;
  }
  for (const host::ScriptStep &step : read.steps)
    UseNumbers(step);
  const host::ScriptResult again = host::ParseScript(Compose(read.steps));
  Require(again.error.empty() && again.steps.size() == read.steps.size(), "a script in quotes reads the same");
  for (size_t index = 0; index < read.steps.size(); ++index) {
    const host::ScriptStep &before = read.steps[index];
    const host::ScriptStep &after = again.steps[index];
    Require(before.kind == after.kind && before.line == after.line && before.words == after.words,
            "a step in quotes reads the same");
  }
}
