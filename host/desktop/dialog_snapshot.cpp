#include "host/desktop/dialog_snapshot.h"

#include "host/desktop/ui_thread.h"

#include <utility>

namespace desktop {

DialogSnapshot TakeSnapshot(const host::DialogModel &dialog, size_t served) {
  DialogSnapshot snapshot{dialog.Template(),
                          dialog.Title(),
                          dialog.Items(),
                          dialog.DefaultItem(),
                          dialog.CancelItem(),
                          dialog.Focus(),
                          {},
                          served};
  if (dialog.Grid())
    snapshot.grid = *dialog.Grid();
  return snapshot;
}

void DialogActions::Post(Action action) {
  ChangeShared([&] { actions.push_back(std::move(action)); });
}

DialogActions::Action DialogActions::Take() {
  WaitForWindows([this] { return !actions.empty(); });
  return TakeWaiting();
}

DialogActions::Action DialogActions::TakeWaiting() {
  Action action;
  ChangeShared([&] {
    if (actions.empty())
      return;
    action = std::move(actions.front());
    actions.pop_front();
  });
  return action;
}

} // namespace desktop
