// A dialog while its window is on screen. Made and used on the host's thread, where the model is; the window lives on
// its own. Modal windows nest as the client's dialogs do.
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
  // Returns when the window is gone.
  ~ShownDialog();
  ShownDialog(const ShownDialog &) = delete;
  ShownDialog &operator=(const ShownDialog &) = delete;

  // Waits for something that a person does, and carries it out. False when there are no windows any more.
  [[nodiscard]] bool ServeNext();
  // Carries out what was done already; Done when there was nothing.
  host::ActionResult ServeWaiting();
  // Works the window's controls. Must not outlive this.
  [[nodiscard]] std::unique_ptr<host::DialogHand> MakeHand();

private:
  host::ActionResult Serve(const DialogActions::Action &action);

  friend class WindowHand;
  host::DialogModel &model;
  DialogActions actions;
  size_t served = 0;
  DialogWindow *window = nullptr; // touched on the windows' thread only
  bool isGone = false;            // the window, not the windows
};

} // namespace desktop

#endif
