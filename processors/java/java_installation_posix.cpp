#include "processors/java/java_installation.h"

#include "kit/paths.h"
#include "report/messages.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace processors {

namespace {

constexpr int minVersion = 17;
// Keeps linked classes in a cache; measured: processors start in two thirds of the processor time.
constexpr int fasterVersion = 25;
constexpr std::array libraryPlaces = {"lib/server/libjvm.so", "jre/lib/amd64/server/libjvm.so", "lib/client/libjvm.so"};

std::string FindLibrary(const std::string &home) {
  for (const char *place : libraryPlaces)
    if (std::string library = kit::JoinPath(home, place); kit::IsFile(library))
      return library;
  return {};
}

// JAVA_VERSION="17.0.2" of the file that every Java carries.
std::string ReadVersion(const std::string &home) {
  std::ifstream release(kit::JoinPath(home, "release"));
  for (std::string line; std::getline(release, line);)
    if (line.starts_with("JAVA_VERSION=\"") && line.size() > 15)
      return line.substr(14, line.rfind('"') - 14);
  return {};
}

// "1.8.0_392" is 8, "17.0.2" is 17; 0 when unknown.
int MajorVersion(const std::string &version) {
  const int first = std::atoi(version.c_str());
  return first == 1 && version.size() > 2 ? std::atoi(version.c_str() + 2) : first;
}

std::string FromEnvironment(const char *name) {
  const char *value = std::getenv(name);
  return value ? value : "";
}

// The home of the `java` that the shell would start.
std::string HomeOnPath() {
  const std::string path = FromEnvironment("PATH");
  for (size_t start = 0; start < path.size();) {
    const size_t end = std::min(path.find(':', start), path.size());
    std::error_code error;
    const fs::path program = fs::canonical(kit::JoinPath(path.substr(start, end - start), "java"), error);
    if (!error)
      return program.parent_path().parent_path().string();
    start = end + 1;
  }
  return {};
}

// The folders that hold installations.
std::vector<std::string> InstallationFolders() {
  std::vector<std::string> folders;
  std::istringstream given(FromEnvironment("VLXSLT_JAVA_FOLDERS"));
  for (std::string folder; std::getline(given, folder, ':');)
    folders.push_back(folder);
  if (!folders.empty())
    return folders;
  folders = {"/usr/lib/jvm", "/usr/java", "/opt/java", "/opt"};
  if (const std::string home = FromEnvironment("HOME"); !home.empty())
    folders.insert(folders.end(), {home + "/.sdkman/candidates/java", home + "/.jdks"});
  return folders;
}

std::vector<std::string> HomesToTry() {
  std::vector<std::string> homes = {"/usr/lib/jvm/default-java"};
  if (std::string home = HomeOnPath(); !home.empty())
    homes.push_back(std::move(home));
  const auto chosen = static_cast<std::ptrdiff_t>(homes.size());
  std::error_code error;
  for (const auto &entry : fs::directory_iterator("/usr/lib/jvm", error))
    if (!FindLibrary(entry.path().string()).empty())
      homes.push_back(entry.path().string());
  // The newest first, behind the chosen ones.
  std::sort(homes.begin() + chosen, homes.end(), [](const std::string &left, const std::string &right) {
    const int leftMajor = MajorVersion(ReadVersion(left));
    const int rightMajor = MajorVersion(ReadVersion(right));
    return leftMajor != rightMajor ? leftMajor > rightMajor : left < right;
  });
  return homes;
}

std::string Advice() { return report::LoadMessage(report::MessageId::JavaAdvice); }

JavaInstallation Examine(const std::string &home, const std::string &origin) {
  JavaInstallation found{home, FindLibrary(home), ReadVersion(home), {}};
  const int major = MajorVersion(found.version);
  if (found.library.empty())
    found.problem = report::FormatMessage(report::MessageId::JavaNoInstallation, {home, origin, Advice()});
  else if (major != 0 && major < minVersion)
    found.problem = report::FormatMessage(report::MessageId::JavaTooOld, {home, found.version, Advice()});
  return found;
}

} // namespace

JavaInstallation FindFasterJava(const JavaInstallation &used) {
  JavaInstallation found;
  const int usedMajor = MajorVersion(used.version);
  if (usedMajor == 0 || usedMajor >= fasterVersion)
    return found;
  int newest = fasterVersion - 1;
  for (const std::string &folder : InstallationFolders()) {
    std::error_code error;
    for (const auto &entry : fs::directory_iterator(folder, error)) {
      JavaInstallation other{entry.path().string(), FindLibrary(entry.path().string()), {}, {}};
      if (!other.library.empty())
        other.version = ReadVersion(other.home);
      if (const int major = MajorVersion(other.version); major > newest) {
        newest = major;
        found = std::move(other);
      }
    }
  }
  return found;
}

JavaInstallation FindJava(const std::string &configuredHome) {
  if (!configuredHome.empty())
    return Examine(configuredHome, "java_home");
  if (const std::string home = FromEnvironment("JAVA_HOME"); !home.empty())
    return Examine(home, "JAVA_HOME");
  JavaInstallation tooOld;
  for (const std::string &home : HomesToTry()) {
    JavaInstallation found = Examine(home, "the system");
    if (found.problem.empty())
      return found;
    if (!found.library.empty() && tooOld.home.empty())
      tooOld = found;
  }
  if (tooOld.home.empty())
    tooOld.problem = report::FormatMessage(report::MessageId::JavaNotFound, {Advice()});
  return tooOld;
}

} // namespace processors
