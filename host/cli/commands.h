// What the program can do, one function per command. Each prints its results on standard output and what went wrong on
// standard error.
#ifndef HOST_CLI_COMMANDS_H
#define HOST_CLI_COMMANDS_H

#include "host/cli/options.h"
#include "host/cli/split_parameter.h"
#include "host/fronts/script_front.h"
#include "host/record/run_recorder.h"
#include "host/session.h"

#include <string>

namespace cli {

struct Environment {
  host::Session &session;
  const SessionOptions &options;
  host::ScriptFront *script = nullptr; // stands in for the person
};

[[nodiscard]] ExitCode Call(Environment environment, const CallOptions &options);
// Opens one of the client's dialogs by the name that the command line has for it.
[[nodiscard]] ExitCode OpenDialog(Environment environment, const std::string &name);
[[nodiscard]] ExitCode Run(Environment environment, const RunOptions &options);
[[nodiscard]] ExitCode ListTransformations(Environment environment, const CatalogueOptions &catalogue);
[[nodiscard]] ExitCode ListParameters(Environment environment, const std::string &stylesheet);
[[nodiscard]] ExitCode ListProcessors(Environment environment, bool prepares);
// Whether every configured processor loads, as far as that shows without a run; prints nothing.
[[nodiscard]] bool LoadsProcessors(host::Session &session);
[[nodiscard]] ExitCode AddTransformation(Environment environment, const CatalogueOptions &catalogue,
                                         const RecordOptions &record);
[[nodiscard]] ExitCode EditTransformation(Environment environment, const CatalogueOptions &catalogue,
                                          const RecordOptions &record);
[[nodiscard]] ExitCode DeleteTransformation(Environment environment, const CatalogueOptions &catalogue,
                                            const std::string &name);

// Shared by the commands. -----------------------------------------------------------------------------------------

// "vlxslt: ..." on standard error.
void PrintError(const std::string &text);
// Prints what is to be said of parameters that are probably not what was meant.
void PrintHints(const std::vector<std::string> &parameters);
// Prints the error and says that the command line is at fault.
[[nodiscard]] ExitCode Refuse(const std::string &text);
// How a served request ends the program; prints the reply first when JSON is wanted. With `tally` the jobs decide, if
// there were any.
[[nodiscard]] ExitCode Finish(Environment environment, const host::ClientReply &reply,
                              const host::RunTally *tally = nullptr);
// How a run ends the program. A job left out for another application does not count, unless there are no others.
[[nodiscard]] ExitCode JudgeRun(const host::RunTally &tally);
// How the process ends when a command that would end with `code` asks nothing more: a script that did not fit outweighs
// it, since the result says nothing then. Ctrl-C outweighs both.
[[nodiscard]] ExitCode Settle(Environment environment, ExitCode code);
// What the client resolves "-xslfilepath" PATH or "-appname" NAME to; empty when that is nothing.
[[nodiscard]] std::string ResolvePath(Environment environment, std::string_view option, const std::string &value);
// An absolute path for one on the command line; a path variable or a file URL is understood too.
[[nodiscard]] std::string ReadPath(Environment environment, const std::string &text);
// The absolute path of the catalogue; empty and an error text when there is none.
[[nodiscard]] std::string FindCatalogue(Environment environment, const CatalogueOptions &catalogue, std::string &error);
} // namespace cli

#endif
