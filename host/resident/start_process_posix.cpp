#include "host/resident/start_process.h"

#include "host/resident/resident_request.h"
#include "kit/paths.h"
#include "kit/program_words.h"

#include <fcntl.h>
#include <spawn.h>

#include <cerrno>
#include <csignal>

namespace resident {

namespace {

class Actions {
public:
  explicit Actions(int connection) {
    posix_spawn_file_actions_init(&actions);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
      posix_spawn_file_actions_addopen(&actions, standard, "/dev/null", O_RDWR, 0);
    posix_spawn_file_actions_adddup2(&actions, connection, inheritedConnection);
    posix_spawn_file_actions_addchdir_np(&actions, "/");
  }
  ~Actions() { posix_spawn_file_actions_destroy(&actions); }
  Actions(const Actions &) = delete;
  Actions &operator=(const Actions &) = delete;
  [[nodiscard]] const posix_spawn_file_actions_t *Get() const { return &actions; }

private:
  posix_spawn_file_actions_t actions{};
};

class Attributes {
public:
  Attributes() {
    posix_spawnattr_init(&attributes);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~Attributes() { posix_spawnattr_destroy(&attributes); }
  Attributes(const Attributes &) = delete;
  Attributes &operator=(const Attributes &) = delete;
  [[nodiscard]] const posix_spawnattr_t *Get() const { return &attributes; }

private:
  posix_spawnattr_t attributes{};
};

} // namespace

pid_t StartProgramAgain(std::vector<std::string> words, std::vector<std::string> environment, int connection) {
  const std::string program = kit::RealPath("/proc/self/exe");
  const Actions actions(connection);
  const Attributes attributes;
  pid_t child = -1;
  errno = posix_spawn(&child, program.c_str(), actions.Get(), attributes.Get(), kit::PointersTo(words).data(),
                      kit::PointersTo(environment).data());
  return errno == 0 ? child : -1;
}

} // namespace resident
