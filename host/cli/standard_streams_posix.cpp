#include "host/cli/standard_streams.h"

#include "host/fronts/cancellation.h"
#include "kit/paths.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <poll.h>
#include <system_error>
#include <unistd.h>

namespace cli {

namespace {

// -1 with errno, 0 at the end; EINTR when the person interrupts.
ssize_t ReadSome(char *buffer, size_t size) {
  std::array<pollfd, 2> waiting = {{{STDIN_FILENO, POLLIN, 0}, {host::InterruptDescriptor(), POLLIN, 0}}};
  while (poll(waiting.data(), waiting.size(), -1) < 0)
    if (errno != EINTR)
      return -1;
  if (!host::IsInterrupted())
    return read(STDIN_FILENO, buffer, size);
  errno = EINTR;
  return -1;
}

} // namespace

std::string StandardStreams::FileNamed(std::string_view name) {
  const std::string &path = folder.Path();
  return path.empty() ? std::string() : kit::JoinPath(path, std::string(name));
}

bool StandardStreams::ReadInput(std::string &error) {
  std::ofstream file(InputFile(), std::ios::binary);
  std::array<char, 1 << 16> buffer{};
  ssize_t count = 0;
  while (file && (count = ReadSome(buffer.data(), buffer.size())) > 0)
    file.write(buffer.data(), count);
  if (count < 0 && !host::IsInterrupted())
    error = "standard input cannot be read: " + std::generic_category().message(errno);
  file.close();
  if (!file)
    error = "there is no room for a copy of standard input in the temporary folder";
  return count == 0 && error.empty();
}

bool StandardStreams::WriteOutput() {
  std::ifstream file(OutputFile(), std::ios::binary);
  std::array<char, 1 << 16> buffer{};
  while (file.read(buffer.data(), buffer.size()) || file.gcount() > 0)
    if (const auto count = static_cast<size_t>(file.gcount()); std::fwrite(buffer.data(), 1, count, stdout) != count)
      return false;
  return std::fflush(stdout) == 0;
}

} // namespace cli
