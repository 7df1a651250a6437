// Replies as text for people and as JSON for programs.
#ifndef HOST_CLI_PRINTING_H
#define HOST_CLI_PRINTING_H

#include "host/session.h"
#include "kit/vdk.h"

#include <string>
#include <vector>

namespace cli {

// One value a line; what is nested is indented.
[[nodiscard]] std::string FormatReply(const V_TypedValsT &reply);
// One object: the reply and what happened while it was made.
[[nodiscard]] std::string FormatJson(const V_TypedValsT &reply, const host::SessionRecord &record);
// Fields of one line, with a tab between them. Tabs and line ends in a field are written as \t, \n and \r, and a
// backslash is doubled, so that every line can be taken apart again.
[[nodiscard]] std::string FormatFields(const std::vector<std::string> &fields);

// To standard output; false when it cannot take it.
[[nodiscard]] bool Print(const std::string &text);

} // namespace cli

#endif
