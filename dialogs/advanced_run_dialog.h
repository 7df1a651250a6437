// The dialog that asks what to transform and with what. It runs nothing: it composes the request that a script would
// send. Modal, host's thread only.
#ifndef DIALOGS_ADVANCED_RUN_DIALOG_H
#define DIALOGS_ADVANCED_RUN_DIALOG_H

#include <cstdint>
#include <string>

namespace dialogs {

// Empty when the person cancelled.
[[nodiscard]] std::string AskForRunRequest();
void ServeAdvancedRunEvent(int32_t item);
void ForgetAdvancedRunState();

} // namespace dialogs

#endif
