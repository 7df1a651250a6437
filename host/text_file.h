// Small text files that people name: configurations, scripts, requests.
#ifndef HOST_TEXT_FILE_H
#define HOST_TEXT_FILE_H

#include <optional>
#include <string>

namespace host {

// All of a regular file; nothing when it cannot be read. A pipe counts as unreadable: to open one is to wait, perhaps
// for ever, for whoever writes into it.
[[nodiscard]] std::optional<std::string> ReadTextFile(const std::string &path);

} // namespace host

#endif
