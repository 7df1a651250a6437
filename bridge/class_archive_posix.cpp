#include "bridge/class_archive.h"

#include "kit/paths.h"

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace bridge {

namespace {

constexpr auto longestUnused = std::chrono::hours(24 * 30);

std::string FindCacheFolder() {
  if (std::getenv("VLXSLT_NO_CLASS_ARCHIVE"))
    return {};
  const char *cache = std::getenv("XDG_CACHE_HOME");
  const char *home = std::getenv("HOME");
  if (cache && *cache == '/')
    return kit::JoinPath(cache, "vlxslt");
  return home && *home == '/' ? kit::JoinPath(home, ".cache/vlxslt") : std::string();
}

// FNV-1a; a collision would be noticed by the virtual machine, which checks the class path itself.
uint64_t Hash(const std::string &text) {
  uint64_t hash = 0xcbf29ce484222325U;
  for (const char letter : text)
    hash = (hash ^ static_cast<unsigned char>(letter)) * 0x100000001b3U;
  return hash;
}

std::string DescribeFile(const std::string &file) {
  std::error_code error;
  const auto size = fs::file_size(file, error);
  const auto time = fs::last_write_time(file, error).time_since_epoch().count();
  return file + '|' + std::to_string(size) + '|' + std::to_string(time) + '\n';
}

// Archives of class paths that nobody uses any more would pile up.
void DropUnused(const std::string &folder) {
  std::error_code error;
  const auto now = fs::file_time_type::clock::now();
  for (const auto &entry : fs::directory_iterator(folder, error))
    if (std::error_code failed; entry.path().filename().string().starts_with("classes-") &&
                                now - entry.last_write_time(failed) > longestUnused && !failed)
      fs::remove(entry.path(), failed);
}

} // namespace

ClassArchive::ClassArchive(const std::vector<std::string> &files, const std::vector<std::string> &options) {
  const std::string folder = FindCacheFolder();
  std::error_code error;
  if (folder.empty() || (fs::create_directories(folder, error), error))
    return;
  std::string key;
  for (const std::string &file : files)
    key += DescribeFile(file);
  for (const std::string &option : options)
    key += option + '\n';
  std::ostringstream name;
  name << "classes-" << std::hex << Hash(key) << ".jsa";
  path = kit::JoinPath(folder, name.str());
  if (kit::IsFile(path))
    fs::last_write_time(path, fs::file_time_type::clock::now(), error);
  else
    written = path + "." + std::to_string(getpid());
}

std::string ClassArchive::Option() const {
  if (path.empty())
    return {};
  return written.empty() ? "-XX:SharedArchiveFile=" + path : "-XX:ArchiveClassesAtExit=" + written;
}

void ClassArchive::Keep() const {
  std::error_code error;
  if (written.empty() || !kit::IsFile(written))
    return;
  fs::rename(written, path, error);
  DropUnused(kit::FolderOf(path));
}

} // namespace bridge
