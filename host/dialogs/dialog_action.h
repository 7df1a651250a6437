// What became of something that a person did in a dialog: done, or refused because a person could not have done it.
#ifndef HOST_DIALOGS_DIALOG_ACTION_H
#define HOST_DIALOGS_DIALOG_ACTION_H

#include <string_view>

namespace host {

enum class ActionResult { Done, NotOpen, Busy, NoSuchItem, Hidden, Insensitive, ReadOnly, WrongKind, BadValue };

// "is insensitive" and the like, to follow the item's name.
[[nodiscard]] std::string_view DescribeResult(ActionResult result);

} // namespace host

#endif
