#include "processors/java/class_archive.h"

#include "kit/paths.h"

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace processors {

namespace {

constexpr auto maxUnused = std::chrono::hours(24 * 30);

std::string FindCacheFolder() {
  if (std::getenv("VLXSLT_NO_CLASS_ARCHIVE"))
    return {};
  const std::string cache = kit::PersonalFolder("XDG_CACHE_HOME", ".cache");
  return cache.empty() ? cache : kit::JoinPath(cache, "vlxslt");
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

// Archives of class paths that are no longer in use would pile up.
void DropUnused(const std::string &folder) {
  std::error_code error;
  const auto now = fs::file_time_type::clock::now();
  for (const auto &entry : fs::directory_iterator(folder, error))
    if (std::error_code failed; entry.path().filename().string().starts_with("classes-") &&
                                now - entry.last_write_time(failed) > maxUnused && !failed)
      fs::remove(entry.path(), failed);
}

// Made before the fork: nothing may be allocated between fork and exec.
struct ChildCommand {
  std::vector<std::string> words;
  std::vector<char *> pointers;
  std::string written;
  std::string path;
  std::string list;
};

// In a child of a process with many threads, where only plain system calls are allowed: runs Java detached and puts
// its archive in place.
[[noreturn]] void RunDetached(const ChildCommand &command) {
  setsid();
  const int null = open("/dev/null", O_RDWR);
  for (const int standard : {0, 1, 2})
    dup2(null, standard);
  close_range(3, ~0U, 0);
  (void)!nice(10);
  const pid_t java = fork();
  if (java == 0) {
    execv(command.pointers.front(), command.pointers.data());
    _exit(127);
  }
  int status = 1;
  waitpid(java, &status, 0);
  if (status != 0 || rename(command.written.c_str(), command.path.c_str()) != 0)
    unlink(command.written.c_str());
  unlink(command.list.c_str());
  _exit(0);
}

// Of several processes that end at the same time the first writes it; the claim of one that died expires soon.
bool ClaimList(const std::string &list) {
  std::error_code error;
  if (fs::file_time_type::clock::now() - fs::last_write_time(list, error) > std::chrono::minutes(5) && !error)
    fs::remove(list, error);
  const int file = open(list.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
  if (file >= 0)
    close(file);
  return file >= 0;
}

} // namespace

ClassArchive::ClassArchive(const std::vector<std::string> &files, const std::vector<std::string> &texts) {
  const std::string folder = FindCacheFolder();
  std::error_code error;
  if (folder.empty() || (fs::create_directories(folder, error), error))
    return;
  std::string key;
  for (const std::string &file : files)
    key += DescribeFile(file);
  for (const std::string &text : texts)
    key += text + '\n';
  std::ostringstream name;
  name << "classes-" << std::hex << Hash(key) << ".jsa";
  path = kit::JoinPath(folder, name.str());
  isThere = kit::IsFile(path);
  if (isThere)
    fs::last_write_time(path, fs::file_time_type::clock::now(), error);
}

std::string ClassArchive::Option() const { return isThere ? "-XX:SharedArchiveFile=" + path : std::string(); }

void ClassArchive::WriteInBackground(const std::string &javaHome, const std::vector<std::string> &options,
                                     const std::vector<std::string> &classNames) const {
  ChildCommand command{{javaHome + "/bin/java"}, {}, path + "." + std::to_string(getpid()), path, path + ".list"};
  if (!IsMissing() || !kit::IsFile(command.words.front()) || !ClaimList(command.list))
    return;
  DropUnused(kit::FolderOf(path));
  std::ofstream list(command.list);
  for (const std::string &name : classNames)
    list << name << '\n';
  list.close();
  command.words.insert(command.words.end(), options.begin(), options.end());
  for (const std::string &word :
       {"-XX:ArchiveClassesAtExit=" + command.written, std::string("-XX:ErrorFile=/dev/null"),
        std::string("-XX:-CreateCoredumpOnCrash"), std::string("vlxslt.ClassLoading"), command.list})
    command.words.push_back(word);
  for (std::string &word : command.words)
    command.pointers.push_back(word.data());
  command.pointers.push_back(nullptr);
  // Twice, so that the writer is no child of this process, which would have to wait for it.
  const pid_t between = fork();
  if (between == 0) {
    if (fork() == 0)
      RunDetached(command);
    _exit(0);
  }
  if (between > 0)
    waitpid(between, nullptr, 0);
}

} // namespace processors
