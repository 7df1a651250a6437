// Names for assistive technology, of controls that have no label of their own. Windows' thread only.
#ifndef HOST_DESKTOP_ACCESSIBLE_NAME_H
#define HOST_DESKTOP_ACCESSIBLE_NAME_H

class wxWindow;

namespace desktop {

void SetAccessibleName(wxWindow &window, const char *name);

} // namespace desktop

#endif
