// Writes a line for each visible change into the file or pipe that VLXSLT_WINDOW_EVENTS names, so that tests can wait
// for events instead of sleeping.
#ifndef HOST_DESKTOP_WINDOW_EVENTS_H
#define HOST_DESKTOP_WINDOW_EVENTS_H

#include <string_view>

class wxTopLevelWindow;

namespace desktop {

// Does nothing without VLXSLT_WINDOW_EVENTS. From any thread.
void NoteEvent(std::string_view what, std::string_view detail = {});
// Writes "active" and the title whenever the window becomes the active one.
void NoteActivation(wxTopLevelWindow &window);

} // namespace desktop

#endif
