#include "kit/unfinished_files.h"

#include "kit/paths.h"
#include "kit/system_call.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <random>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace kit {

namespace {

constexpr int maxNames = 100;
constexpr auto maxAge = std::chrono::hours(24);

// Short, and the same in every program that makes it.
std::string HashOf(std::string_view text) {
  uint32_t hash = 2166136261U;
  for (const char letter : text)
    hash = (hash ^ static_cast<unsigned char>(letter)) * 16777619U;
  std::array<char, 9> digits{};
  static_cast<void>(std::snprintf(digits.data(), digits.size(), "%08x", static_cast<unsigned>(hash)));
  return digits.data();
}

// What process numbers belong to: a boot of a kernel and, with containers, a name space in it. Empty when that cannot
// be found out.
std::string SystemName() {
  std::string boot;
  std::ifstream("/proc/sys/kernel/random/boot_id") >> boot;
  std::error_code error;
  const std::string space = fs::read_symlink("/proc/self/ns/pid", error).string();
  return boot.empty() || error ? std::string() : HashOf(boot + space);
}

const std::string &OwnSystem() {
  static const std::string name = SystemName();
  return name;
}

// The number behind "SYSTEM-" of this system; 0 for a file of another one.
pid_t ProcessOf(std::string_view name) {
  const std::string &system = OwnSystem();
  if (system.empty() || !name.starts_with(system + "-"))
    return 0;
  name.remove_prefix(system.size() + 1);
  pid_t process = 0;
  const auto read = std::from_chars(name.data(), name.data() + name.size(), process);
  return read.ec == std::errc() && read.ptr != name.data() + name.size() && *read.ptr == '-' ? process : 0;
}

std::string RandomDigits() {
  std::random_device random;
  std::array<char, 17> digits{};
  static_cast<void>(std::snprintf(digits.data(), digits.size(), "%08x%08x", random(), random()));
  return digits.data();
}

int OpenNew(const std::string &path, unsigned mode) {
  constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  return Repeat([&] { return open(path.c_str(), flags, mode); });
}

bool IsAbandoned(const fs::directory_entry &entry) {
  const std::string name = entry.path().filename().string();
  std::error_code error;
  if (!name.starts_with(unfinishedPrefix) || entry.symlink_status(error).type() != fs::file_type::regular)
    return false;
  if (const pid_t process = ProcessOf(std::string_view(name).substr(unfinishedPrefix.size())); process > 0)
    return kill(process, 0) != 0 && errno == ESRCH;
  const fs::file_time_type written = entry.last_write_time(error);
  return !error && fs::file_time_type::clock::now() - written > maxAge;
}

} // namespace

const std::string &OwnUnfinishedPrefix() {
  static const std::string prefix = std::string(unfinishedPrefix) + (OwnSystem().empty() ? "unknown" : OwnSystem()) +
                                    "-" + std::to_string(getpid()) + "-";
  return prefix;
}

UnfinishedFile MakeUnfinishedFile(const std::string &folder, unsigned mode) {
  UnfinishedFile made;
  for (int name = 0; name < maxNames; ++name) {
    made.path = JoinPath(folder, OwnUnfinishedPrefix() + RandomDigits());
    made.file = OpenNew(made.path, mode);
    if (made.file >= 0 || errno != EEXIST)
      break;
  }
  return made;
}

Reservation ReserveFile(const std::string &path) {
  const int file = OpenNew(path, 0600);
  if (file < 0)
    return errno == EEXIST ? Reservation::Taken : Reservation::Failed;
  close(file);
  return Reservation::Made;
}

void RemoveAbandonedFiles(const std::string &folder) noexcept try {
  std::error_code error;
  for (fs::directory_iterator entries(folder, error), end; !error && entries != end; entries.increment(error))
    if (IsAbandoned(*entries)) {
      std::error_code ignored;
      fs::remove(entries->path(), ignored);
    }
} catch (...) {
  return; // for lack of memory; a later run removes them
}

} // namespace kit
