#include "processors/java/class_archive.h"

#include "kit/hash.h"
#include "kit/paths.h"
#include "processors/java/archive_writer.h"
#include "processors/java/own_folder.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace fs = std::filesystem;

namespace processors {

namespace {

constexpr auto maxUnused = std::chrono::hours(24 * 30);
// Says what the archive is, and what all its files were like when it was written; written last.
constexpr const char *manifestName = "ready";
// The value of VLXSLT_NO_CLASS_ARCHIVE that lets archives be used, but none be written behind a run.
constexpr std::string_view noNewArchive = "new";
// Options by which users manage archives themselves; Java refuses most of them together with ours.
constexpr std::array ownWays = {"-Xshare",
                                "-XX:SharedArchiveFile",
                                "-XX:SharedClassListFile",
                                "-XX:AOT",
                                "ArchiveClassesAtExit",
                                "AutoCreateSharedArchive",
                                "DumpLoadedClassList",
                                "UseSharedSpaces"};

bool IsManagedByUser(const std::vector<std::string> &options) {
  const auto manages = [](std::string_view text) {
    return std::ranges::any_of(ownWays, [text](const char *way) { return text.find(way) != text.npos; });
  };
  const auto isSetTo = [&](const char *variable) {
    const char *value = std::getenv(variable);
    return value && manages(value);
  };
  return std::ranges::any_of(options, manages) || isSetTo("JAVA_TOOL_OPTIONS") || isSetTo("_JAVA_OPTIONS");
}

std::string FindCacheFolder() {
  const std::string cache = kit::PersonalFolder("XDG_CACHE_HOME", ".cache");
  return cache.empty() ? cache : kit::JoinPath(cache, "vlxslt");
}

std::string InstalledFolder() { return kit::JoinPath(OwnFolder(), "start"); }

// "SIZE MILLISECONDS PATH", as the writer's manifest has it.
std::string DescribeFile(const std::string &file) {
  struct stat status {};
  if (stat(file.c_str(), &status) != 0)
    return "missing " + file;
  const int64_t time = int64_t{status.st_mtim.tv_sec} * 1000 + status.st_mtim.tv_nsec / 1'000'000;
  return std::to_string(status.st_size) + ' ' + std::to_string(time) + ' ' + file;
}

std::string NameOf(const ArchiveSubject &subject) {
  std::string key = DescribeFile(subject.library) + '\n' + subject.factory + '\n';
  for (const std::string &file : subject.classPath)
    key += DescribeFile(file) + '\n';
  for (const std::string &option : subject.options)
    key += option + '\n';
  std::ostringstream name;
  name << "start-" << std::hex << kit::Hash(key);
  return name.str();
}

// Java runs what lies there: no one else may have put it there.
bool IsTrusted(const std::string &folder) {
  struct stat status {};
  return stat(folder.c_str(), &status) == 0 && (status.st_uid == geteuid() || status.st_uid == 0) &&
         (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

// The path of a line of the manifest, if the file is still as it says.
std::optional<std::string> PathOfUnchanged(const std::string &line) {
  const size_t time = line.find(' ');
  const size_t path = time == line.npos ? time : line.find(' ', time + 1);
  if (path == line.npos || DescribeFile(line.substr(path + 1)) != line)
    return std::nullopt;
  return line.substr(path + 1);
}

// Archives of class paths that are no longer in use would pile up.
void DropUnused(const std::string &cache) {
  std::error_code error;
  const auto now = fs::file_time_type::clock::now();
  for (const auto &entry : fs::directory_iterator(cache, error)) {
    const std::string name = entry.path().filename().string();
    std::error_code failed;
    auto used = fs::last_write_time(entry.path() / manifestName, failed);
    if (failed)
      used = entry.last_write_time(failed);
    if ((name.starts_with("start-") || name.starts_with("classes-")) && !failed && now - used > maxUnused)
      fs::remove_all(entry.path(), failed);
  }
}

} // namespace

ClassArchive::ClassArchive(ArchiveSubject given) : subject(std::move(given)), classPath(subject.classPath) {
  const char *refusal = std::getenv("VLXSLT_NO_CLASS_ARCHIVE");
  const bool writesNone = refusal && std::string_view(refusal) == noNewArchive;
  if ((refusal && !writesNone) || IsManagedByUser(subject.options))
    return;
  const std::string name = NameOf(subject);
  if (Read(kit::JoinPath(InstalledFolder(), name)))
    return;
  const std::string cache = FindCacheFolder();
  if (cache.empty())
    return;
  folder = kit::JoinPath(cache, name);
  // That it is used shows in its time.
  std::error_code error;
  if (Read(folder))
    fs::last_write_time(kit::JoinPath(folder, manifestName), fs::file_time_type::clock::now(), error);
  else if (writesNone)
    folder.clear();
}

bool ClassArchive::Read(const std::string &from) {
  std::ifstream manifest(kit::JoinPath(from, manifestName));
  std::vector<std::string> paths;
  for (std::string line; std::getline(manifest, line);) {
    const std::optional<std::string> path = PathOfUnchanged(line);
    if (!path)
      return false;
    paths.push_back(*path);
  }
  if (paths.size() != subject.classPath.size() + 1 || !IsTrusted(from))
    return false;
  archive = paths.front();
  classPath.assign(paths.begin() + 1, paths.end());
  return true;
}

std::string ClassArchive::Option() const {
  if (archive.empty())
    return {};
  return (archive.ends_with(".aot") ? "-XX:AOTCache=" : "-XX:SharedArchiveFile=") + archive;
}

std::string ClassArchive::OriginalOf(const std::string &jar) const {
  // Java names jars without links.
  const auto found = std::ranges::find(classPath, kit::RealPath(jar), kit::RealPath);
  return found == classPath.end() ? jar
                                  : kit::RealPath(subject.classPath[static_cast<size_t>(found - classPath.begin())]);
}

void ClassArchive::WriteInBackground(const std::vector<std::string> &classNames) const {
  std::error_code error;
  if (!IsMissing() || (fs::create_directories(kit::FolderOf(folder), error), error))
    return;
  DropUnused(kit::FolderOf(folder));
  ArchiveWriter(subject, folder).Start(classNames);
}

bool ClassArchive::Write() {
  const std::string name = NameOf(subject);
  const std::string installed = InstalledFolder();
  std::error_code error;
  fs::create_directories(installed, error);
  if (kit::IsWritable(installed))
    folder = kit::JoinPath(installed, name);
  else if (!folder.empty())
    fs::create_directories(kit::FolderOf(folder), error);
  return !folder.empty() && (Read(folder) || (ArchiveWriter(subject, folder).Run() && Read(folder)));
}

} // namespace processors
