// The exit codes of the program, with and without windows.
#ifndef HOST_EXIT_CODES_H
#define HOST_EXIT_CODES_H

namespace host {

// Failed: at least one input was not transformed. BadCommand: a bad command line, configuration or request.
// ScriptMisfit: a script did not fit what was asked.
enum class ExitCode : int { Done = 0, Failed = 1, BadCommand = 2, ScriptMisfit = 3, Cancelled = 130 };

} // namespace host

#endif
