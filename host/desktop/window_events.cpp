#include "host/desktop/window_events.h"

#include "host/desktop/window_texts.h"

#include <wx/toplevel.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace desktop {

namespace {

std::FILE *OpenEvents() {
  const char *path = std::getenv("VLXSLT_WINDOW_EVENTS");
  return path && *path ? std::fopen(path, "a") : nullptr;
}

} // namespace

void NoteEvent(std::string_view what, std::string_view detail) {
  static std::FILE *const events = OpenEvents();
  if (!events)
    return;
  std::string line(what);
  if (!detail.empty())
    line.append(" ").append(detail);
  line += '\n';
  // One write per line, so that lines of different threads do not mix.
  std::fwrite(line.data(), 1, line.size(), events);
  std::fflush(events);
}

void NoteActivation(wxTopLevelWindow &window) {
  window.Bind(wxEVT_ACTIVATE, [&window](wxActivateEvent &event) {
    if (event.GetActive())
      NoteEvent("active", FromWx(window.GetTitle()));
    event.Skip();
  });
}

} // namespace desktop
