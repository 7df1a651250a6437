// A client's dialog as a native window: built once from a picture, shown anew from later ones. What a person does goes
// to the model's thread as actions; nothing is decided here. The window stays until it is told that the dialog ended.
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
  DialogWindow(wxWindow *parent, DialogPicture picture, DialogActions &actions);

  void ShowPicture(DialogPicture picture);
  // The model is closed.
  void End();

  // What a script does in place of a person: each works the control itself and has it report, as a hand would, and is
  // refused where a hand would be.
  [[nodiscard]] host::ActionResult Press(int32_t item);
  [[nodiscard]] host::ActionResult DoubleClick(int32_t item);
  [[nodiscard]] host::ActionResult Type(int32_t item, const std::string &text);
  [[nodiscard]] host::ActionResult Choose(int32_t item, int32_t index);
  [[nodiscard]] host::ActionResult Turn(int32_t item, bool on);
  [[nodiscard]] host::ActionResult SelectInGrid(host::GridSelection place);
  [[nodiscard]] host::ActionResult EditGrid(int32_t row, int32_t cell, const std::string &value);
  [[nodiscard]] host::ActionResult CloseFrame();
  // The item as it can be seen now; nothing when there is no such one.
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
  // Why a hand could not work the control, or Done.
  [[nodiscard]] host::ActionResult CheckReach(int32_t item) const;

  DialogPicture picture;
  DialogActions &actions;
  size_t sent = 0;
  bool isShowing = false; // the controls change because the model did, not because of a person
  std::map<int32_t, wxWindow *> controls;
  // The toolkit wants one radio button of a group to be on; a hidden one is, where the model has none.
  std::map<int32_t, wxRadioButton *> noneOfGroup;
  ParameterGrid *grid = nullptr;
  wxWindow *lastFocused = nullptr; // of the controls, which live as long as this
};

} // namespace desktop

#endif
