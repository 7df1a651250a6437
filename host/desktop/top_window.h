// The window that new dialogs belong to: the innermost modal one, else the main one. Windows' thread only.
#ifndef HOST_DESKTOP_TOP_WINDOW_H
#define HOST_DESKTOP_TOP_WINDOW_H

class wxWindow;

namespace desktop {

// Null when no window is open.
[[nodiscard]] wxWindow *TopWindow();

// Keeps a window innermost for as long as it lives.
class InnermostWindow {
public:
  explicit InnermostWindow(wxWindow *window);
  ~InnermostWindow();
  InnermostWindow(const InnermostWindow &) = delete;
  InnermostWindow &operator=(const InnermostWindow &) = delete;
};

} // namespace desktop

#endif
