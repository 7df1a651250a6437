// The icons of the toolbar: vector drawings in the colour of the theme's text, for every scale and background.
#ifndef HOST_DESKTOP_ICONS_H
#define HOST_DESKTOP_ICONS_H

#include <wx/bmpbndl.h>

namespace desktop {

enum class Icon { Open, Run, AdvancedRun, Choose, Manage, New, Stop, Program };

[[nodiscard]] wxBitmapBundle DrawIcon(Icon icon, int size = 24);

} // namespace desktop

#endif
