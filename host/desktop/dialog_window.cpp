#include "host/desktop/dialog_window.h"

#include "host/desktop/dialog_layout.h"
#include "host/desktop/keyboard_focus.h"
#include "host/desktop/window_events.h"
#include "host/desktop/window_texts.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/listbox.h>
#include <wx/radiobut.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/utils.h>

#include <algorithm>
#include <utility>

namespace desktop {

namespace {

using host::ActionResult;
using host::DialogItem;
using host::ItemKind;

constexpr int firstControlId = wxID_HIGHEST + 100;

wxWindow *MakeButton(wxWindow *parent, int id, const DialogItem &item) {
  return new wxButton(parent, id, ToWx(item.text));
}
wxWindow *MakeText(wxWindow *parent, int id, const DialogItem &item) {
  auto *text = new wxTextCtrl(parent, id, ToWx(item.text), wxDefaultPosition, wxDefaultSize,
                              item.IsReadOnly() ? wxTE_READONLY : 0);
  if (item.kind == ItemKind::PathBox)
    text->AutoCompleteFileNames();
  return text;
}

// Whether the control does not use Return itself. The text box of a grid's cell is a child of the grid.
bool LeavesReturn(const wxWindow *control) {
  const auto *parent = control ? dynamic_cast<const wxDialog *>(control->GetParent()) : nullptr;
  return parent && (dynamic_cast<const wxTextCtrl *>(control) || dynamic_cast<const wxRadioButton *>(control) ||
                    dynamic_cast<const wxCheckBox *>(control));
}

} // namespace

DialogWindow::DialogWindow(wxWindow *parent, DialogSnapshot first, DialogActions &sink)
    : wxDialog(parent, wxID_ANY, ToWx(first.title), wxDefaultPosition, wxDefaultSize, wxDEFAULT_DIALOG_STYLE),
      snapshot(std::move(first)), actions(sink) {
  NoteEvent("opened", snapshot.title);
  // The model decides what Escape does.
  SetEscapeId(wxID_NONE);
  MakeControls();
  PlaceControls();
  ShowSnapshot(snapshot);
  CentreOnParent();
  if (wxWindow *control = FindControl(snapshot.focus))
    control->SetFocus();
  else if (grid)
    grid->SetFocus();
  Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent &event) {
    event.Veto();
    Send([](host::DialogModel &dialog) { return dialog.CloseFrame(); });
  });
  NoteActivation(*this);
  // The focused control may have become insensitive while another window was active.
  Bind(wxEVT_CHILD_FOCUS, [this](wxChildFocusEvent &event) {
    lastFocused = event.GetWindow();
    event.Skip();
  });
  Bind(wxEVT_ACTIVATE, [this](wxActivateEvent &event) {
    if (event.GetActive() && lastFocused && !lastFocused->IsEnabled())
      CallAfter([this] { KeepFocus(); });
    event.Skip();
  });
  Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent &event) {
    if (event.GetKeyCode() == WXK_ESCAPE && event.GetModifiers() == wxMOD_NONE)
      static_cast<void>(Press(snapshot.cancelItem));
    else if (event.GetKeyCode() == WXK_RETURN && LeavesReturn(FindFocus()))
      // The toolkit forgets a default button that was insensitive at some time.
      static_cast<void>(Press(snapshot.defaultItem));
    else if (!grid || event.GetModifiers() != wxMOD_ALT || !PressByKey(event.GetKeyCode()))
      event.Skip();
  });
}

// Group boxes first, so that they lie below their controls; the rest in tab order.
void DialogWindow::MakeControls() {
  for (const bool framesFirst : {true, false})
    for (const kit::DialogControl &control : snapshot.layout.controls) {
      const DialogItem *item = FindItem(static_cast<int32_t>(control.id) - kit::firstItemId);
      if (!item || item->isGroupBox != framesFirst)
        continue;
      wxWindow *made = MakeControl(*item);
      if (!made)
        continue;
      controls[item->number] = made;
      Connect(*item, made);
    }
  if (auto *button = dynamic_cast<wxButton *>(FindControl(snapshot.defaultItem)))
    button->SetDefault();
}

wxWindow *DialogWindow::MakeControl(const DialogItem &item) {
  const int id = firstControlId + item.number;
  switch (item.kind) {
  case ItemKind::Button:
    return item.isGroupBox ? new wxStaticBox(this, id, " " + ToWx(item.text) + " ") : MakeButton(this, id, item);
  case ItemKind::Label:
    return new wxStaticText(this, id, ToWx(item.text));
  case ItemKind::CheckBox:
    return new wxCheckBox(this, id, ToWx(item.text));
  case ItemKind::Radio:
    return MakeRadio(item);
  case ItemKind::PopUp:
    return new wxChoice(this, id);
  case ItemKind::List:
    return new wxListBox(this, id, wxDefaultPosition, wxDefaultSize, 0, nullptr, wxLB_SINGLE | wxLB_NEEDED_SB);
  case ItemKind::TextBox:
  case ItemKind::PathBox:
    return MakeText(this, id, item);
  case ItemKind::GridFrame:
    grid = new ParameterGrid(this,
                             {.select =
                                  [this](host::GridSelection place) {
                                    Send([place](host::DialogModel &dialog) { return dialog.SelectInGrid(place); });
                                  },
                              .edit =
                                  [this](int32_t row, int32_t cell, const std::string &value) {
                                    Send([=](host::DialogModel &dialog) { return dialog.EditGrid(row, cell, value); });
                                  }});
    return grid;
  default:
    return nullptr;
  }
}

wxWindow *DialogWindow::MakeRadio(const DialogItem &item) {
  wxRadioButton *&none = noneOfGroup[item.radioGroup];
  if (!none) {
    none = new wxRadioButton(this, wxID_ANY, {}, wxDefaultPosition, wxDefaultSize, wxRB_GROUP);
    none->Hide();
  }
  return new wxRadioButton(this, firstControlId + item.number, ToWx(item.text));
}

void DialogWindow::ShowEmptyGroups() {
  for (const auto &[group, none] : noneOfGroup)
    if (std::ranges::none_of(snapshot.items, [number = group](const DialogItem &item) {
          return item.kind == ItemKind::Radio && item.radioGroup == number && item.state != 0;
        }))
      none->SetValue(true);
}

void DialogWindow::Connect(const DialogItem &item, wxWindow *control) {
  const int32_t number = item.number;
  control->Bind(wxEVT_BUTTON, [this, number](wxCommandEvent &) {
    if (grid)
      grid->Commit();
    Send([number](host::DialogModel &dialog) { return dialog.Click(number); });
  });
  control->Bind(wxEVT_CHECKBOX, [this, number](wxCommandEvent &) { SendSwitch(number); });
  control->Bind(wxEVT_RADIOBUTTON, [this, number](wxCommandEvent &) { SendSwitch(number); });
  if (item.HasText())
    control->Bind(wxEVT_TEXT, [this, number](wxCommandEvent &) { SendText(number); });
  control->Bind(wxEVT_LISTBOX, [this, number](wxCommandEvent &event) { SendChoice(number, event.GetSelection()); });
  control->Bind(wxEVT_CHOICE, [this, number](wxCommandEvent &event) { SendChoice(number, event.GetSelection()); });
  control->Bind(wxEVT_LISTBOX_DCLICK, [this, number](wxCommandEvent &) {
    Send([number](host::DialogModel &dialog) { return dialog.DoubleClick(number); });
  });
}

void DialogWindow::PlaceControls() {
  const DialogUnits units = MeasureUnits(*this, snapshot, controls);
  for (const auto &[number, control] : controls)
    if (const DialogItem *item = FindItem(number))
      control->SetSize(PlaceItem(units, *item, *control));
  SetClientSize(units.Size(snapshot.layout.place));
}

void DialogWindow::Send(DialogActions::Action action) {
  if (isShowing)
    return;
  ++sent;
  actions.Post(std::move(action));
}

void DialogWindow::SendText(int32_t number) {
  const std::string text = FromWx(static_cast<wxTextCtrl *>(FindControl(number))->GetValue());
  Send([number, text](host::DialogModel &dialog) { return dialog.EnterText(number, text); });
}

void DialogWindow::SendSwitch(int32_t number) {
  const auto *check = dynamic_cast<wxCheckBox *>(FindControl(number));
  const bool on = !check || check->GetValue();
  Send([number, on](host::DialogModel &dialog) { return dialog.Switch(number, on); });
}

void DialogWindow::SendChoice(int32_t number, int index) {
  if (index != wxNOT_FOUND)
    Send([number, index](host::DialogModel &dialog) { return dialog.Choose(number, index); });
}

void DialogWindow::ShowSnapshot(DialogSnapshot next) {
  snapshot = std::move(next);
  isShowing = true;
  SetTitle(ToWx(snapshot.title));
  for (const DialogItem &item : snapshot.items)
    ShowItem(item);
  if (snapshot.served == sent)
    ShowEmptyGroups();
  if (grid && snapshot.grid && snapshot.served == sent)
    grid->ShowModel(*snapshot.grid);
  isShowing = false;
  KeepFocus();
  // All actions so far are included.
  if (snapshot.served != sent)
    return;
  NoteEvent("settled", Describe());
}

// The title, the number of grid rows, and the sensitive controls by label or else by number.
std::string DialogWindow::Describe() const {
  std::string text = snapshot.title + " |";
  if (snapshot.grid)
    text.append(" rows: ").append(std::to_string(snapshot.grid->Rows().size())).append(" |");
  for (const DialogItem &item : snapshot.items)
    if (item.IsShown() && item.sensitive && !item.isGroupBox) {
      const bool hasLabel = item.kind == ItemKind::Button || item.IsSwitch();
      const std::string label = FromWx(wxStripMenuCodes(ToWx(item.text)));
      text.append(" ").append(hasLabel ? label : "#" + std::to_string(item.number)).append(" |");
    }
  return text;
}

// A grid does not pass on the access keys of the buttons beside it.
bool DialogWindow::PressByKey(int key) {
  for (const auto &[number, control] : controls) {
    const auto *button = dynamic_cast<wxButton *>(control);
    const int at = button ? button->GetLabel().Find('&') : wxNOT_FOUND;
    if (at != wxNOT_FOUND && wxToupper(button->GetLabel()[static_cast<size_t>(at) + 1]) == key)
      return Press(number) == ActionResult::Done;
  }
  return false;
}

// A window in which no control has the focus gets no keys.
void DialogWindow::KeepFocus() {
  if (!IsActive() || HasFocusedControl(*this))
    return;
  for (wxWindow *next : {static_cast<wxWindow *>(grid), FindControl(snapshot.focus), FindControl(snapshot.defaultItem),
                         FindControl(snapshot.cancelItem)})
    if (next && next->IsEnabled() && next->IsShown()) {
      next->SetFocus();
      return;
    }
}

void DialogWindow::ShowItem(const DialogItem &item) {
  wxWindow *control = FindControl(item.number);
  if (!control)
    return;
  control->Show(item.IsShown());
  control->Enable(item.sensitive);
  ShowValue(item, control);
}

void DialogWindow::ShowValue(const DialogItem &item, wxWindow *control) {
  // The user has acted since; a snapshot that includes it will follow.
  if (snapshot.served != sent)
    return;
  if (auto *text = dynamic_cast<wxTextCtrl *>(control)) {
    if (const wxString value = ToWx(item.text); text->GetValue() != value) {
      text->ChangeValue(value);
      text->SetInsertionPointEnd();
    }
  } else if (auto *choices = dynamic_cast<wxItemContainer *>(control)) {
    wxArrayString labels;
    for (const std::string &label : item.labels)
      labels.Add(ToWx(label));
    if (choices->GetStrings() != labels)
      choices->Set(labels);
    if (choices->GetSelection() != item.state)
      choices->SetSelection(item.state);
  } else if (auto *radio = dynamic_cast<wxRadioButton *>(control)) {
    if (item.state && !radio->GetValue())
      radio->SetValue(true);
  } else if (auto *check = dynamic_cast<wxCheckBox *>(control)) {
    check->SetValue(item.state != 0);
  } else if (item.kind == ItemKind::Label && control->GetLabel() != ToWx(item.text)) {
    control->SetLabel(ToWx(item.text));
  }
}

void DialogWindow::End() { EndModal(wxID_OK); }

const DialogItem *DialogWindow::FindItem(int32_t number) const {
  const auto found = std::ranges::find(snapshot.items, number, &DialogItem::number);
  return found == snapshot.items.end() ? nullptr : &*found;
}

wxWindow *DialogWindow::FindControl(int32_t number) const {
  const auto found = controls.find(number);
  return found == controls.end() ? nullptr : found->second;
}

} // namespace desktop
