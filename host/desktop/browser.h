// The default browser, for any kind of file; other programs show a file by its type. Windows' thread only.
#ifndef HOST_DESKTOP_BROWSER_H
#define HOST_DESKTOP_BROWSER_H

#include <string>

namespace desktop {

// False when no program can be started.
[[nodiscard]] bool OpenInBrowser(const std::string &path);

} // namespace desktop

#endif
