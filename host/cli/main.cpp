// The stand-alone host's command line: settings, a session, one command.
#include "host/cancellation.h"
#include "host/cli/command_line.h"
#include "host/cli/commands.h"
#include "host/configuration.h"
#include "host/installation.h"
#include "host/script_front.h"
#include "host/session.h"
#include "host/terminal_front.h"

#include <cstdio>
#include <exception>
#include <memory>

namespace cli {

namespace {

// A script that did not fit outweighs how the command ended: its result says nothing. Ctrl-C outweighs both.
ExitCode EndScript(host::ScriptFront &script, ExitCode code) {
  if (code == ExitCode::Cancelled)
    return code;
  script.Finish();
  if (!script.HasFailed())
    return code;
  PrintError(script.Failure());
  return ExitCode::ScriptMisfit;
}

bool OpenFiles(host::Session &session, const SessionOptions &options) {
  const std::pair<const std::vector<std::string> &, host::OpenAs> groups[] = {
      {options.open, host::OpenAs::Document},
      {options.modified, host::OpenAs::ModifiedDocument},
      {options.active, host::OpenAs::ActiveDocument},
      {options.book, host::OpenAs::ActiveBook}};
  for (const auto &[paths, role] : groups)
    for (const std::string &path : paths)
      if (std::string error; !session.OpenFile(path, role, error)) {
        PrintError(error);
        return false;
      }
  return true;
}

ExitCode RunCommand(const CommandLine &line, const host::Configuration &configuration,
                    const host::Installation &installation, host::Front &front) {
  host::Session session(configuration, installation, front);
  return OpenFiles(session, line.session) ? line.command({session, line.session}) : ExitCode::BadCommand;
}

ExitCode RunProgram(int count, char **arguments) {
  ExitCode code = ExitCode::Done;
  const std::optional<CommandLine> line = ParseCommandLine(count, arguments, code);
  if (!line)
    return code;
  if (line->session.agreesToAll && line->session.declinesAll)
    return Refuse("--yes and --no-input contradict each other");
  if (!line->session.script.empty() && (line->session.agreesToAll || line->session.declinesAll))
    return Refuse("--script gives all answers itself; leave out --yes and --no-input");
  const host::Installation installation = host::FindInstallation();
  const host::ConfigurationResult read =
      host::ReadConfiguration(host::FindConfigurationFile(line->session.configuration, installation), installation);
  for (const std::string &problem : read.problems)
    std::fputs((problem + "\n").c_str(), stderr);
  if (!read.problems.empty())
    return ExitCode::BadCommand;
  host::CatchInterrupts();
  host::TerminalFront terminal(line->session.Answers());
  if (line->session.script.empty())
    return RunCommand(*line, read.configuration, installation, terminal);
  std::string problem;
  const std::unique_ptr<host::ScriptFront> script = host::MakeScriptFront(line->session.script, terminal, problem);
  return script ? EndScript(*script, RunCommand(*line, read.configuration, installation, *script)) : Refuse(problem);
}

} // namespace

} // namespace cli

int main(int count, char **arguments) {
  try {
    return static_cast<int>(cli::RunProgram(count, arguments));
  } catch (const std::exception &fault) {
    cli::PrintError(std::string("internal error: ") + fault.what());
    return static_cast<int>(cli::ExitCode::Failed);
  }
}
