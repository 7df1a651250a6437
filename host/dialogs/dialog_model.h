// One dialog as it stands, without a window: built from the client's template and item table, changed by the client
// through properties and by a person through a front. A person can do here what a window would let them do and nothing
// else. Owned by DialogHost; a front shows it and drives it while it is open. Host's thread only.
#ifndef HOST_DIALOGS_DIALOG_MODEL_H
#define HOST_DIALOGS_DIALOG_MODEL_H

#include "host/dialogs/dialog_action.h"
#include "host/dialogs/grid_model.h"
#include "kit/dialog_resource.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace host {

enum class ItemKind : uint16_t {
  GridFrame = 1,
  Button = 2, // a push button, or with first state 1 a group box
  Label = 4,
  CheckBox = 5,
  PopUp = 6,
  TextBox = 9,
  Radio = 10,
  Grid = 17, // made at run time
  List = 1008,
  PathBox = 1009,
};

struct DialogItem {
  int32_t number = 0;
  ItemKind kind = ItemKind::Label;
  bool isGroupBox = false;
  std::optional<kit::DialogControl> control; // nothing for an item that is made at run time
  int32_t radioGroup = 0;                    // radio buttons of one group exclude each other

  int32_t state = 0; // on or off; index of a list or pop-up, -1 for none
  std::string text;
  std::vector<std::string> labels;
  bool sensitive = true;
  bool visible = true;
  bool reportsDoubleClick = false;

  // Visible, and of a size that can be seen.
  [[nodiscard]] bool IsShown() const;
  [[nodiscard]] bool IsReadOnly() const;
  [[nodiscard]] bool HasText() const { return kind == ItemKind::TextBox || kind == ItemKind::PathBox; }
  [[nodiscard]] bool HasChoices() const { return kind == ItemKind::List || kind == ItemKind::PopUp; }
  [[nodiscard]] bool IsSwitch() const { return kind == ItemKind::Radio || kind == ItemKind::CheckBox; }
  // The text of a box or label, the chosen label of a list or pop-up.
  [[nodiscard]] std::string ShownText() const;
};

class DialogModel {
public:
  // Carries an event to the client and returns when it has been served.
  using EventSink = std::function<void(int32_t dialogNumber, int32_t item)>;

  // Null when template and table do not fit each other.
  [[nodiscard]] static std::unique_ptr<DialogModel> Make(kit::DialogTemplate dialogTemplate,
                                                         const kit::DialogItemTable &table);

  // For everyone.
  [[nodiscard]] const kit::DialogTemplate &Template() const { return layout; }
  [[nodiscard]] const std::string &Title() const { return title; }
  [[nodiscard]] const std::vector<DialogItem> &Items() const { return items; }
  [[nodiscard]] const DialogItem *Find(int32_t number) const;
  [[nodiscard]] int32_t DefaultItem() const { return defaultItem; }
  [[nodiscard]] int32_t CancelItem() const { return cancelItem; }
  // The item that a person acted on last, at first the one that the table names.
  [[nodiscard]] int32_t Focus() const { return focus; }
  [[nodiscard]] int32_t Number() const { return number; }
  [[nodiscard]] bool IsOpen() const { return open; }
  [[nodiscard]] bool ServesDoubleClick() const { return doubleClick; }
  // Null until the client made one.
  [[nodiscard]] GridModel *Grid() const { return grid.get(); }

  // For a front: what a person does. Each serves its event before it returns; IsOpen says whether the dialog went away.
  [[nodiscard]] ActionResult Click(int32_t itemNumber);
  // On the chosen entry of a list. Unless the client keeps the dialog up, the default button follows.
  [[nodiscard]] ActionResult DoubleClick(int32_t itemNumber);
  [[nodiscard]] ActionResult EnterText(int32_t itemNumber, const std::string &text);
  [[nodiscard]] ActionResult Choose(int32_t itemNumber, int32_t index);
  [[nodiscard]] ActionResult Switch(int32_t itemNumber, bool on);
  [[nodiscard]] ActionResult SelectInGrid(GridSelection place);
  [[nodiscard]] ActionResult EditGrid(int32_t row, int32_t cell, const std::string &value);
  [[nodiscard]] ActionResult CloseFrame();

  // For the host, on behalf of the client.
  void SetTitle(const std::string &text) { title = text; }
  void SetState(int32_t itemNumber, int32_t state);
  void SetText(int32_t itemNumber, const std::string &text);
  // Nothing is chosen afterwards.
  void SetLabels(int32_t itemNumber, std::vector<std::string> labels);
  void SetSensitive(int32_t itemNumber, bool on);
  void SetVisible(int32_t itemNumber, bool on);
  void SetReportsDoubleClick(int32_t itemNumber, bool on);
  void MakeGrid(int32_t itemNumber, GridModel made);
  void KeepUp() { keptUp = true; }

  // Opens it under a number of the client's and gives the initialisation notice.
  void Begin(int32_t dialogNumber, EventSink eventSink);

private:
  DialogModel() = default;
  [[nodiscard]] bool AddItems(const kit::DialogItemTable &table);
  void GroupRadios();
  [[nodiscard]] DialogItem *Reach(int32_t itemNumber);
  // Why a person cannot act on the item now, or Done.
  [[nodiscard]] ActionResult CheckReach(const DialogItem *item) const;
  // Runs `body` on the item when a person can reach it, and moves the focus there.
  template <class Body> [[nodiscard]] ActionResult Act(int32_t itemNumber, Body body);
  [[nodiscard]] ActionResult TurnSwitch(const DialogItem &item, bool on);
  void Send(int32_t event);

  kit::DialogTemplate layout;
  std::vector<DialogItem> items; // by number
  int32_t defaultItem = 0;
  int32_t cancelItem = 0;
  int32_t firstFocus = 0;

  std::string title;
  int32_t focus = 0;
  int32_t number = 0;
  EventSink sink;
  bool open = false;
  bool serving = false;
  bool doubleClick = false;
  bool keptUp = false;
  int32_t gridItem = -1;
  std::unique_ptr<GridModel> grid;
};

} // namespace host

#endif
