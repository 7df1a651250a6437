#include "host/editor_command.h"

#include "kit/paths.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <sstream>
#include <string_view>

namespace host {

namespace {

struct KnownEditor {
  std::string_view program;
  std::string_view arguments;
};
constexpr std::array knownEditors = {
    KnownEditor{"code", "-g {file}:{line}:{column}"},
    KnownEditor{"codium", "-g {file}:{line}:{column}"},
    KnownEditor{"subl", "{file}:{line}:{column}"},
    KnownEditor{"kate", "-l {line} -c {column} {file}"},
    KnownEditor{"gedit", "{file} +{line}:{column}"},
    KnownEditor{"gnome-text-editor", "{file} +{line}:{column}"},
    KnownEditor{"mousepad", "--line={line} --column={column} {file}"},
    KnownEditor{"geany", "--line {line} --column {column} {file}"},
    KnownEditor{"emacs", "+{line}:{column} {file}"},
    KnownEditor{"emacsclient", "-n +{line}:{column} {file}"},
    KnownEditor{"gvim", "+{line} {file}"},
};

constexpr std::string_view filePlace = "{file}";

std::vector<std::string> SplitWords(const std::string &text) {
  std::istringstream stream(text);
  std::vector<std::string> words;
  for (std::string word; stream >> word;)
    words.push_back(word);
  return words;
}

void Replace(std::string &text, std::string_view what, const std::string &with) {
  for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size()))
    text.replace(at, what.size(), with);
}

} // namespace

std::vector<std::string> ComposeEditorCommand(const std::string &configured, const FilePlace &place) {
  const char *visual = std::getenv("VISUAL");
  std::string command = !configured.empty() ? configured : visual ? visual : "";
  std::vector<std::string> words = SplitWords(command);
  if (words.empty())
    return ComposeOpenCommand(place.path);
  if (command.find(filePlace) == std::string::npos) {
    const std::string program = kit::FileNameOf(words.front());
    const auto known = std::ranges::find(knownEditors, program, &KnownEditor::program);
    const bool knowsLines = known != knownEditors.end() && place.line > 0;
    for (const std::string &word : SplitWords(std::string(knowsLines ? known->arguments : filePlace)))
      words.push_back(word);
  }
  // The file comes last: its name may hold braces itself.
  for (std::string &word : words) {
    Replace(word, "{line}", std::to_string(std::max(place.line, 1)));
    Replace(word, "{column}", std::to_string(std::max(place.column, 1)));
    Replace(word, filePlace, place.path);
  }
  return words;
}

std::vector<std::string> ComposeOpenCommand(const std::string &path) { return {"xdg-open", path}; }

} // namespace host
