#include "host/desktop/shown_dialog.h"

#include "host/desktop/dialog_window.h"
#include "host/desktop/top_window.h"
#include "host/desktop/ui_thread.h"
#include "host/desktop/window_texts.h"

namespace desktop {

// Each action works on a control, then carries out on the model what the control reported.
class WindowDriver final : public host::DialogDriver {
public:
  explicit WindowDriver(ShownDialog &shownDialog) : shown(shownDialog) {}

  host::ActionResult Click(int32_t item) override {
    return Act([item](DialogWindow &window) { return window.Press(item); });
  }
  host::ActionResult DoubleClick(int32_t item) override {
    return Act([item](DialogWindow &window) { return window.DoubleClick(item); });
  }
  host::ActionResult EnterText(int32_t item, const std::string &text) override {
    return Act([item, &text](DialogWindow &window) { return window.Type(item, text); });
  }
  host::ActionResult Choose(int32_t item, int32_t index) override {
    return Act([item, index](DialogWindow &window) { return window.Choose(item, index); });
  }
  host::ActionResult Switch(int32_t item, bool on) override {
    return Act([item, on](DialogWindow &window) { return window.Turn(item, on); });
  }
  host::ActionResult SelectInGrid(host::GridSelection place) override {
    return Act([place](DialogWindow &window) { return window.SelectInGrid(place); });
  }
  host::ActionResult EditGrid(int32_t row, int32_t cell, const std::string &value) override {
    return Act([row, cell, &value](DialogWindow &window) { return window.EditGrid(row, cell, value); });
  }
  host::ActionResult CloseFrame() override {
    return Act([](DialogWindow &window) { return window.CloseFrame(); });
  }

  bool IsOpen() override { return shown.model.IsOpen(); }
  int32_t Number() override { return shown.model.Number(); }
  std::string Title() override {
    return AskWindows([this] { return FromWx(shown.window->GetTitle()); });
  }
  std::optional<host::DialogItem> Look(int32_t item) override {
    return AskWindows([this, item] { return shown.window->Look(item); });
  }
  std::optional<host::GridModel> LookAtGrid() override {
    return AskWindows([this]() -> std::optional<host::GridModel> {
      const ParameterGrid *grid = shown.window->Grid();
      return grid ? std::optional(grid->Look()) : std::nullopt;
    });
  }

private:
  template <class Body> host::ActionResult Act(Body body) {
    const host::ActionResult done = AskWindows([&] { return body(*shown.window); });
    const host::ActionResult served = shown.ServeWaiting();
    return done == host::ActionResult::Done ? served : done;
  }

  ShownDialog &shown;
};

ShownDialog::ShownDialog(host::DialogModel &dialog) : model(dialog) {
  // Does not wait: ShowModal returns only when the window closes.
  PostToWindows([this, snapshot = TakeSnapshot(model, served)] {
    {
      DialogWindow shown(TopWindow(), snapshot, actions);
      const InnermostWindow innermost(&shown);
      window = &shown;
      shown.ShowModal();
      window = nullptr;
    }
    ChangeShared([this] { isGone = true; });
  });
}

ShownDialog::~ShownDialog() {
  PostToWindows([this] { window->End(); });
  WaitForWindows([this] { return isGone; });
}

host::ActionResult ShownDialog::Serve(const DialogActions::Action &action) {
  const host::ActionResult result = action(model);
  ++served;
  if (model.IsOpen())
    PostToWindows([this, snapshot = TakeSnapshot(model, served)] { window->ShowSnapshot(snapshot); });
  return result;
}

bool ShownDialog::ServeNext() {
  const DialogActions::Action action = actions.Take();
  if (action)
    static_cast<void>(Serve(action));
  return action != nullptr;
}

host::ActionResult ShownDialog::ServeWaiting() {
  host::ActionResult result = host::ActionResult::Done;
  while (model.IsOpen()) {
    const DialogActions::Action action = actions.TakeWaiting();
    if (!action)
      break;
    result = Serve(action);
  }
  return result;
}

std::unique_ptr<host::DialogDriver> ShownDialog::MakeDriver() { return std::make_unique<WindowDriver>(*this); }

} // namespace desktop
