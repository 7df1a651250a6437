// The toolbar's pictures: drawn as vectors in the colour of the theme's text, so that they are sharp at every scale
// and visible on every background.
#ifndef HOST_DESKTOP_ICONS_H
#define HOST_DESKTOP_ICONS_H

#include <wx/bmpbndl.h>

namespace desktop {

enum class Icon { Open, Run, AdvancedRun, Choose, Manage, New, Stop, Program };

[[nodiscard]] wxBitmapBundle DrawIcon(Icon icon, int size = 24);

} // namespace desktop

#endif
