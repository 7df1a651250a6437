// Going away at once: the display is lost, or a signal asks the program to end. What is being transformed is finished
// or dropped whole, questions that stand open are declined, temporary files go, and the program ends without the
// windows' help, since those may not answer any more.
#ifndef HOST_DESKTOP_SHUTDOWN_H
#define HOST_DESKTOP_SHUTDOWN_H

#include <chrono>
#include <functional>

namespace desktop {

// What the program ends with.
constexpr int failedCode = 1;
constexpr int interruptedCode = 130;

// Stops the work and waits for its end, for so long at most; false when it takes longer.
using FinishWork = std::function<bool(std::chrono::seconds longest)>;

// Called once, on the windows' thread, as soon as the toolkit stands.
void WatchForDeparture(FinishWork finish);

// On the windows' thread. Outputs are whole or not there, however short the wait is.
[[noreturn]] void Depart(const char *why, int exitCode, std::chrono::seconds longest);

} // namespace desktop

#endif
