// Ctrl-C: the first one asks for the run to stop after the current input, the second one ends the process. SIGTERM and
// SIGHUP count like it. Process-wide, since signals are.
#ifndef HOST_CANCELLATION_H
#define HOST_CANCELLATION_H

namespace host {

// Idempotent.
void CatchInterrupts();
[[nodiscard]] bool IsInterrupted();
// Readable once interrupted, for those who wait for something else too; -1 without CatchInterrupts.
[[nodiscard]] int InterruptDescriptor();

} // namespace host

#endif
