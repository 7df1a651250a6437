#include "processors/java/archive_writer.h"

#include "kit/paths.h"
#include "kit/program_words.h"

#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace processors {

namespace {

// So long the list of a writer that died, or failed, keeps others from trying.
constexpr auto claimTime = std::chrono::minutes(5);

// Names of files are UTF-8, whatever the locale says.
std::vector<std::string> ReadEnvironment() {
  std::vector<std::string> variables = {"LC_ALL=C.UTF-8"};
  for (char **variable = environ; *variable; ++variable)
    if (const std::string text = *variable; !text.starts_with("LC_ALL="))
      variables.push_back(text);
  return variables;
}

// In a child of a process with many threads, where only plain system calls are allowed.
[[noreturn]] void BecomeJava(const std::vector<char *> &words, const std::vector<char *> &environment) {
  const int null = open("/dev/null", O_RDWR);
  for (const int standard : {0, 1, 2})
    dup2(null, standard);
  close_range(3, ~0U, 0);
  execve(words.front(), words.data(), environment.data());
  _exit(127);
}

} // namespace

ArchiveWriter::ArchiveWriter(const ArchiveSubject &subject, const std::string &folder) : list(folder + ".list") {
  std::string classPath;
  for (const std::string &entry : subject.classPath)
    classPath += (classPath.empty() ? "" : ":") + entry;
  // The layer is the first of its class path; it needs no more to begin.
  words = {subject.javaHome + "/bin/java",
           "-XX:TieredStopAtLevel=1",
           "-XX:+UseSerialGC",
           "-Dfile.encoding=UTF-8",
           "-cp",
           subject.classPath.front(),
           "vlxslt.ArchiveWriter",
           folder,
           list,
           subject.factory,
           classPath};
  words.insert(words.end(), subject.options.begin(), subject.options.end());
  environment = ReadEnvironment();
}

bool ArchiveWriter::ClaimList() const {
  std::error_code error;
  if (fs::file_time_type::clock::now() - fs::last_write_time(list, error) > claimTime && !error)
    fs::remove(list, error);
  const int file = open(list.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
  if (file >= 0)
    close(file);
  return file >= 0;
}

void ArchiveWriter::Start(const std::vector<std::string> &classNames) {
  if (!kit::IsFile(words.front()) || !ClaimList())
    return;
  std::ofstream names(list);
  for (const std::string &name : classNames)
    names << name << '\n';
  names.close();
  const std::vector<char *> command = kit::PointersTo(words);
  const std::vector<char *> variables = kit::PointersTo(environment);
  // Twice, so that the writer is no child of this process, which would have to wait for it.
  const pid_t between = fork();
  if (between == 0) {
    if (fork() == 0) {
      setsid();
      (void)!nice(10);
      BecomeJava(command, variables);
    }
    _exit(0);
  }
  if (between > 0)
    waitpid(between, nullptr, 0);
}

bool ArchiveWriter::Run() {
  // What another process has begun is done again.
  std::ofstream(list).close();
  const std::vector<char *> command = kit::PointersTo(words);
  const std::vector<char *> variables = kit::PointersTo(environment);
  const pid_t java = fork();
  if (java == 0)
    BecomeJava(command, variables);
  int status = 1;
  return java > 0 && waitpid(java, &status, 0) == java && status == 0;
}

} // namespace processors
