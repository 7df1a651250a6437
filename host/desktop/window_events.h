// A line for everything that a person would notice, into the file or pipe that VLXSLT_WINDOW_EVENTS names. For whoever
// watches the windows from outside, a test above all: it can wait for what happens instead of for time to pass.
#ifndef HOST_DESKTOP_WINDOW_EVENTS_H
#define HOST_DESKTOP_WINDOW_EVENTS_H

#include <string_view>

class wxTopLevelWindow;

namespace desktop {

// Does nothing when nobody watches. From any thread.
void NoteEvent(std::string_view what, std::string_view detail = {});
// "active" and the title whenever the window gets the keys.
void NoteActivation(wxTopLevelWindow &window);

} // namespace desktop

#endif
