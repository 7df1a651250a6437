#include "bridge/java_home.h"

#include "kit/paths.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace bridge {

namespace {

constexpr const char *installedJavas = "/usr/lib/jvm";

// From a line such as JAVA_VERSION="17.0.21", or "1.8.0_392" as it was written before 9.
int ReadVersion(const std::string &home) {
  std::ifstream release(home + "/release");
  constexpr std::string_view key = "JAVA_VERSION=\"";
  for (std::string line; std::getline(release, line);) {
    if (!line.starts_with(key))
      continue;
    const std::string version = line.substr(key.size());
    return std::atoi(version.c_str() + (version.starts_with("1.") ? 2 : 0));
  }
  return 0;
}

std::string FindLibrary(const std::string &home) {
  for (const char *place : {"/lib/server/libjvm.so", "/jre/lib/amd64/server/libjvm.so", "/lib/client/libjvm.so"})
    if (kit::IsFile(home + place))
      return home + place;
  return {};
}

std::string FindOnPath() {
  const char *path = std::getenv("PATH");
  std::string_view rest = path ? path : "";
  while (!rest.empty()) {
    const size_t end = std::min(rest.find(':'), rest.size());
    const std::string program = kit::JoinPath(rest.substr(0, end), "java");
    rest.remove_prefix(std::min(end + 1, rest.size()));
    char real[PATH_MAX];
    if (kit::IsFile(program) && realpath(program.c_str(), real))
      return kit::FolderOf(kit::FolderOf(real)); // …/bin/java
  }
  return {};
}

std::vector<std::string> InstalledHomes() {
  std::vector<std::string> homes;
  std::error_code error;
  for (std::filesystem::directory_iterator at(installedJavas, error), end; !error && at != end; at.increment(error))
    if (!FindLibrary(at->path().string()).empty())
      homes.push_back(at->path().string());
  std::ranges::sort(homes, [](const std::string &left, const std::string &right) {
    const int leftVersion = ReadVersion(left);
    const int rightVersion = ReadVersion(right);
    return leftVersion != rightVersion ? leftVersion > rightVersion : left < right;
  });
  const std::string standard = std::string(installedJavas) + "/default-java";
  if (!FindLibrary(standard).empty())
    homes.insert(homes.begin(), standard);
  return homes;
}

// Whether this ends the search.
bool Examine(const std::string &home, const char *source, JavaSearch &search) {
  const std::string place = home + " (" + source + ")";
  JavaHome java{home, FindLibrary(home), ReadVersion(home)};
  if (java.library.empty()) {
    search.places.push_back(place + ": no libjvm.so there");
  } else if (java.version != 0 && java.version < oldestJava) {
    search.places.push_back(place + ": Java " + std::to_string(java.version) + " is too old");
  } else {
    search.found = std::move(java);
    return true;
  }
  return false;
}

} // namespace

JavaSearch FindJava(const std::string &configured) {
  JavaSearch search;
  if (!configured.empty()) {
    (void)Examine(configured, "java_home", search);
    return search;
  }
  const char *variable = std::getenv("JAVA_HOME");
  if (variable && *variable && Examine(variable, "JAVA_HOME", search))
    return search;
  const std::vector<std::string> installed = InstalledHomes();
  if (installed.empty())
    search.places.push_back(std::string(installedJavas) + ": no Java there");
  for (const std::string &home : installed)
    if (Examine(home, "installed", search))
      return search;
  const std::string onPath = FindOnPath();
  if (onPath.empty())
    search.places.emplace_back("no java on the path");
  else
    (void)Examine(onPath, "java on the path", search);
  return search;
}

} // namespace bridge
