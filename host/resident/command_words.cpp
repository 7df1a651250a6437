#include "host/resident/command_words.h"

#include <algorithm>
#include <array>

namespace resident {

namespace {

// Options that are answered at once, show windows, or start no Java.
constexpr std::array<std::string_view, 5> optionsForHere = {"--help", "-h", "--version", "--windows", "--dry-run"};
// Files of the process itself: pipes of a shell, for instance.
constexpr std::array<std::string_view, 3> foldersForHere = {"/dev/fd/", "/proc/self/", "/proc/thread-self/"};

bool NamesOwnFile(std::string_view word) {
  return std::ranges::any_of(foldersForHere,
                             [&](std::string_view folder) { return word.find(folder) != std::string_view::npos; });
}

// "NAME VALUE" or "NAME=VALUE".
bool TakeValue(int count, char **arguments, int &index, std::string_view name, std::string &value) {
  const std::string_view word = arguments[index];
  if (word == name && index + 1 < count)
    value = arguments[++index];
  else if (word.starts_with(name) && word.substr(name.size()).starts_with('='))
    value = word.substr(name.size() + 1);
  else
    return false;
  return true;
}

} // namespace

CommandWords ReadCommandWords(int count, char **arguments) {
  CommandWords words;
  bool hasOptions = true;
  std::string value;
  for (int index = 1; index < count; ++index) {
    const std::string_view word = arguments[index];
    words.staysHere = words.staysHere || NamesOwnFile(word);
    if (!hasOptions || !word.starts_with('-')) {
      words.command = words.command.empty() ? word : words.command;
    } else if (word == "--") {
      hasOptions = false;
    } else if (TakeValue(count, arguments, index, "--config", value)) {
      words.configuration = value;
    } else if (TakeValue(count, arguments, index, "--catalog", value)) {
      words.catalogs.push_back(value);
    } else {
      words.connects = words.connects || word == "--connect";
      words.playsScript = words.playsScript || word.starts_with("--script");
      words.staysHere = words.staysHere || std::ranges::find(optionsForHere, word) != optionsForHere.end();
    }
  }
  return words;
}

} // namespace resident
