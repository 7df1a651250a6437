#include "host/cli/command_line.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <CLI/Validators.hpp>

#include <memory>

namespace cli {

namespace {

constexpr const char *about = "Applies XSLT stylesheets to XML: documents, books, DITA maps, folders.";

constexpr const char *examples = R"(Examples:
  vlxslt run article.xml --xsl html.xsl -o article.html -p toc.depth=2
  vlxslt run topics --recursive --match '*.dita' --xsl topic.xsl -o out/ --extension html
  vlxslt run guide.ditamap --components --xsl topic.xsl -o out/ --extension html
  vlxslt run report.xml --transformation HTML --application DocBook
  vlxslt run topics -r --xsl topic.xsl -o out/ --record run.jsonl --yes
  vlxslt run - --xsl html.xsl -o - <article.xml >article.html
  vlxslt run --retry run.jsonl --record run.jsonl --yes
  vlxslt list --application DocBook
  vlxslt dialog manage --script answers.txt
  vlxslt call 'XSLTGetTrScenario -trfile "/data/Transformations.xml"' --json

Exit codes: 0 done; 1 at least one input was not transformed; 2 bad command line, configuration or request;
3 a script did not fit what was asked; 130 cancelled.)";

// Everything that the options are stored in while the line is read; commands keep it alive.
struct Parsed {
  SessionOptions session;
  CallOptions call;
  RunOptions run;
  CatalogueOptions catalogue;
  RecordOptions record;
  ServeOptions serve;
  std::string stylesheet;
  std::string dialog;
  bool preparesStart = false;
  std::function<ExitCode(Environment)> command;
};

using Command = std::function<ExitCode(Environment, const Parsed &)>;

// An option that may be given again, each time with one value.
void AddRepeatable(CLI::App &command, const std::string &names, std::vector<std::string> &values,
                   const std::string &help, const std::string &valueName) {
  command.add_option(names, values, help)->type_name(valueName)->allow_extra_args(false);
}

void AddText(CLI::App &command, const std::string &names, std::string &value, const std::string &help,
             const std::string &valueName) {
  command.add_option(names, value, help)->type_name(valueName);
}

CLI::App &AddCommand(CLI::App &app, const std::shared_ptr<Parsed> &parsed, const std::string &name,
                     const std::string &help, Command command) {
  CLI::App &added = *app.add_subcommand(name, help);
  SessionOptions &session = parsed->session;
  added.add_flag("--yes,-y", session.agreesToAll, "answer Yes or OK to every question");
  added.add_flag("--no-input", session.declinesAll, "ask nothing; every question is declined");
  added.add_flag("--json", session.printsJson, "print the reply and what happened as one JSON object");
  added.callback([parsed, command = std::move(command)] {
    // The weak side of the circle: the line's values must not keep themselves alive.
    const Parsed *values = parsed.get();
    parsed->command = [values, command](Environment environment) { return command(environment, *values); };
  });
  return added;
}

void AddTrustOptions(CLI::App &command, SessionOptions &session) {
  AddRepeatable(command, "--allow-network", session.hosts,
                "a host that documents and stylesheets may be fetched from, as NAME or NAME:PORT; * for all", "HOST");
  command.add_flag("--allow-extensions", session.allowsExtensions,
                   "let stylesheets call code, such as Java extension functions");
}

void AddDocumentOptions(CLI::App &command, SessionOptions &session) {
  AddTrustOptions(command, session);
  AddRepeatable(command, "--open", session.open, "an open document, book or map", "FILE");
  AddRepeatable(command, "--active", session.active, "open it and make it the active document", "FILE");
  AddRepeatable(command, "--book", session.book, "open it and make it the active book", "FILE");
  AddRepeatable(command, "--modified", session.modified, "open it with unsaved changes", "FILE");
  AddText(command, "--script", session.script, "a script that answers questions and works dialogs", "FILE");
  AddText(command, "--opened", session.opened, "keep temporary outputs that are opened or launched below this folder",
          "FOLDER");
}

void AddCatalogueOptions(CLI::App &command, CatalogueOptions &catalogue) {
  AddText(command, "--catalogue", catalogue.file, "the catalogue", "FILE");
  AddText(command, "--application", catalogue.application, "the application whose catalogue it is", "NAME");
}

void AddRecordOptions(CLI::App &command, RecordOptions &record) {
  AddText(command, "--xsl", record.stylesheet, "the stylesheet, kept as written: relative to the input", "FILE");
  command.add_flag("--use-pi", record.usesInstruction, "take the stylesheet that each input names");
  AddText(command, "--processor", record.processor, "the processor", "NAME");
  AddRepeatable(command, "-p,--param", record.parameters, "a stylesheet parameter", "NAME=EXPRESSION");
  AddText(command, "--output", record.output, "donotsave, prompt, dirpath or samelocation", "WHERE");
  AddText(command, "--folder", record.folder, "the output folder (means --output dirpath)", "DIR");
  command
      .add_option("--suffix", record.suffix,
                  "added to the input's name (means --output samelocation); an empty one replaces the input")
      ->type_name("TEXT");
  AddText(command, "--open-output", record.openOutput, "none, vellis (in the host) or default (its program)", "HOW");
}

void AddRun(CLI::App &app, const std::shared_ptr<Parsed> &parsed) {
  RunOptions &run = parsed->run;
  CLI::App &command = AddCommand(app, parsed, "run", "transform files and folders",
                                 [](Environment environment, const Parsed &all) { return Run(environment, all.run); });
  command.add_option("INPUT", run.inputs, "files, and folders whose files are taken; - for standard input")
      ->type_name("PATH");
  AddText(command, "--transformation", run.transformation, "a transformation of a catalogue", "NAME");
  AddCatalogueOptions(command, run.catalogue);
  AddText(command, "--xsl", run.stylesheet, "a stylesheet", "FILE");
  command.add_flag("--use-pi", run.usesInstruction, "the stylesheet that each input names");
  AddText(command, "--processor", run.processor, "the processor; the first configured one without it", "NAME");
  AddRepeatable(command, "-p,--param", run.parameters, "a stylesheet parameter", "NAME=EXPRESSION");
  AddText(command, "-o", run.output,
          "a file for one input, - for standard output; a folder (existing, or ending in /) for several", "PATH");
  AddText(command, "--extension", run.extension, "of the outputs in a folder, in place of the inputs' own", "EXT");
  command.add_flag("--recursive,-r", run.isRecursive, "take the files in folders of folders too");
  command.add_flag("--components", run.takesComponents, "take the components of books and DITA maps behind them");
  command.add_flag("--xinclude", run.includes, "put in place what inputs include by xi:include");
  AddText(command, "--initial-template", run.initialTemplate, "the template to begin with (Saxon)", "NAME");
  AddText(command, "--initial-mode", run.initialMode, "the mode to begin in (Saxon)", "NAME");
  AddRepeatable(command, "--match", run.patterns, "take only files of such names from folders", "PATTERN");
  command
      .add_option("-j,--jobs", parsed->session.jobs,
                  "inputs at once; 1 for one by one, 0 for as many as there are cores and memory for (the default)")
      ->type_name("N")
      ->check(CLI::Range(0, host::maxJobs));
  command.add_flag("--dry-run", run.isDryRun,
                   "print what would be read, applied and written; start nothing. With --json, an object a line");
  AddText(command, "--record", run.record, "write what happens to each input, as JSON Lines", "FILE");
  AddText(command, "--sarif", run.sarif, "write warnings and errors as SARIF", "FILE");
  AddText(command, "--retry", run.retry, "run again what a record does not list as done; all else is as recorded",
          "RECORD");
  AddRepeatable(command, "--catalog", parsed->session.catalogs, "an XML catalog, asked before the configured ones",
                "FILE");
  AddDocumentOptions(command, parsed->session);
}

void AddRequestCommands(CLI::App &app, const std::shared_ptr<Parsed> &parsed) {
  CLI::App &call = AddCommand(app, parsed, "call", "send one request to a client and print the reply",
                              [](Environment environment, const Parsed &all) { return Call(environment, all.call); });
  call.add_option("REQUEST", parsed->call.request, "the request; - reads it from standard input, @FILE from a file")
      ->type_name("TEXT")
      ->required();
  AddText(call, "--client", parsed->call.client, "XSLT, VlDispatcher or XmlUtilities", "NAME");
  AddDocumentOptions(call, parsed->session);

  CLI::App &dialog =
      AddCommand(app, parsed, "dialog", "open one dialog of the client",
                 [](Environment environment, const Parsed &all) { return OpenDialog(environment, all.dialog); });
  dialog.add_option("NAME", parsed->dialog, "choose, manage, new, advanced or xsl")->type_name("TEXT")->required();
  AddDocumentOptions(dialog, parsed->session);
  dialog.parse_complete_callback([parsed] { parsed->session.isDialog = true; });
  for (CLI::App *command : {&call, &dialog})
    command->add_flag("--windows", parsed->session.showsWindows, "ask in windows, not on the terminal");

  CLI::App &desktop = AddCommand(app, parsed, "desktop", "open the workbench window",
                                 [](Environment, const Parsed &) { return ExitCode::Done; });
  desktop.add_option("FILE", parsed->session.open, "documents to open; the last one becomes the active one")
      ->type_name("PATH");
  AddTrustOptions(desktop, parsed->session);
  desktop.parse_complete_callback([parsed] { parsed->session.isWorkbench = true; });

  CLI::App &processors = AddCommand(
      app, parsed, "processors", "the configured processors, and whether each one loads",
      [](Environment environment, const Parsed &all) { return ListProcessors(environment, all.preparesStart); });
  processors.add_flag("--prepare", parsed->preparesStart,
                      "write what they start quickly with now: beside the program where that can be written to");
  CLI::App &params = AddCommand(
      app, parsed, "params", "the parameters that a stylesheet declares",
      [](Environment environment, const Parsed &all) { return ListParameters(environment, all.stylesheet); });
  params.add_option("XSL", parsed->stylesheet, "the stylesheet")->type_name("FILE")->required();
}

void AddCatalogueCommands(CLI::App &app, const std::shared_ptr<Parsed> &parsed) {
  RecordOptions &record = parsed->record;
  CLI::App &list = AddCommand(
      app, parsed, "list", "the transformations of a catalogue",
      [](Environment environment, const Parsed &all) { return ListTransformations(environment, all.catalogue); });
  CLI::App &add = AddCommand(app, parsed, "add", "add a transformation to a catalogue",
                             [](Environment environment, const Parsed &all) {
                               return AddTransformation(environment, all.catalogue, all.record);
                             });
  CLI::App &edit = AddCommand(app, parsed, "edit", "change a transformation; what is not named stays as it is",
                              [](Environment environment, const Parsed &all) {
                                return EditTransformation(environment, all.catalogue, all.record);
                              });
  CLI::App &remove =
      AddCommand(app, parsed, "delete", "delete a transformation", [](Environment environment, const Parsed &all) {
        return DeleteTransformation(environment, all.catalogue, all.record.name);
      });
  for (CLI::App *command : {&add, &edit, &remove})
    command->add_option("NAME", record.name, "its name")->type_name("TEXT")->required();
  for (CLI::App *command : {&list, &add, &edit, &remove})
    AddCatalogueOptions(*command, parsed->catalogue);
  AddRecordOptions(add, record);
  AddRecordOptions(edit, record);
  add.add_flag("--replace", record.replacesInvalid,
               "ask whether a file that is no valid catalogue may be overwritten; without it, it is kept");
  AddText(edit, "--rename", record.newName, "its new name", "TEXT");
  AddRepeatable(edit, "--drop-param", record.droppedParameters, "a parameter to take out", "NAME");
}

void AddServe(CLI::App &app, const std::shared_ptr<Parsed> &parsed) {
  ServeOptions &serve = parsed->serve;
  CLI::App &command = *app.add_subcommand("serve", "stay resident and run what --connect brings, with Java kept warm");
  command.add_option("--idle", serve.idleMinutes, "minutes without a request after which workers and server end")
      ->type_name("MINUTES")
      ->check(CLI::PositiveNumber);
  command.add_option("--max-workers", serve.maxWorkers, "how many requests run at once; the cores, if not given")
      ->type_name("N")
      ->check(CLI::PositiveNumber);
  command.add_option("--max-memory", serve.maxMegabytes, "a worker that keeps more megabytes is replaced")
      ->type_name("MB")
      ->check(CLI::PositiveNumber);
  command.add_option("--max-requests", serve.maxRequests, "a worker that has served so many is replaced")
      ->type_name("N")
      ->check(CLI::PositiveNumber);
  CLI::Option *status = command.add_flag("--status", serve.showsStatus, "say what the resident server is doing");
  command.add_flag("--stop", serve.stops, "end it, when what it runs is done")->excludes(status);
  // How the program starts itself.
  command.add_flag("--started", serve.isStarted)->group("");
  command.add_flag("--worker", serve.isWorker)->group("");
  command.parse_complete_callback([&serve] { serve.isWanted = true; });
}

} // namespace

std::optional<CommandLine> ParseCommandLine(int count, char **arguments, ExitCode &code) {
  const auto parsed = std::make_shared<Parsed>();
  CLI::App app(about, "vlxslt");
  app.footer(examples);
  app.set_version_flag("--version", std::string("vlxslt ") + VLXSLT_VERSION);
  AddText(app, "--config", parsed->session.configuration, "the configuration file", "FILE");
  app.add_flag("--connect", parsed->serve.isConnected,
               "run in a resident worker, which starts at once; of call, dialog --script, processors, run");
  app.require_subcommand(1);
  app.fallthrough();
  AddRun(app, parsed);
  AddRequestCommands(app, parsed);
  AddCatalogueCommands(app, parsed);
  AddServe(app, parsed);
  try {
    app.parse(count, arguments);
  } catch (const CLI::ParseError &fault) {
    // The library would only say that a command is missing, when it was misspelt too.
    if (const auto unknown = app.remaining(); app.get_subcommands().empty() && !unknown.empty()) {
      PrintError("there is no command \"" + unknown.front() + "\"; vlxslt --help lists them");
      code = ExitCode::BadCommand;
      return std::nullopt;
    }
    code = app.exit(fault) == 0 ? ExitCode::Done : ExitCode::BadCommand;
    return std::nullopt;
  }
  return CommandLine{parsed->session, parsed->serve,
                     [parsed](Environment environment) { return parsed->command(environment); }};
}

} // namespace cli
