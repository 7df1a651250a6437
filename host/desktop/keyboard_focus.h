// Where the keys of a window go, as the toolkit below wx knows it: wx knows nothing of the focus inside a pop-up.
// Windows' thread only.
#ifndef HOST_DESKTOP_KEYBOARD_FOCUS_H
#define HOST_DESKTOP_KEYBOARD_FOCUS_H

class wxTopLevelWindow;

namespace desktop {

// Whether an enabled control of the window, not the window itself, gets its keys.
[[nodiscard]] bool HasFocusedControl(const wxTopLevelWindow &window);

} // namespace desktop

#endif
