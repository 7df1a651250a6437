#include "bridge/class_archive.h"

#include "kit/paths.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <unistd.h>

namespace bridge {

namespace {

namespace fs = std::filesystem;

constexpr size_t keptArchives = 4;

// FNV-1a: it only has to tell configurations apart.
class Hash {
public:
  void Add(std::string_view text) {
    for (const char c : text)
      AddByte(static_cast<uint8_t>(c));
    AddByte(0);
  }
  [[nodiscard]] std::string Text() const {
    std::array<char, 17> digits{};
    std::snprintf(digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(state));
    return digits.data();
  }

private:
  void AddByte(uint8_t byte) { state = (state ^ byte) * 1099511628211U; }
  uint64_t state = 14695981039346656037U;
};

std::string CacheFolder() {
  const char *off = std::getenv("VLXSLT_NO_CLASS_ARCHIVE");
  if (off && *off)
    return {};
  const char *cache = std::getenv("XDG_CACHE_HOME");
  if (cache && kit::IsAbsolutePath(cache))
    return kit::JoinPath(cache, "vlxslt");
  const char *home = std::getenv("HOME");
  return home && *home ? kit::JoinPath(home, ".cache/vlxslt") : std::string();
}

void AddFile(Hash &hash, const std::string &file) {
  std::error_code error;
  hash.Add(file);
  if (!fs::is_regular_file(file, error))
    return;
  hash.Add(std::to_string(fs::file_size(file, error)));
  hash.Add(std::to_string(fs::last_write_time(file, error).time_since_epoch().count()));
}

// Archives of earlier versions are never used again.
void RemoveOldArchives(const fs::path &folder) {
  std::error_code error;
  std::vector<std::pair<fs::file_time_type, fs::path>> archives;
  for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
    if (at->path().extension() == ".jsa")
      archives.emplace_back(fs::last_write_time(at->path(), error), at->path());
  std::ranges::sort(archives, std::greater());
  for (size_t i = keptArchives; i < archives.size(); ++i)
    fs::remove(archives[i].second, error);
}

} // namespace

ClassArchive::ClassArchive(const std::vector<std::string> &files, const std::vector<std::string> &options) {
  const std::string folder = CacheFolder();
  if (folder.empty())
    return;
  Hash hash;
  for (const std::string &file : files)
    AddFile(hash, file);
  for (const std::string &option : options)
    hash.Add(option);
  archive = kit::JoinPath(folder, "classes-" + hash.Text() + ".jsa");
  if (kit::IsFile(archive))
    return;
  std::error_code error;
  fs::create_directories(folder, error);
  if (access(folder.c_str(), W_OK) == 0)
    written = archive + "." + std::to_string(getpid());
  else
    archive.clear();
}

std::vector<std::string> ClassArchive::JavaOptions() const {
  if (archive.empty())
    return {};
  if (IsToBeWritten())
    return {"-XX:ArchiveClassesAtExit=" + written};
  return {"-Xshare:auto", "-XX:SharedArchiveFile=" + archive};
}

void ClassArchive::Finish(Verdict verdict) {
  if (!IsToBeWritten())
    return;
  std::error_code error;
  if (verdict == Verdict::Keep && kit::IsFile(written)) {
    fs::rename(written, archive, error);
    RemoveOldArchives(fs::path(archive).parent_path());
  }
  fs::remove(written, error);
  written.clear();
}

} // namespace bridge
