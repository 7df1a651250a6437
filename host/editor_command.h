// How the user's editor is started at a place of a file, and other programs that show files to a person.
#ifndef HOST_EDITOR_COMMAND_H
#define HOST_EDITOR_COMMAND_H

#include "host/file_place.h"

#include <string>
#include <vector>

namespace host {

// The words of a command line. `configured` is the user's own ("code -g {file}:{line}:{column}"); without it $VISUAL
// counts, and at last what the desktop has for the file. A command that does not say where the line goes gets the
// form that this editor is known to understand.
[[nodiscard]] std::vector<std::string> ComposeEditorCommand(const std::string &configured, const FilePlace &place);
[[nodiscard]] std::vector<std::string> ComposeOpenCommand(const std::string &path);

// Starts the program and does not wait for it; false when it is not there.
[[nodiscard]] bool StartProgram(const std::vector<std::string> &words);

} // namespace host

#endif
