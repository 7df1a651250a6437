// Ends the program when the display is lost or a signal asks for it: cancels the run, declines open questions, removes
// temporary files and exits without the windows, which may not respond any more. The output of the current input is
// written whole or not at all.
#ifndef HOST_DESKTOP_SHUTDOWN_H
#define HOST_DESKTOP_SHUTDOWN_H

#include "host/exit_codes.h"

#include <chrono>
#include <functional>

namespace desktop {

// Cancels the work and waits for its end; false when it takes longer than `maxTime`.
using FinishWork = std::function<bool(std::chrono::seconds maxTime)>;

// Called once, on the windows' thread, when the toolkit is initialised.
void WatchForShutdown(FinishWork finish);

// On the windows' thread. Outputs are whole or absent, however short `maxTime` is.
[[noreturn]] void ShutDown(const char *why, host::ExitCode code, std::chrono::seconds maxTime);

} // namespace desktop

#endif
