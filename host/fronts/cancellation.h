// Ctrl-C: the first one asks for the run to stop after the current input, the second one ends the process. SIGTERM and
// SIGHUP count like it, but do not wait for an input that does not end. Process-wide, since signals are.
#ifndef HOST_CANCELLATION_H
#define HOST_CANCELLATION_H

namespace host {

// Idempotent.
void CatchInterrupts();
[[nodiscard]] bool IsInterrupted();
// Some seconds after SIGTERM or SIGHUP: what still runs is to be given up.
[[nodiscard]] bool IsTerminationOverdue();
// Readable once interrupted, for those who wait for something else too; -1 without CatchInterrupts.
[[nodiscard]] int InterruptDescriptor();

} // namespace host

#endif
