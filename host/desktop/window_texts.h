// Host strings to the toolkit's and back, and texts that several windows show.
#ifndef HOST_DESKTOP_WINDOW_TEXTS_H
#define HOST_DESKTOP_WINDOW_TEXTS_H

#include <wx/string.h>

#include <cstddef>
#include <string>

namespace desktop {

// Bytes that are no UTF-8, as old file names hold, stay readable.
[[nodiscard]] wxString ToWx(const std::string &text);
[[nodiscard]] std::string FromWx(const wxString &text);

// The home folder as "~", so that the end of a path stays in sight.
[[nodiscard]] wxString ShortenPath(const std::string &path);

} // namespace desktop

#endif
