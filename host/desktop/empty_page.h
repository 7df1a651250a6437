// The page of a panel that has nothing to show yet: what the panel is for, and buttons for the first steps.
#ifndef HOST_DESKTOP_EMPTY_PAGE_H
#define HOST_DESKTOP_EMPTY_PAGE_H

#include <wx/string.h>

#include <functional>
#include <vector>

class wxWindow;

namespace desktop {

struct EmptyPageButton {
  wxString label;
  std::function<void()> press;
};

[[nodiscard]] wxWindow *MakeEmpty(wxWindow *parent, const wxString &title, const wxString &advice,
                                  const std::vector<EmptyPageButton> &buttons);

} // namespace desktop

#endif
