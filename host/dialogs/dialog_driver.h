// Drives an open dialog in place of a person, for scripts: what can be done to it, and what it shows. ModelDriver works
// on the model itself; the desktop has one that works on the controls of the window. Host's thread only.
#ifndef HOST_DIALOGS_DIALOG_DRIVER_H
#define HOST_DIALOGS_DIALOG_DRIVER_H

#include "host/dialogs/dialog_model.h"

#include <optional>
#include <string>

namespace host {

class DialogDriver {
public:
  virtual ~DialogDriver() = default;

  [[nodiscard]] virtual ActionResult Click(int32_t item) = 0;
  [[nodiscard]] virtual ActionResult DoubleClick(int32_t item) = 0;
  [[nodiscard]] virtual ActionResult EnterText(int32_t item, const std::string &text) = 0;
  [[nodiscard]] virtual ActionResult Choose(int32_t item, int32_t index) = 0;
  [[nodiscard]] virtual ActionResult Switch(int32_t item, bool on) = 0;
  [[nodiscard]] virtual ActionResult SelectInGrid(GridSelection place) = 0;
  [[nodiscard]] virtual ActionResult EditGrid(int32_t row, int32_t cell, const std::string &value) = 0;
  [[nodiscard]] virtual ActionResult CloseFrame() = 0;

  [[nodiscard]] virtual bool IsOpen() = 0;
  [[nodiscard]] virtual int32_t Number() = 0;
  [[nodiscard]] virtual std::string Title() = 0;
  // Nothing when the dialog has no such item, or no grid.
  [[nodiscard]] virtual std::optional<DialogItem> Look(int32_t item) = 0;
  [[nodiscard]] virtual std::optional<GridModel> LookAtGrid() = 0;
};

class ModelDriver final : public DialogDriver {
public:
  // The dialog must outlive the driver.
  explicit ModelDriver(DialogModel &worked) : dialog(worked) {}

  [[nodiscard]] ActionResult Click(int32_t item) override { return dialog.Click(item); }
  [[nodiscard]] ActionResult DoubleClick(int32_t item) override { return dialog.DoubleClick(item); }
  [[nodiscard]] ActionResult EnterText(int32_t item, const std::string &text) override {
    return dialog.EnterText(item, text);
  }
  [[nodiscard]] ActionResult Choose(int32_t item, int32_t index) override { return dialog.Choose(item, index); }
  [[nodiscard]] ActionResult Switch(int32_t item, bool on) override { return dialog.Switch(item, on); }
  [[nodiscard]] ActionResult SelectInGrid(GridSelection place) override { return dialog.SelectInGrid(place); }
  [[nodiscard]] ActionResult EditGrid(int32_t row, int32_t cell, const std::string &value) override {
    return dialog.EditGrid(row, cell, value);
  }
  [[nodiscard]] ActionResult CloseFrame() override { return dialog.CloseFrame(); }

  [[nodiscard]] bool IsOpen() override { return dialog.IsOpen(); }
  [[nodiscard]] int32_t Number() override { return dialog.Number(); }
  [[nodiscard]] std::string Title() override { return dialog.Title(); }
  [[nodiscard]] std::optional<DialogItem> Look(int32_t item) override {
    const DialogItem *found = dialog.Find(item);
    return found ? std::optional(*found) : std::nullopt;
  }
  [[nodiscard]] std::optional<GridModel> LookAtGrid() override {
    return dialog.Grid() ? std::optional(*dialog.Grid()) : std::nullopt;
  }

private:
  DialogModel &dialog;
};

} // namespace host

#endif
