#include "dialogs/stylesheet_params_dialog.h"

#include "dialogs/dialog_numbers.h"
#include "dialogs/item_rows.h"
#include "kit/values.h"
#include "report/messages.h"

#include <array>

namespace dialogs {

namespace {

using report::MessageId;

enum Item : int32_t { GridFrame = 0, GridItem = 1, OkButton = 2, CloseButton = 3, DeleteButton = 4 };
constexpr int32_t cellsPerParameter = 2;

struct StylesheetParamsDialog {
  V_ObjectT dialog = 0;
  std::vector<Parameter> params;
  std::string nameTitle = report::LoadMessage(MessageId::NameTitle);
  std::string expressionTitle = report::LoadMessage(MessageId::ExpressionTitle);
  V_ObjectT grid = 0;

  bool canAccept = false; // once something changed
  bool canDelete = false;
};
using State = StylesheetParamsDialog;

State &TheDialog() {
  static State state;
  return state;
}

// The text that stands for no value is no value.
std::string ValueOf(const std::string &shown) {
  return shown == report::LoadMessage(MessageId::NoValue) ? std::string() : shown;
}

std::string CellText(const State &state, int32_t row, int32_t cell) {
  return ValueOf(kit::HostString::Adopt(V_ApiGridCell(state.grid, row, cell)).Text());
}

void AddRow(const State &state, const Parameter &parameter) {
  V_StringsT titles = kit::MakeStrings({state.nameTitle, state.expressionTitle});
  V_StringsT values = kit::MakeStrings({ValueOf(parameter.name), ValueOf(parameter.expression)});
  V_ApiGridAddRow(state.grid, &titles, &values);
  V_FreeStrings(&titles);
  V_FreeStrings(&values);
}

std::vector<Parameter> ReadGrid(const State &state) {
  std::vector<Parameter> params;
  for (int32_t row = 0; row < V_ApiGridRowCount(state.grid); ++row)
    if (V_ApiGridCellCount(state.grid, row) == cellsPerParameter)
      params.push_back({CellText(state, row, 0), CellText(state, row, 1)});
  return params;
}

void AddEmptyRowAtEnd(const State &state) {
  const int32_t last = V_ApiGridRowCount(state.grid) - 1;
  if (last < 0 || !CellText(state, last, 0).empty() || !CellText(state, last, 1).empty())
    AddRow(state, {});
}

void Initialise(State &state) {
  state.grid =
      V_ApiMakeGrid(state.dialog, GridItem, GridFrame, "Parameters", report::LoadMessage(MessageId::NoValue).c_str());
  for (const Parameter &parameter : state.params)
    AddRow(state, parameter);
  AddRow(state, {});
  V_ApiKeepDialogUp(state.dialog);
}

// A cell was edited, or a place selected: what was given is `params` and one empty row behind it.
void ServeGrid(State &state) {
  std::vector<Parameter> given = state.params;
  given.emplace_back();
  const auto shows = [](const Parameter &left, const Parameter &right) {
    return left.name == ValueOf(right.name) && left.expression == ValueOf(right.expression);
  };
  state.canAccept = state.canAccept || !std::ranges::equal(ReadGrid(state), given, shows);
  int32_t cell = -1;
  state.canDelete = V_ApiGridSelection(state.grid, &cell) >= 0;
  AddEmptyRowAtEnd(state);
}

void Accept(State &state) { state.params = ReadGrid(state); }

void DeleteSelected(State &state) {
  int32_t cell = -1;
  const int32_t row = V_ApiGridSelection(state.grid, &cell);
  if (row >= 0) {
    if (cell >= 0)
      V_ApiGridSelect(state.grid, row, -1);
    V_ApiGridDeleteRow(state.grid, row);
    state.canDelete = false;
    AddEmptyRowAtEnd(state);
  }
  state.canAccept = true;
  V_ApiKeepDialogUp(state.dialog);
}

using Row = ItemRow<State>;
constexpr std::array rows = {
    Row{.item = V_ITEM_INITIALISE, .react = Initialise},
    Row{.item = GridItem, .react = ServeGrid},
    Row{.item = OkButton, .isSensitive = [](const State &state) { return state.canAccept; }, .react = Accept},
    Row{.item = DeleteButton,
        .isSensitive = [](const State &state) { return state.canDelete; },
        .react = DeleteSelected},
};

} // namespace

std::vector<Parameter> EditStylesheetParams(const std::vector<Parameter> &params) {
  State &state = TheDialog();
  state.dialog = OpenDialog("stylesheet_params");
  if (!state.dialog)
    return params;
  state.params = params;
  state.canAccept = state.canDelete = false;
  ShowItems<State>(state, rows);
  V_ApiRunDialog(stylesheetParamsDialogNumber, state.dialog);
  return state.params;
}

void ServeStylesheetParamsEvent(int32_t item) { ServeEvent<State>(TheDialog(), rows, item); }

void ForgetStylesheetParamsState() { TheDialog() = State(); }

} // namespace dialogs
