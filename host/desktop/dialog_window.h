// A client's dialog as a native window: built from the first snapshot, updated from later ones. What the user does goes
// to the model's thread as actions; nothing is decided here. The window stays open until End.
#ifndef HOST_DESKTOP_DIALOG_WINDOW_H
#define HOST_DESKTOP_DIALOG_WINDOW_H

#include "host/desktop/dialog_snapshot.h"
#include "host/desktop/parameter_grid.h"

#include <wx/dialog.h>
#include <wx/radiobut.h>

#include <map>
#include <string>

namespace desktop {

class DialogWindow : public wxDialog {
public:
  // `actions` must outlive the window.
  DialogWindow(wxWindow *parent, DialogSnapshot snapshot, DialogActions &actions);

  void ShowSnapshot(DialogSnapshot snapshot);
  // The model is closed.
  void End();

  // For scripts: each works on the control itself and sends the control's event. Refused where the user could not do
  // it.
  [[nodiscard]] host::ActionResult Press(int32_t item);
  [[nodiscard]] host::ActionResult DoubleClick(int32_t item);
  [[nodiscard]] host::ActionResult Type(int32_t item, const std::string &text);
  [[nodiscard]] host::ActionResult Choose(int32_t item, int32_t index);
  [[nodiscard]] host::ActionResult Turn(int32_t item, bool on);
  [[nodiscard]] host::ActionResult SelectInGrid(host::GridSelection place);
  [[nodiscard]] host::ActionResult EditGrid(int32_t row, int32_t cell, const std::string &value);
  [[nodiscard]] host::ActionResult CloseFrame();
  // The item as the window shows it; nothing when there is no such item.
  [[nodiscard]] std::optional<host::DialogItem> Look(int32_t item) const;
  [[nodiscard]] const ParameterGrid *Grid() const { return grid; }

private:
  void MakeControls();
  [[nodiscard]] wxWindow *MakeControl(const host::DialogItem &item);
  [[nodiscard]] wxWindow *MakeRadio(const host::DialogItem &item);
  void ShowEmptyGroups();
  void KeepFocus();
  [[nodiscard]] std::string Describe() const;
  [[nodiscard]] bool PressByKey(int key);
  void Connect(const host::DialogItem &item, wxWindow *control);
  void PlaceControls();
  void ShowItem(const host::DialogItem &item);
  void ShowValue(const host::DialogItem &item, wxWindow *control);
  void Send(DialogActions::Action action);
  void SendText(int32_t number);
  void SendSwitch(int32_t number);
  void SendChoice(int32_t number, int index);
  [[nodiscard]] const host::DialogItem *FindItem(int32_t number) const;
  [[nodiscard]] wxWindow *FindControl(int32_t number) const;
  // Why the user could not work the control, or Done.
  [[nodiscard]] host::ActionResult CheckReach(int32_t item) const;

  DialogSnapshot snapshot;
  DialogActions &actions;
  size_t sent = 0;
  bool isShowing = false; // the controls change because of a snapshot, not because of the user
  std::map<int32_t, wxWindow *> controls;
  // The toolkit needs one radio button of a group to be on: a hidden one, while the model has none.
  std::map<int32_t, wxRadioButton *> noneOfGroup;
  ParameterGrid *grid = nullptr;
  wxWindow *lastFocused = nullptr; // of the controls, which live as long as this
};

} // namespace desktop

#endif
