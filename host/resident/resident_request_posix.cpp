#include "host/resident/resident_request.h"

#include "kit/hash.h"
#include "kit/system_call.h"

#include <sys/mman.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

extern char **environ;

namespace resident {

namespace {

struct Header {
  uint32_t fileMask;
  uint32_t argumentCount;
  uint32_t environmentCount;
};

constexpr std::array uncountedVariables = {
    // Of shells and make.
    "_", "PWD", "OLDPWD", "SHLVL", "MAKELEVEL", "MAKEFLAGS", "MFLAGS",
    // Of terminals and sessions.
    "TERM", "COLORTERM", "NO_COLOR", "COLUMNS", "LINES", "WINDOWID", "DISPLAY", "WAYLAND_DISPLAY", "VTE_VERSION",
    "TMUX", "TMUX_PANE", "STY", "WINDOW", "SSH_TTY", "SSH_CLIENT", "SSH_CONNECTION", "XDG_SESSION_ID",
    "XDG_RUNTIME_DIR",
    // Read by this program anew for each request.
    "VLXSLT_CONNECT", "VLXSLT_CONFIG", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "TMPDIR"};

bool Counts(std::string_view setting) {
  return std::ranges::find(uncountedVariables, setting.substr(0, setting.find('='))) == uncountedVariables.end();
}

bool WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = kit::Repeat([&] { return write(file, bytes.data(), bytes.size()); });
    if (count <= 0)
      return false;
    bytes.remove_prefix(static_cast<size_t>(count));
  }
  return true;
}

std::optional<std::string> ReadAll(int file) {
  struct stat found {};
  if (fstat(file, &found) != 0 || !S_ISREG(found.st_mode))
    return std::nullopt;
  std::string bytes(static_cast<size_t>(found.st_size), '\0');
  for (size_t at = 0; at < bytes.size();) {
    const ssize_t count =
        kit::Repeat([&] { return pread(file, bytes.data() + at, bytes.size() - at, static_cast<off_t>(at)); });
    if (count <= 0)
      return std::nullopt;
    at += static_cast<size_t>(count);
  }
  return bytes;
}

bool TakeTexts(std::string_view &bytes, uint32_t count, std::vector<std::string> &texts) {
  for (uint32_t index = 0; index < count; ++index) {
    const size_t end = bytes.find('\0');
    if (end == std::string_view::npos)
      return false;
    texts.emplace_back(bytes.substr(0, end));
    bytes.remove_prefix(end + 1);
  }
  return true;
}

} // namespace

ResidentRequest DescribeRequest(int count, char **arguments) {
  ResidentRequest request;
  // The only way to read it.
  request.fileMask = umask(0);
  umask(request.fileMask);
  request.arguments.assign(arguments, arguments + count);
  for (char **setting = environ; setting && *setting; ++setting)
    request.environment.emplace_back(*setting);
  return request;
}

Descriptor WriteRequest(const ResidentRequest &request) {
  const Header header{request.fileMask, static_cast<uint32_t>(request.arguments.size()),
                      static_cast<uint32_t>(request.environment.size())};
  std::string bytes(sizeof header, '\0');
  std::memcpy(bytes.data(), &header, sizeof header);
  for (const auto *texts : {&request.arguments, &request.environment})
    for (const std::string &text : *texts)
      bytes.append(text).push_back('\0');
  Descriptor file(memfd_create("vlxslt-request", MFD_CLOEXEC));
  return file && WriteAll(file.Get(), bytes) ? std::move(file) : Descriptor();
}

std::optional<ResidentRequest> ReadRequest(int file) {
  const std::optional<std::string> content = ReadAll(file);
  Header header{};
  if (!content || content->size() < sizeof header)
    return std::nullopt;
  std::memcpy(&header, content->data(), sizeof header);
  std::string_view rest = std::string_view(*content).substr(sizeof header);
  ResidentRequest request;
  request.fileMask = header.fileMask;
  const bool isWhole = TakeTexts(rest, header.argumentCount, request.arguments) &&
                       TakeTexts(rest, header.environmentCount, request.environment);
  return isWhole && !request.arguments.empty() ? std::optional(std::move(request)) : std::nullopt;
}

uint64_t FingerprintEnvironment(const std::vector<std::string> &environment) {
  std::vector<std::string> counted;
  std::ranges::copy_if(environment, std::back_inserter(counted), Counts);
  std::ranges::sort(counted);
  std::string joined;
  for (const std::string &setting : counted)
    joined.append(setting).push_back('\0');
  return kit::Hash(joined);
}

} // namespace resident
