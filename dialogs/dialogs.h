// The client's dialogs, as requests open them. Each keeps its state for as long as the client is loaded. Every call
// returns when the dialog is gone; host's thread only.
#ifndef DIALOGS_DIALOGS_H
#define DIALOGS_DIALOGS_H

#include "kit/values.h"

#include <cstdint>
#include <string>

namespace dialogs {

// One list: catalogue path, name, application name. An empty name says that nothing was chosen.
[[nodiscard]] kit::TypedValues OpenChooseDialog();
void OpenManageDialog();
void OpenNewDialog();
// The run request that the person composed, to be sent like any other; empty after Cancel.
[[nodiscard]] std::string OpenAdvancedRunDialog();

// An event of the dialog that runs under that number; V_ITEM_... stand beside the item numbers.
void DialogEvent(int32_t dialog, int32_t item, int32_t modifiers);

// Forgets what the dialogs remember, and their handles: a client that is attached again meets another host.
void ShutDownDialogs();

} // namespace dialogs

#endif
