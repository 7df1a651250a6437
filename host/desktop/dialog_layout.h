// From dialog units to pixels. A unit is an eighth of the font's height and a quarter of its width; where the theme's
// text boxes and buttons are larger than the template expects, the units grow until everything fits.
#ifndef HOST_DESKTOP_DIALOG_LAYOUT_H
#define HOST_DESKTOP_DIALOG_LAYOUT_H

#include "host/desktop/dialog_snapshot.h"

#include <wx/gdicmn.h>

#include <map>

class wxWindow;

namespace desktop {

struct DialogUnits {
  double x = 1;
  double y = 1;

  [[nodiscard]] wxSize Size(const kit::DialogRectangle &place) const;
  [[nodiscard]] wxRect Rectangle(const kit::DialogRectangle &place) const;
};

[[nodiscard]] DialogUnits MeasureUnits(const wxWindow &window, const DialogSnapshot &snapshot,
                                       const std::map<int32_t, wxWindow *> &controls);
[[nodiscard]] wxRect PlaceItem(const DialogUnits &units, const host::DialogItem &item, const wxWindow &control);

} // namespace desktop

#endif
