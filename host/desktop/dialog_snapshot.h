// What crosses between the host's thread and the window of a dialog: snapshots of the model one way; the other way
// actions of the user, in order, which the host's thread carries out on the model.
#ifndef HOST_DESKTOP_DIALOG_SNAPSHOT_H
#define HOST_DESKTOP_DIALOG_SNAPSHOT_H

#include "host/dialogs/dialog_model.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace desktop {

struct DialogSnapshot {
  kit::DialogTemplate layout;
  std::string title;
  std::vector<host::DialogItem> items;
  int32_t defaultItem = 0;
  int32_t cancelItem = 0;
  int32_t focus = 0;
  std::optional<host::GridModel> grid;
  size_t served = 0; // how many of the window's actions it includes the effect of
};

[[nodiscard]] DialogSnapshot TakeSnapshot(const host::DialogModel &dialog, size_t served);

class DialogActions {
public:
  using Action = std::function<host::ActionResult(host::DialogModel &dialog)>;

  // On the windows' thread.
  void Post(Action action);
  // On the host's thread. Take waits, and gives null when the windows are gone; TakeWaiting, when nothing waits.
  [[nodiscard]] Action Take();
  [[nodiscard]] Action TakeWaiting();

private:
  std::deque<Action> actions;
};

} // namespace desktop

#endif
