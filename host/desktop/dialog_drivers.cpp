// The part of DialogWindow that scripts drive.
#include "host/desktop/dialog_window.h"

#include "host/desktop/window_texts.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/listbox.h>
#include <wx/radiobut.h>
#include <wx/textctrl.h>

namespace desktop {

using host::ActionResult;
using host::DialogItem;
using host::ItemKind;

namespace {

// Sends the event that the control sends after a key or a mouse button.
void Report(wxWindow &control, wxEventType type, int value) {
  wxCommandEvent event(type, control.GetId());
  event.SetEventObject(&control);
  event.SetInt(value);
  control.HandleWindowEvent(event);
}

} // namespace

ActionResult DialogWindow::CheckReach(int32_t item) const {
  const DialogItem *found = FindItem(item);
  if (!found)
    return ActionResult::NoSuchItem;
  const wxWindow *control = FindControl(item);
  if (!control || !control->IsShown() || control->GetSize().GetWidth() <= 1)
    return ActionResult::Hidden;
  return control->IsThisEnabled() ? ActionResult::Done : ActionResult::Insensitive;
}

ActionResult DialogWindow::Press(int32_t item) {
  if (const ActionResult reach = CheckReach(item); reach != ActionResult::Done)
    return reach;
  wxWindow *control = FindControl(item);
  if (const auto *check = dynamic_cast<wxCheckBox *>(control))
    return Turn(item, !check->GetValue());
  if (dynamic_cast<wxRadioButton *>(control))
    return Turn(item, true);
  if (!dynamic_cast<wxButton *>(control))
    return ActionResult::WrongKind;
  Report(*control, wxEVT_BUTTON, 0);
  return ActionResult::Done;
}

ActionResult DialogWindow::Turn(int32_t item, bool on) {
  if (const ActionResult reach = CheckReach(item); reach != ActionResult::Done)
    return reach;
  wxWindow *control = FindControl(item);
  if (auto *check = dynamic_cast<wxCheckBox *>(control)) {
    if (check->GetValue() != on) {
      check->SetValue(on);
      Report(*check, wxEVT_CHECKBOX, on);
    }
    return ActionResult::Done;
  }
  auto *radio = dynamic_cast<wxRadioButton *>(control);
  if (!radio)
    return ActionResult::WrongKind;
  if (!on) // only another one of the group turns it off
    return radio->GetValue() ? ActionResult::BadValue : ActionResult::Done;
  radio->SetValue(true);
  Report(*radio, wxEVT_RADIOBUTTON, 1);
  return ActionResult::Done;
}

ActionResult DialogWindow::Type(int32_t item, const std::string &text) {
  if (const ActionResult reach = CheckReach(item); reach != ActionResult::Done)
    return reach;
  auto *box = dynamic_cast<wxTextCtrl *>(FindControl(item));
  if (!box)
    return ActionResult::WrongKind;
  if (!box->IsEditable())
    return ActionResult::ReadOnly;
  box->SetValue(ToWx(text)); // reports by itself
  return ActionResult::Done;
}

ActionResult DialogWindow::Choose(int32_t item, int32_t index) {
  if (const ActionResult reach = CheckReach(item); reach != ActionResult::Done)
    return reach;
  wxWindow *control = FindControl(item);
  auto *choices = dynamic_cast<wxItemContainer *>(control);
  if (!choices)
    return ActionResult::WrongKind;
  if (index < 0 || static_cast<unsigned>(index) >= choices->GetCount())
    return ActionResult::BadValue;
  choices->SetSelection(index);
  Report(*control, FindItem(item)->kind == ItemKind::List ? wxEVT_LISTBOX : wxEVT_CHOICE, index);
  return ActionResult::Done;
}

ActionResult DialogWindow::DoubleClick(int32_t item) {
  if (const ActionResult reach = CheckReach(item); reach != ActionResult::Done)
    return reach;
  auto *list = dynamic_cast<wxListBox *>(FindControl(item));
  if (!list)
    return ActionResult::WrongKind;
  if (list->GetSelection() == wxNOT_FOUND)
    return ActionResult::BadValue;
  Report(*list, wxEVT_LISTBOX_DCLICK, list->GetSelection());
  return ActionResult::Done;
}

ActionResult DialogWindow::SelectInGrid(host::GridSelection place) {
  return grid ? grid->SelectPlace(place) : ActionResult::WrongKind;
}

ActionResult DialogWindow::EditGrid(int32_t row, int32_t cell, const std::string &value) {
  return grid ? grid->EditCell(row, cell, value) : ActionResult::WrongKind;
}

ActionResult DialogWindow::CloseFrame() {
  Close();
  return ActionResult::Done;
}

std::optional<DialogItem> DialogWindow::Look(int32_t item) const {
  const DialogItem *found = FindItem(item);
  if (!found)
    return std::nullopt;
  DialogItem seen = *found;
  wxWindow *control = FindControl(item);
  if (!control)
    return seen;
  seen.visible = control->IsShown();
  seen.sensitive = control->IsThisEnabled();
  if (const auto *box = dynamic_cast<wxTextCtrl *>(control))
    seen.text = FromWx(box->GetValue());
  if (const auto *radio = dynamic_cast<wxRadioButton *>(control))
    seen.state = radio->GetValue();
  if (const auto *check = dynamic_cast<wxCheckBox *>(control))
    seen.state = check->GetValue();
  if (const auto *choices = dynamic_cast<wxItemContainer *>(control)) {
    seen.state = choices->GetSelection();
    seen.labels.clear();
    for (const wxString &label : choices->GetStrings())
      seen.labels.push_back(FromWx(label));
  }
  return seen;
}

} // namespace desktop
