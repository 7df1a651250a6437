// What stands where there is nothing to show yet: what this place is for, and the way on.
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
