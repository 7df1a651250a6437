#include "host/fronts/script_front.h"

#include "host/dialogs/dialog_driver.h"
#include "kit/paths.h"

#include <algorithm>
#include <array>
#include <utility>

namespace host {

namespace {

constexpr std::array answers = {StepKind::Answer};
constexpr std::array choices = {StepKind::Choose, StepKind::Dismiss};
constexpr std::array openings = {StepKind::Dialog};
constexpr std::array acts = {StepKind::Set,           StepKind::Click,        StepKind::DoubleClick,
                             StepKind::Frame,         StepKind::GridAdd,      StepKind::GridSet,
                             StepKind::GridSelect,    StepKind::ExpectTitle,  StepKind::ExpectContent,
                             StepKind::ExpectFlag,    StepKind::ExpectLabels, StepKind::ExpectGridRow,
                             StepKind::ExpectGridRows};

constexpr std::array<std::string_view, 3> chooserNames = {"a file", "a folder", "a file to save"};

std::string_view Describe(AlertKind kind) {
  switch (kind) {
  case AlertKind::Plain:
    return "shows an alert";
  case AlertKind::OkCancel:
    return "asks for OK or Cancel";
  default:
    return "asks yes or no";
  }
}

std::string Quote(std::string_view text) { return "\"" + std::string(text) + "\""; }

std::string Differs(const std::string &what, const std::string &found, const std::string &wanted) {
  return found == wanted ? std::string() : what + " is " + Quote(found) + ", not " + Quote(wanted);
}

std::string ItemName(const ScriptStep &step, size_t word) { return "item " + step.Word(word); }

// On and off, or an index; nothing when the word is neither.
std::optional<int32_t> ReadState(const std::string &word) {
  if (word == "on" || word == "off")
    return word == "on";
  const bool isNumber = !word.empty() && word.size() <= 6 && word.find_first_not_of("0123456789") == std::string::npos;
  if (isNumber)
    return std::stoi(word);
  return word == "-1" ? std::optional(-1) : std::nullopt;
}

ActionResult SetItem(DialogDriver &dialog, int32_t number, const std::string &value) {
  const std::optional<DialogItem> item = dialog.Look(number);
  if (!item)
    return ActionResult::NoSuchItem;
  if (item->HasText())
    return dialog.EnterText(number, value);
  const std::optional<int32_t> state = ReadState(value);
  if (!state)
    return ActionResult::BadValue;
  if (item->HasChoices())
    return dialog.Choose(number, *state);
  return *state == 0 || *state == 1 ? dialog.Switch(number, *state == 1) : ActionResult::BadValue;
}

int32_t CellOf(const std::string &word) { return word == "name" ? 0 : 1; }

// Writes into the empty row at the end, as a person would.
ActionResult AddToGrid(DialogDriver &dialog, const GridModel &grid, const std::string &name,
                       const std::string &expression) {
  const std::vector<GridRow> &rows = grid.Rows();
  const auto isEmpty = [](const std::string &value) { return value.empty(); };
  if (rows.empty() || !std::ranges::all_of(rows.back().values, isEmpty))
    return ActionResult::BadValue;
  const auto last = static_cast<int32_t>(rows.size()) - 1;
  const ActionResult named = dialog.EditGrid(last, 0, name);
  return named == ActionResult::Done && !expression.empty() ? dialog.EditGrid(last, 1, expression) : named;
}

ActionResult ActInGrid(const ScriptStep &step, DialogDriver &dialog) {
  const std::optional<GridModel> grid = dialog.LookAtGrid();
  if (!grid)
    return ActionResult::WrongKind;
  switch (step.kind) {
  case StepKind::GridAdd:
    return AddToGrid(dialog, *grid, step.Word(2), step.Word(3));
  case StepKind::GridSet:
    return dialog.EditGrid(step.Number(2), CellOf(step.Word(3)), step.Word(4));
  default:
    return dialog.SelectInGrid({step.Number(2), step.words.size() > 3 ? CellOf(step.Word(3)) : -1});
  }
}

std::string ExpectGrid(const ScriptStep &step, const std::optional<GridModel> &grid) {
  if (!grid)
    return "the dialog has no grid";
  if (step.kind == StepKind::ExpectGridRows)
    return Differs("the number of rows", std::to_string(grid->Rows().size()), std::to_string(step.Number(3)));
  const int32_t row = step.Number(2);
  if (grid->CellCount(row) != 2)
    return "the grid has no row " + step.Word(2);
  const std::vector<std::string> &values = grid->Rows()[static_cast<size_t>(row)].values;
  for (const int32_t cell : {0, 1}) {
    // No value may be written as "" or as it shows.
    const std::string &wanted = step.Word(3 + static_cast<size_t>(cell));
    const std::string shown = grid->Shown(row, cell);
    if (wanted != values[static_cast<size_t>(cell)] && wanted != shown)
      return Differs(cell == 0 ? "the name" : "the expression", shown, wanted);
  }
  return {};
}

std::string ExpectContent(const ScriptStep &step, const DialogItem &item) {
  if (step.Word(2) == "text")
    return Differs("the text of " + ItemName(step, 1), item.ShownText(), step.Word(3));
  const std::optional<int32_t> wanted = ReadState(step.Word(3));
  return wanted == item.state ? std::string()
                              : Differs("the state of " + ItemName(step, 1), std::to_string(item.state), step.Word(3));
}

std::string ExpectFlag(const ScriptStep &step, const DialogItem &item) {
  const std::string &wanted = step.Word(2);
  const bool aboutSense = wanted == "sensitive" || wanted == "insensitive";
  const std::string found =
      aboutSense ? (item.sensitive ? "sensitive" : "insensitive") : (item.IsShown() ? "visible" : "hidden");
  return found == wanted ? std::string() : ItemName(step, 1) + " is " + found;
}

std::string ExpectLabels(const ScriptStep &step, const DialogItem &item) {
  const std::vector<std::string> wanted(step.words.begin() + 3, step.words.end());
  if (item.labels == wanted)
    return {};
  std::string found;
  for (const std::string &label : item.labels)
    found.append(" ").append(Quote(label));
  return "the labels of " + ItemName(step, 1) + " are" + (found.empty() ? " none" : found);
}

std::string Expect(const ScriptStep &step, DialogDriver &dialog) {
  if (step.kind == StepKind::ExpectTitle)
    return Differs("the title", dialog.Title(), step.Word(2));
  if (step.kind == StepKind::ExpectGridRow || step.kind == StepKind::ExpectGridRows)
    return ExpectGrid(step, dialog.LookAtGrid());
  const std::optional<DialogItem> item = dialog.Look(step.Number(1));
  if (!item)
    return ItemName(step, 1) + " does not exist";
  switch (step.kind) {
  case StepKind::ExpectContent:
    return ExpectContent(step, *item);
  case StepKind::ExpectFlag:
    return ExpectFlag(step, *item);
  default:
    return ExpectLabels(step, *item);
  }
}

std::string Describe(const std::string &who, ActionResult result) {
  return result == ActionResult::Done ? std::string() : who + " " + std::string(DescribeResult(result));
}

} // namespace

ScriptFront::ScriptFront(std::string scriptName, std::vector<ScriptStep> script, Front &screenFront)
    : name(std::move(scriptName)), steps(std::move(script)), screen(screenFront) {}

void ScriptFront::Fail(const std::string &problem) {
  if (failure.empty())
    failure = name + ", " + problem;
}

void ScriptFront::FailAt(const ScriptStep &step, const std::string &problem) {
  Fail("line " + std::to_string(step.line) + ": " + problem + " (step: " + step.text + ")");
}

const ScriptStep *ScriptFront::Take(std::span<const StepKind> kinds, const std::string &asked) {
  if (HasFailed())
    return nullptr;
  if (next == steps.size()) {
    Fail("line " + std::to_string(steps.empty() ? 1 : steps.back().line) + ": the script ends, but " + asked);
    return nullptr;
  }
  const ScriptStep &step = steps[next];
  if (std::ranges::find(kinds, step.kind) == kinds.end()) {
    FailAt(step, "this step does not fit: " + asked);
    return nullptr;
  }
  ++next;
  return &step;
}

Answer ScriptFront::Alert(AlertKind kind, const std::string &text) {
  const QuestionWords &words = WordsOf(kind);
  const std::string asked = "the client " + std::string(Describe(kind)) + ": " + Quote(text);
  const ScriptStep *step = Take(answers, asked);
  if (!step)
    return Answer::Decline;
  if (step->Word(1) == words.proceed)
    return Answer::Proceed;
  if (step->Word(1) != words.decline)
    FailAt(*step, "this answer does not fit: " + asked);
  return Answer::Decline;
}

std::optional<std::string> ScriptFront::ChooseFile(const FileChooser &chooser) {
  const std::string asked = "the client asks for " + std::string(chooserNames[static_cast<size_t>(chooser.kind)]) +
                            ": " + Quote(chooser.title);
  const ScriptStep *step = Take(choices, asked);
  if (!step || step->kind == StepKind::Dismiss)
    return std::nullopt;
  return kit::AbsolutePath(step->Word(1));
}

void ScriptFront::RunDialog(DialogModel &dialog) {
  const std::string asked = "dialog " + std::to_string(dialog.Number()) + " " + Quote(dialog.Title());
  const ScriptStep *opening = Take(openings, asked + " opens");
  if (!opening)
    return;
  if (opening->Number(1) != dialog.Number()) {
    FailAt(*opening, asked + " opens");
    return;
  }
  screen.PlayDialog(dialog, [&](DialogDriver &driver) {
    while (driver.IsOpen()) {
      const ScriptStep *step = Take(acts, asked + " is open and waits for an action");
      if (!step)
        return;
      if (const std::string problem = Play(*step, driver); !problem.empty())
        FailAt(*step, problem);
    }
  });
}

std::string ScriptFront::Play(const ScriptStep &step, DialogDriver &dialog) {
  switch (step.kind) {
  case StepKind::Set:
    return Describe(ItemName(step, 1), SetItem(dialog, step.Number(1), step.Word(2)));
  case StepKind::Click:
    return Describe(ItemName(step, 1), dialog.Click(step.Number(1)));
  case StepKind::DoubleClick:
    return Describe(ItemName(step, 1), dialog.DoubleClick(step.Number(1)));
  case StepKind::Frame:
    return Describe("the frame", dialog.CloseFrame());
  case StepKind::GridAdd:
  case StepKind::GridSet:
  case StepKind::GridSelect:
    return Describe("the grid", ActInGrid(step, dialog));
  default:
    return Expect(step, dialog);
  }
}

void ScriptFront::Finish() {
  if (!HasFailed() && next < steps.size())
    FailAt(steps[next], "nothing asks for this step");
}

std::unique_ptr<ScriptFront> MakeScriptFront(const std::string &path, Front &screen, std::string &error) {
  ScriptResult script = ReadScript(path);
  error = std::move(script.error);
  return error.empty() ? std::make_unique<ScriptFront>(path, std::move(script.steps), screen) : nullptr;
}

} // namespace host
