#include "host/desktop/dialog_picture.h"

#include <utility>

namespace desktop {

DialogPicture TakePicture(const host::DialogModel &dialog, size_t served) {
  DialogPicture picture{dialog.Template(),
                        dialog.Title(),
                        dialog.Items(),
                        dialog.DefaultItem(),
                        dialog.CancelItem(),
                        dialog.Focus(),
                        {},
                        served};
  if (dialog.Grid())
    picture.grid = *dialog.Grid();
  return picture;
}

void DialogActions::Post(Action action) {
  {
    const std::lock_guard lock(mutex);
    actions.push_back(std::move(action));
  }
  changed.notify_one();
}

DialogActions::Action DialogActions::Take() {
  std::unique_lock lock(mutex);
  changed.wait(lock, [this] { return !actions.empty(); });
  Action action = std::move(actions.front());
  actions.pop_front();
  return action;
}

DialogActions::Action DialogActions::TakeWaiting() {
  const std::lock_guard lock(mutex);
  if (actions.empty())
    return nullptr;
  Action action = std::move(actions.front());
  actions.pop_front();
  return action;
}

} // namespace desktop
