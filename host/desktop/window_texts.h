// Conversion between UTF-8 and the toolkit's strings, and texts that several windows show.
#ifndef HOST_DESKTOP_WINDOW_TEXTS_H
#define HOST_DESKTOP_WINDOW_TEXTS_H

#include <wx/string.h>

#include <cstddef>
#include <string>

namespace desktop {

// Bytes that are not UTF-8, as in old file names, are read as Latin-1.
[[nodiscard]] wxString ToWx(const std::string &text);
[[nodiscard]] std::string FromWx(const wxString &text);

// With "~" for the home folder, so that the end of a long path stays visible.
[[nodiscard]] wxString ShortenPath(const std::string &path);

} // namespace desktop

#endif
