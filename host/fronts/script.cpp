#include "host/fronts/script.h"

#include "kit/paths.h"
#include "kit/read_file.h"

#include <algorithm>
#include <array>

namespace host {

namespace {

// In a form # stands for a number, * for any word and ... for any number of words; the rest are words of the language,
// with | between those of which one is meant.
struct StepForm {
  std::string_view form;
  StepKind kind;
};
constexpr std::array forms = {
    StepForm{"answer yes|no|ok|cancel", StepKind::Answer},
    StepForm{"choose *", StepKind::Choose},
    StepForm{"dismiss", StepKind::Dismiss},
    StepForm{"dialog #", StepKind::Dialog},
    StepForm{"set # *", StepKind::Set},
    StepForm{"click #", StepKind::Click},
    StepForm{"doubleclick #", StepKind::DoubleClick},
    StepForm{"frame", StepKind::Frame},
    StepForm{"grid add * *", StepKind::GridAdd},
    StepForm{"grid set # name|expression *", StepKind::GridSet},
    StepForm{"grid select #", StepKind::GridSelect},
    StepForm{"grid select # name|expression", StepKind::GridSelect},
    StepForm{"expect title *", StepKind::ExpectTitle},
    StepForm{"expect grid rows #", StepKind::ExpectGridRows},
    StepForm{"expect grid # * *", StepKind::ExpectGridRow},
    StepForm{"expect # text|state *", StepKind::ExpectContent},
    StepForm{"expect # sensitive|insensitive|visible|hidden", StepKind::ExpectFlag},
    StepForm{"expect # labels ...", StepKind::ExpectLabels},
};

bool IsBlank(char letter) { return letter == ' ' || letter == '\t' || letter == '\r'; }

// False when a quote is left open.
bool SplitWords(std::string_view line, std::vector<std::string> &words) {
  size_t at = 0;
  for (;;) {
    while (at < line.size() && IsBlank(line[at]))
      ++at;
    if (at == line.size() || line[at] == '#')
      return true;
    std::string word;
    bool quoted = false;
    for (; at < line.size() && (quoted || !IsBlank(line[at])); ++at)
      if (line[at] == '"')
        quoted = !quoted;
      else
        word += line[at];
    if (quoted)
      return false;
    words.push_back(std::move(word));
  }
}

std::string_view TakeUpTo(std::string_view &rest, char mark) {
  const size_t end = std::min(rest.find(mark), rest.size());
  const std::string_view taken = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return taken;
}

bool IsNumber(std::string_view word) {
  return !word.empty() && word.size() <= 6 && std::ranges::all_of(word, [](char c) { return c >= '0' && c <= '9'; });
}

bool FitsPart(std::string_view part, const std::string &word) {
  if (part == "*")
    return true;
  if (part == "#")
    return IsNumber(word);
  while (!part.empty())
    if (TakeUpTo(part, '|') == word)
      return true;
  return false;
}

bool FitsForm(std::string_view form, const std::vector<std::string> &words) {
  for (const std::string &word : words) {
    const std::string_view part = TakeUpTo(form, ' ');
    if (part == "...")
      return true;
    if (part.empty() || !FitsPart(part, word))
      return false;
  }
  return form.empty() || form == "...";
}

std::string Complain(const ScriptStep &step, const std::string &problem) {
  return "line " + std::to_string(step.line) + ": " + problem + ": " + step.text;
}

// The forms that begin like the step, to show what was possible.
std::string DescribeForms(const std::string &verb) {
  std::string text;
  for (const StepForm &each : forms)
    if (std::string_view form = each.form; TakeUpTo(form, ' ') == verb)
      text.append(text.empty() ? " (expected: " : "; ").append(each.form);
  return text.empty() ? text : text + ")";
}

} // namespace

ScriptResult ParseScript(std::string_view text) {
  ScriptResult result;
  for (size_t line = 1; !text.empty(); ++line) {
    ScriptStep step;
    step.line = line;
    step.text = TakeUpTo(text, '\n');
    if (!SplitWords(step.text, step.words)) {
      result.error = Complain(step, "a double quote is left open");
      return result;
    }
    if (step.words.empty())
      continue;
    const auto form =
        std::ranges::find_if(forms, [&](const StepForm &each) { return FitsForm(each.form, step.words); });
    if (form == forms.end()) {
      result.error = Complain(step, "there is no such step") + DescribeForms(step.words.front());
      return result;
    }
    step.kind = form->kind;
    result.steps.push_back(std::move(step));
  }
  return result;
}

ScriptResult ReadScript(const std::string &path) {
  if (!kit::Exists(path))
    return {.steps = {}, .error = "there is no script " + path};
  const kit::FileContent content = kit::ReadFile(path);
  if (!content.error.empty())
    return {.steps = {}, .error = "the script cannot be read: " + content.error};
  ScriptResult result = ParseScript(content.bytes);
  if (!result.error.empty())
    result.error = path + ", " + result.error;
  return result;
}

} // namespace host
