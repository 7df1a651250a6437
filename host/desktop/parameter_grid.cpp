#include "host/desktop/parameter_grid.h"

#include "host/desktop/window_texts.h"

#include <algorithm>
#include <utility>

namespace desktop {

namespace {

constexpr long gridStyle = wxPG_SPLITTER_AUTO_CENTER;

// Whether the rows of `model` are those of `shown`, whatever they hold, with perhaps more behind them.
bool BeginsLike(const host::GridModel &model, const host::GridModel &shown) {
  return shown.Rows().size() <= model.Rows().size() &&
         std::equal(shown.Rows().begin(), shown.Rows().end(), model.Rows().begin(),
                    [](const host::GridRow &a, const host::GridRow &b) { return a.titles == b.titles; });
}

} // namespace

ParameterGrid::ParameterGrid(wxWindow *parent, Actions actions)
    : wxPropertyGridManager(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, gridStyle),
      onAction(std::move(actions)) {
  AddPage();
  ShowHeader(true);
  GetGrid()->SetExtraStyle(wxPG_EX_HELP_AS_TOOLTIPS);
  GetGrid()->SetVerticalSpacing(4);
  // The hint of an empty cell must differ from a value on every background.
  const wxColour text = GetGrid()->GetCellTextColour();
  const wxColour ground = GetGrid()->GetCellBackgroundColour();
  const auto between = [](unsigned char a, unsigned char b) { return static_cast<unsigned char>((a + b) / 2); };
  GetGrid()->SetCellDisabledTextColour(
      {between(text.Red(), ground.Red()), between(text.Green(), ground.Green()), between(text.Blue(), ground.Blue())});
  GetGrid()->Bind(wxEVT_CHAR, &ParameterGrid::TypeOver, this);
  Bind(wxEVT_PG_SELECTED, [this](wxPropertyGridEvent &event) {
    WatchTyping();
    if (!isShowing && event.GetProperty())
      onAction.select(PlaceOf(event.GetProperty()));
  });
  Bind(wxEVT_PG_CHANGED, [this](wxPropertyGridEvent &event) {
    const host::GridSelection place = PlaceOf(event.GetProperty());
    if (!isShowing && place.cell >= 0)
      onAction.edit(place.row, place.cell, FromWx(event.GetProperty()->GetValueAsString()));
  });
}

// A letter typed while the cell is selected replaces its value.
void ParameterGrid::TypeOver(wxKeyEvent &event) {
  const wxChar letter = event.GetUnicodeKey();
  wxTextCtrl *editor = GetGrid()->GetEditorTextCtrl();
  const bool isText = letter > WXK_SPACE && letter != WXK_DELETE && !event.ControlDown() && !event.AltDown();
  if (!isText || !editor || !editor->IsEditable()) {
    event.Skip();
    return;
  }
  editor->SetFocus();
  editor->SelectAll();
  editor->WriteText(wxString(wxUniChar(letter)));
}

// Every letter is reported at once, since it can make OK sensitive.
void ParameterGrid::WatchTyping() {
  wxTextCtrl *editor = GetGrid()->GetEditorTextCtrl();
  if (!editor)
    return;
  editor->Bind(wxEVT_TEXT, [this](wxCommandEvent &event) {
    event.Skip();
    const host::GridSelection place = PlaceOf(GetGrid()->GetSelection());
    if (!isShowing && place.cell >= 0)
      onAction.edit(place.row, place.cell, FromWx(event.GetString()));
  });
}

wxString ParameterGrid::HeadingOf(const host::GridRow &row) {
  const std::string &name = row.values.empty() ? std::string() : row.values.front();
  if (!name.empty())
    return ToWx(name);
  const bool isEmpty = std::ranges::all_of(row.values, [](const std::string &value) { return value.empty(); });
  return isEmpty ? wxString("New parameter") : wxString("(no name)");
}

void ParameterGrid::ShowModel(const host::GridModel &model) {
  isShowing = true;
  // Rows may be added while the user types in another one, whose editor must not be rebuilt.
  if (rows.empty() || !BeginsLike(model, shown))
    Rebuild(model);
  else
    AppendRows(model);
  ShowValues(model);
  shown = model;
  isShowing = false;
}

void ParameterGrid::Rebuild(const host::GridModel &model) {
  GetGrid()->Freeze();
  GetGrid()->ClearSelection();
  ClearPage(0);
  rows.clear();
  SetColumnTitle(0, ToWx(model.Header()));
  SetColumnTitle(1, wxEmptyString);
  AppendRows(model);
  GetGrid()->Thaw();
  if (wxPGProperty *chosen = PropertyAt(model.Selection()))
    GetGrid()->SelectProperty(chosen);
}

void ParameterGrid::AppendRows(const host::GridModel &model) {
  while (rows.size() < model.Rows().size()) {
    const host::GridRow &row = model.Rows()[rows.size()];
    const wxString name = wxString::Format("row%zu", rows.size());
    wxPGProperty *group = Append(new wxPropertyCategory(HeadingOf(row), name));
    rows.push_back(group);
    for (size_t cell = 0; cell < row.titles.size(); ++cell) {
      wxPGProperty *property =
          AppendIn(group, new wxStringProperty(ToWx(row.titles[cell]), wxString::Format("%s.%zu", name, cell)));
      property->SetAttribute(wxPG_ATTR_HINT, ToWx(model.NoValueText()));
    }
  }
}

void ParameterGrid::ShowValues(const host::GridModel &model) {
  for (size_t row = 0; row < rows.size(); ++row) {
    const host::GridRow &source = model.Rows()[row];
    if (const wxString heading = HeadingOf(source); rows[row]->GetLabel() != heading)
      SetPropertyLabel(rows[row], heading);
    for (unsigned cell = 0; cell < rows[row]->GetChildCount(); ++cell) {
      wxPGProperty *property = rows[row]->Item(cell);
      const wxString value = ToWx(source.values[cell]);
      const wxTextCtrl *editor = GetGrid()->GetSelection() == property ? GetGrid()->GetEditorTextCtrl() : nullptr;
      // Setting the value would move the caret while the user types.
      if (editor && editor->GetValue() == value)
        continue;
      if (property->GetValueAsString() != value)
        SetPropertyValue(property, value);
    }
  }
}

void ParameterGrid::Commit() { GetGrid()->CommitChangesFromEditor(); }

host::GridSelection ParameterGrid::PlaceOf(const wxPGProperty *property) const {
  if (!property)
    return {};
  const auto row = std::ranges::find_if(
      rows, [property](const wxPGProperty *each) { return each == property || each == property->GetParent(); });
  if (row == rows.end())
    return {};
  return {static_cast<int32_t>(row - rows.begin()),
          *row == property ? -1 : static_cast<int32_t>(property->GetIndexInParent())};
}

wxPGProperty *ParameterGrid::PropertyAt(host::GridSelection place) const {
  if (place.row < 0 || static_cast<size_t>(place.row) >= rows.size())
    return nullptr;
  wxPGProperty *row = rows[static_cast<size_t>(place.row)];
  if (place.cell < 0)
    return row;
  return static_cast<unsigned>(place.cell) < row->GetChildCount() ? row->Item(static_cast<unsigned>(place.cell))
                                                                  : nullptr;
}

host::ActionResult ParameterGrid::SelectPlace(host::GridSelection place) {
  wxPGProperty *property = PropertyAt(place);
  if (!property)
    return host::ActionResult::BadValue;
  if (!GetGrid()->SelectProperty(property, true))
    return host::ActionResult::Insensitive;
  onAction.select(PlaceOf(GetGrid()->GetSelection()));
  return host::ActionResult::Done;
}

host::ActionResult ParameterGrid::EditCell(int32_t row, int32_t cell, const std::string &value) {
  wxPGProperty *property = cell < 0 ? nullptr : PropertyAt({row, cell});
  if (!property)
    return host::ActionResult::BadValue;
  if (property->HasFlag(wxPG_PROP_READONLY))
    return host::ActionResult::ReadOnly;
  GetGrid()->SelectProperty(property, true);
  WatchTyping();
  wxTextCtrl *editor = GetGrid()->GetEditorTextCtrl();
  if (!editor)
    return host::ActionResult::Insensitive;
  editor->SetValue(ToWx(value));
  Commit();
  return host::ActionResult::Done;
}

host::GridModel ParameterGrid::Look() const {
  host::GridModel seen(shown.Header(), shown.NoValueText());
  for (const wxPGProperty *group : rows) {
    host::GridRow row;
    for (unsigned cell = 0; cell < group->GetChildCount(); ++cell) {
      row.titles.push_back(FromWx(group->Item(cell)->GetLabel()));
      row.values.push_back(FromWx(group->Item(cell)->GetValueAsString()));
    }
    seen.AddRow(std::move(row));
  }
  seen.Select(PlaceOf(GetSelection()));
  return seen;
}

} // namespace desktop
