#include "bridge/program_files.h"

#include "kit/paths.h"

#include <algorithm>
#include <dlfcn.h>
#include <filesystem>

namespace bridge {

namespace {

std::string OwnFile() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<void *>(&KeepLoaded), &info) == 0 || !info.dli_fname)
    return {};
  return kit::AbsolutePath(info.dli_fname);
}

// The bridge may also be linked into a program for tests, in bin/ of the same tree.
std::string JarFolder() {
  const std::string own = kit::FolderOf(OwnFile());
  const std::string library = kit::AbsolutePath(kit::JoinPath(own, "../lib/vlxslt"));
  return kit::IsFile(kit::JoinPath(own, "vlxslt-bridge.jar")) ? own : library;
}

std::vector<std::string> ListJars(const std::string &folder) {
  std::vector<std::string> jars;
  std::error_code error;
  for (std::filesystem::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
    if (at->path().extension() == ".jar")
      jars.push_back(at->path().string());
  std::ranges::sort(jars);
  return jars;
}

} // namespace

std::vector<std::string> ComposeClassPath(const std::string &userEntries) {
  const std::string folder = JarFolder();
  std::vector<std::string> entries{kit::JoinPath(folder, "vlxslt-bridge.jar")};
  for (std::string &jar : ListJars(kit::JoinPath(folder, "parser")))
    entries.push_back(std::move(jar));
  std::vector<std::string> folders;
  const auto add = [&](const std::string &entry) {
    std::vector<std::string> &target = kit::IsFolder(entry) ? folders : entries;
    if (!entry.empty() && std::ranges::find(target, entry) == target.end())
      target.push_back(entry);
  };
  for (size_t at = 0; at < userEntries.size();) {
    const size_t end = std::min(userEntries.find(';', at), userEntries.size());
    add(userEntries.substr(at, end - at));
    at = end + 1;
  }
  entries.insert(entries.end(), folders.begin(), folders.end());
  return entries;
}

void KeepLoaded() { (void)dlopen(OwnFile().c_str(), RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE); }

} // namespace bridge
