// The stand-alone host's command line: settings, a session, one command.
#include "host/cancellation.h"
#include "host/cli/command_line.h"
#include "host/cli/commands.h"
#include "host/configuration.h"
#include "host/installation.h"
#include "host/session.h"
#include "host/terminal_front.h"

#include <cstdio>
#include <exception>
#include <memory>

namespace cli {

namespace {

std::unique_ptr<host::Front> MakeFront(const SessionOptions &options) {
  return std::make_unique<host::TerminalFront>(options.Answers());
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

ExitCode RunProgram(int count, char **arguments) {
  ExitCode code = ExitCode::Done;
  const std::optional<CommandLine> line = ParseCommandLine(count, arguments, code);
  if (!line)
    return code;
  if (line->session.agreesToAll && line->session.declinesAll)
    return Refuse("--yes and --no-input contradict each other");
  const host::Installation installation = host::FindInstallation();
  const host::ConfigurationResult read =
      host::ReadConfiguration(host::FindConfigurationFile(line->session.configuration, installation), installation);
  for (const std::string &problem : read.problems)
    std::fputs((problem + "\n").c_str(), stderr);
  if (!read.problems.empty())
    return ExitCode::BadCommand;
  host::CatchInterrupts();
  const std::unique_ptr<host::Front> front = MakeFront(line->session);
  host::Session session(read.configuration, installation, *front);
  if (!OpenFiles(session, line->session))
    return ExitCode::BadCommand;
  return line->command({session, line->session});
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
