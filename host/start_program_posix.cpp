#include "host/editor_command.h"

#include <spawn.h>
#include <sys/wait.h>

#include <thread>

extern char **environ;

namespace host {

bool StartProgram(const std::vector<std::string> &words) {
  if (words.empty())
    return false;
  std::vector<std::string> held = words;
  std::vector<char *> arguments;
  arguments.reserve(held.size() + 1);
  for (std::string &word : held)
    arguments.push_back(word.data());
  arguments.push_back(nullptr);
  pid_t child = 0;
  if (posix_spawnp(&child, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0)
    return false;
  // A child that is not waited for would stay as a zombie process.
  std::thread([child] { waitpid(child, nullptr, 0); }).detach();
  return true;
}

} // namespace host
