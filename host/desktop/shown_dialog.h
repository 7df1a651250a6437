// A dialog while its window is on screen. Created and used on the host's thread, where the model is; the window belongs
// to the windows' thread. Modal windows nest as the client's dialogs do.
#ifndef HOST_DESKTOP_SHOWN_DIALOG_H
#define HOST_DESKTOP_SHOWN_DIALOG_H

#include "host/desktop/dialog_snapshot.h"
#include "host/dialogs/dialog_driver.h"

#include <memory>

namespace desktop {

class DialogWindow;

class ShownDialog {
public:
  // The dialog is open and outlives this.
  explicit ShownDialog(host::DialogModel &dialog);
  // Returns when the window is closed.
  ~ShownDialog();
  ShownDialog(const ShownDialog &) = delete;
  ShownDialog &operator=(const ShownDialog &) = delete;

  // Waits for an action of the user, and carries it out. False when the windows are gone.
  [[nodiscard]] bool ServeNext();
  // Carries out the actions that are waiting; Done when there are none.
  host::ActionResult ServeWaiting();
  // A driver that works on the window's controls. Must not outlive this.
  [[nodiscard]] std::unique_ptr<host::DialogDriver> MakeDriver();

private:
  host::ActionResult Serve(const DialogActions::Action &action);

  friend class WindowDriver;
  host::DialogModel &model;
  DialogActions actions;
  size_t served = 0;
  DialogWindow *window = nullptr; // touched on the windows' thread only
  bool isGone = false;            // this window is closed
};

} // namespace desktop

#endif
