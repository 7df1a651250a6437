#include "host/cli/program.h"

#include "host/cli/command_line.h"
#include "host/cli/commands.h"
#include "host/cli/serve_command.h"
#include "host/configuration/configuration.h"
#include "host/configuration/installation.h"
#include "host/desktop_module.h"
#include "host/editor_command.h"
#include "host/fronts/cancellation.h"
#include "host/fronts/script_front.h"
#include "host/fronts/terminal_front.h"
#include "host/session.h"
#include "kit/paths.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace cli {

namespace {

std::vector<std::pair<std::string, host::OpenAs>> ListFiles(const SessionOptions &options) {
  const std::pair<const std::vector<std::string> &, host::OpenAs> groups[] = {
      {options.open, host::OpenAs::Document},
      {options.modified, host::OpenAs::ModifiedDocument},
      {options.active, host::OpenAs::ActiveDocument},
      {options.book, host::OpenAs::ActiveBook}};
  std::vector<std::pair<std::string, host::OpenAs>> files;
  for (const auto &[paths, role] : groups)
    for (const std::string &path : paths)
      files.emplace_back(path, role);
  return files;
}

bool OpenFiles(host::Session &session, const SessionOptions &options) {
  for (const auto &[path, role] : ListFiles(options))
    if (std::string error; !session.OpenFile(path, role, error)) {
      PrintError(error);
      return false;
    }
  return true;
}

ExitCode RunCommand(const CommandLine &line, const host::Configuration &configuration,
                    const host::Installation &installation, host::Front &front, host::ScriptFront *script = nullptr) {
  host::Session session(configuration, installation, front);
  if (!line.session.opened.empty())
    session.KeepOutputsIn(kit::AbsolutePath(line.session.opened));
  const Environment environment{session, line.session, script};
  return Settle(environment, OpenFiles(session, line.session) ? line.command(environment) : ExitCode::BadCommand);
}

// The answers of a person, or of a script that stands in for one.
ExitCode RunWithFront(const CommandLine &line, const host::Configuration &configuration,
                      const host::Installation &installation, host::Front &front) {
  if (line.session.script.empty())
    return RunCommand(line, configuration, installation, front);
  std::string problem;
  const std::unique_ptr<host::ScriptFront> script = host::MakeScriptFront(line.session.script, front, problem);
  if (!script)
    return Refuse(problem);
  const ExitCode code = RunCommand(line, configuration, installation, *script, script.get());
  if (code == ExitCode::ScriptMisfit)
    PrintError(script->Failure());
  return code;
}

bool ShowToPerson(const std::string &path) { return host::StartProgram(host::ComposeOpenCommand(path)); }

// Without a display a program would have nowhere to show the file.
host::ProgramStarter FindStarter() {
  const auto isSet = [](const char *variable) {
    const char *value = std::getenv(variable);
    return value && *value;
  };
  return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") ? host::ProgramStarter(ShowToPerson) : host::ProgramStarter();
}

// False and an error text when one is not there: a document would be read with another DTD, or none.
bool AddCatalogs(const SessionOptions &options, host::Configuration &configuration, std::string &error) {
  std::vector<std::string> first;
  for (const std::string &named : options.catalogs) {
    first.push_back(kit::AbsolutePath(kit::UrlToPath(named)));
    if (!kit::IsFile(first.back())) {
      error = "there is no catalog " + first.back();
      return false;
    }
  }
  configuration.catalogs.insert(configuration.catalogs.begin(), first.begin(), first.end());
  return true;
}

// False and an error text when a host is none.
bool Trust(const SessionOptions &options, host::Configuration &configuration, std::string &error) {
  if (const auto bad = std::ranges::find_if_not(options.hosts, host::IsHostName); bad != options.hosts.end()) {
    error = "\"" + *bad + "\" is no host; --allow-network takes NAME or NAME:PORT, or * for all";
    return false;
  }
  configuration.trustedHosts.insert(configuration.trustedHosts.end(), options.hosts.begin(), options.hosts.end());
  configuration.allowsExtensions = configuration.allowsExtensions || options.allowsExtensions;
  return true;
}

// Nothing and an error text without windows.
std::optional<ExitCode> RunInWindows(CommandLine line, const host::Configuration &configuration,
                                     const host::Installation &installation, std::string &error) {
  const std::unique_ptr<host::DesktopModule> windows = host::DesktopModule::Load(installation, error);
  if (!windows)
    return std::nullopt;
  line.session.hasWindows = true;
  const std::optional<int> code =
      line.session.isWorkbench ? windows->RunWorkbench({configuration, installation, ListFiles(line.session)})
                               : windows->Serve([&](host::Front &front) {
                                   return static_cast<int>(RunWithFront(line, configuration, installation, front));
                                 });
  if (!code)
    error = "there is no display to show windows on";
  return code ? std::optional(static_cast<ExitCode>(*code)) : std::nullopt;
}

ExitCode RunCommandLine(int count, char **arguments) {
  ExitCode code = ExitCode::Done;
  const std::optional<CommandLine> line = ParseCommandLine(count, arguments, code);
  if (!line)
    return code;
  if (line->session.agreesToAll && line->session.declinesAll)
    return Refuse("--yes and --no-input contradict each other");
  if (!line->session.script.empty() && (line->session.agreesToAll || line->session.declinesAll))
    return Refuse("--script gives all answers itself; leave out --yes and --no-input");
  const host::Installation installation = host::FindInstallation();
  if (line->serve.isWanted)
    return ServeRequests(line->serve, installation);
  host::ConfigurationResult read =
      host::ReadConfiguration(host::FindConfigurationFile(line->session.configuration, installation), installation);
  for (const std::string &problem : read.problems)
    std::fputs((problem + "\n").c_str(), stderr);
  if (!read.problems.empty())
    return ExitCode::BadCommand;
  std::string problem;
  if (!AddCatalogs(line->session, read.configuration, problem) || !Trust(line->session, read.configuration, problem))
    return Refuse(problem);
  read.configuration.jobs = line->session.jobs.value_or(read.configuration.jobs);
  if (line->session.NeedsWindows()) {
    if (const auto windowed = RunInWindows(*line, read.configuration, installation, problem))
      return *windowed;
    // Some dialogs do without windows.
    if (!line->session.isDialog || line->session.showsWindows)
      return Refuse(problem);
  }
  host::CatchInterrupts();
  host::TerminalFront terminal(line->session.Answers(), FindStarter());
  return RunWithFront(*line, read.configuration, installation, terminal);
}

// Shows and asks nothing.
class SilentFront : public host::Front {
public:
  host::Answer Alert(host::AlertKind, const std::string &) override { return host::Answer::Decline; }
  std::optional<std::string> ChooseFile(const host::FileChooser &) override { return std::nullopt; }
  void RunDialog(host::DialogModel &) override {}
  void WriteConsole(std::string_view) override {}
  void ReportProgress(const host::Progress &) override {}
  bool IsCancelled() override { return false; }
};

} // namespace

int RunProgram(int count, char **arguments) {
  try {
    return static_cast<int>(RunCommandLine(count, arguments));
  } catch (const std::exception &fault) {
    PrintError(std::string("internal error: ") + fault.what());
    return static_cast<int>(ExitCode::Failed);
  }
}

bool HasUsableProcessor(host::Configuration configuration) {
  if (configuration.processors.empty())
    return false;
  configuration.processors.resize(1);
  SilentFront front;
  const host::Installation installation = host::FindInstallation();
  host::Session session(configuration, installation, front);
  return LoadsProcessors(session);
}

} // namespace cli
