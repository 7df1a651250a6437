// A quick look at a command line, before its grammar reads it: which command it is, and which configuration it names.
#ifndef HOST_RESIDENT_COMMAND_WORDS_H
#define HOST_RESIDENT_COMMAND_WORDS_H

#include <string>
#include <string_view>
#include <vector>

namespace resident {

struct CommandWords {
  std::string_view command;
  std::string configuration;              // the value of --config
  std::vector<std::string> catalogs = {}; // the values of --catalog
  bool connects = false;                  // --connect is among the options
  bool playsScript = false;               // --script is
  bool staysHere = false;                 // help, windows, or files that only this process has
};

[[nodiscard]] CommandWords ReadCommandWords(int count, char **arguments);

} // namespace resident

#endif
