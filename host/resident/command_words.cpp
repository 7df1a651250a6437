#include "host/resident/command_words.h"

#include <algorithm>
#include <array>

namespace resident {

namespace {

// Options that are answered at once, show windows, or start no Java.
constexpr std::array<std::string_view, 5> optionsForHere = {"--help", "-h", "--version", "--windows", "--dry-run"};
// Files of the process itself: pipes of a shell, for instance.
constexpr std::array<std::string_view, 3> foldersForHere = {"/dev/fd/", "/proc/self/", "/proc/thread-self/"};
constexpr std::string_view configurationOption = "--config";

bool NamesOwnFile(std::string_view word) {
  return std::ranges::any_of(foldersForHere,
                             [&](std::string_view folder) { return word.find(folder) != std::string_view::npos; });
}

} // namespace

CommandWords ReadCommandWords(int count, char **arguments) {
  CommandWords words;
  bool hasOptions = true;
  for (int index = 1; index < count; ++index) {
    const std::string_view word = arguments[index];
    words.staysHere = words.staysHere || NamesOwnFile(word);
    if (!hasOptions || !word.starts_with('-')) {
      words.command = words.command.empty() ? word : words.command;
    } else if (word == "--") {
      hasOptions = false;
    } else if (word == configurationOption && index + 1 < count) {
      words.configuration = arguments[++index];
    } else if (word.starts_with(configurationOption) && word.substr(configurationOption.size()).starts_with('=')) {
      words.configuration = word.substr(configurationOption.size() + 1);
    } else {
      words.connects = words.connects || word == "--connect";
      words.playsScript = words.playsScript || word.starts_with("--script");
      words.staysHere = words.staysHere || std::ranges::find(optionsForHere, word) != optionsForHere.end();
    }
  }
  return words;
}

} // namespace resident
