#include "host/resident/java_state.h"

#include "kit/paths.h"
#include "kit/read_file.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <system_error>
#include <vector>

namespace fs = std::filesystem;

namespace resident {

namespace {

// To look at more than that would take longer than it saves.
constexpr int maxFilesOfFolder = 5000;

std::string DescribeFile(const std::string &path) {
  struct stat found {};
  if (stat(path.c_str(), &found) != 0)
    return path + "|none\n";
  std::ostringstream text;
  text << path << '|' << found.st_dev << '|' << found.st_ino << '|' << found.st_size << '|' << found.st_mtim.tv_sec
       << '.' << found.st_mtim.tv_nsec << '|' << found.st_ctim.tv_sec << '.' << found.st_ctim.tv_nsec << '\n';
  return text.str();
}

// A folder with too many files is never the same.
std::string DescribeFolder(const std::string &path) {
  static int neverTwice = 0;
  std::string text = DescribeFile(path);
  int count = 0;
  std::error_code error;
  for (fs::recursive_directory_iterator entries(path, error), end; !error && entries != end; entries.increment(error)) {
    if (++count > maxFilesOfFolder)
      return path + "|" + std::to_string(++neverTwice) + '\n';
    text += DescribeFile(entries->path().string());
  }
  return text;
}

constexpr size_t maxCatalogs = 1000;

// The catalogs that a catalog goes on to, read again when the file has changed.
const std::vector<std::string> &FindNextCatalogs(const std::string &path, const std::string &state) {
  struct Known {
    std::string state;
    std::vector<std::string> next;
  };
  static std::map<std::string, Known> known;
  Known &file = known[path];
  if (file.state == state)
    return file.next;
  file = {state, {}};
  static const std::regex reference(R"(\scatalog\s*=\s*["']([^"']+)["'])");
  const std::string text = kit::ReadFile(path).bytes;
  for (std::sregex_iterator each(text.begin(), text.end(), reference), end; each != end; ++each) {
    const std::string named = kit::UrlToPath((*each)[1].str());
    file.next.push_back(kit::IsAbsolutePath(named) ? named : kit::JoinPath(kit::FolderOf(path), named));
  }
  return file.next;
}

std::string DescribeCatalogs(std::vector<std::string> paths) {
  std::string text;
  std::set<std::string> seen;
  for (size_t index = 0; index < paths.size() && index < maxCatalogs; ++index) {
    const std::string path = paths[index];
    if (!seen.insert(path).second)
      continue;
    const std::string state = DescribeFile(path);
    text += state;
    const std::vector<std::string> &next = FindNextCatalogs(path, state);
    paths.insert(paths.end(), next.begin(), next.end());
  }
  return text;
}

} // namespace

std::string DescribeJavaNeeds(const host::Configuration &configuration) {
  std::string text;
  for (const std::string &option : configuration.javaOptions)
    text.append(option).push_back('\n');
  const char *variable = std::getenv("JAVA_HOME");
  for (const std::string &home :
       {configuration.javaHome, std::string(variable ? variable : ""), std::string("/usr/lib/jvm/default-java")})
    if (!home.empty())
      text += DescribeFile(kit::JoinPath(home, "release"));
  for (const host::ProcessorSetting &processor : configuration.processors) {
    std::istringstream entries(processor.classPath);
    for (std::string entry; std::getline(entries, entry, ';');)
      text += kit::IsFolder(entry) ? DescribeFolder(entry) : DescribeFile(entry);
  }
  return text + DescribeCatalogs(configuration.catalogs);
}

bool HasLoadedJava() {
  void *library = dlopen("libjvm.so", RTLD_LAZY | RTLD_NOLOAD);
  if (library)
    dlclose(library);
  return library;
}

} // namespace resident
