// The command line as values, one struct per command, and how the program ends.
#ifndef HOST_CLI_OPTIONS_H
#define HOST_CLI_OPTIONS_H

#include "host/exit_codes.h"
#include "host/fronts/terminal_front.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace cli {

using host::ExitCode;

// What every command that sends a request understands.
struct SessionOptions {
  std::string configuration;
  std::vector<std::string> open;
  std::vector<std::string> active;
  std::vector<std::string> book;
  std::vector<std::string> modified;
  bool agreesToAll = false;
  bool declinesAll = false;
  std::string script;                // plays the person
  std::vector<std::string> catalogs; // XML catalogs, asked before the configured ones
  std::vector<std::string> hosts;    // that documents may be fetched from, beside the configured ones
  bool allowsExtensions = false;     // stylesheets may call code
  std::optional<int32_t> jobs;       // inputs at once, in place of the configured number
  std::string opened;                // the folder for copies of temporary outputs; empty for the common one
  bool printsJson = false;
  bool isWorkbench = false;  // the command is the main window
  bool isDialog = false;     // the command is a dialog, which a terminal cannot show
  bool hasWindows = false;   // they stand
  bool showsWindows = false; // questions and dialogs are windows, even while a script plays the person

  [[nodiscard]] bool NeedsWindows() const {
    return isWorkbench || showsWindows || (isDialog && script.empty() && !agreesToAll && !declinesAll);
  }
  [[nodiscard]] host::Answers Answers() const {
    if (agreesToAll)
      return host::Answers::ConfirmAll;
    return declinesAll ? host::Answers::Decline : host::Answers::AskPerson;
  }
};

struct CallOptions {
  std::string request;
  std::string client = "XSLT";
};

// A catalogue by its file, or by the application that it belongs to.
struct CatalogueOptions {
  std::string file = {};
  std::string application = {};
};

struct RunOptions {
  std::vector<std::string> inputs = {};
  std::vector<std::string> patterns = {}; // of file names in folders; none takes every file
  std::string transformation = {};
  CatalogueOptions catalogue = {};
  std::string stylesheet = {};
  bool usesInstruction = false;
  std::string processor = {};
  std::vector<std::string> parameters = {}; // NAME=EXPRESSION
  bool isRecursive = false;
  bool takesComponents = false;
  bool includes = false;
  std::string initialTemplate = {};
  std::string initialMode = {};
  bool isDryRun = false;
  std::string output = {};
  std::string extension = {};
  std::string record = {}; // the files to write about the run
  std::string sarif = {};
  std::string retry = {}; // the record of a run to go on with
};

// The fields of `add` and `edit`; for `edit` an empty one means "as it is".
struct RecordOptions {
  std::string name = {};
  std::string newName = {};
  std::string stylesheet = {};
  bool usesInstruction = false;
  std::string processor = {};
  std::vector<std::string> parameters = {};
  std::vector<std::string> droppedParameters = {};
  std::string output = {};
  std::string folder = {};
  std::optional<std::string> suffix = {}; // an empty one takes the suffix away
  std::string openOutput = {};
  bool replacesInvalid = false; // of `add`
};

struct ServeOptions {
  bool isWanted = false;    // the command is `serve`
  bool isConnected = false; // --connect, which was seen to before the grammar
  bool stops = false;
  bool showsStatus = false;
  bool isStarted = false; // by a client, which waits
  bool isWorker = false;
  double idleMinutes = 30;
  unsigned maxWorkers = 0; // 0: the cores, but two at least
  uint64_t maxMegabytes = 1024;
  uint64_t maxRequests = 20000;
};

} // namespace cli

#endif
