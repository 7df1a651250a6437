#include "host/record/kept_outputs.h"

#include "host/record/time_text.h"
#include "kit/paths.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <regex>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace host {

namespace {

constexpr int maxTries = 10000;
constexpr auto minAge = std::chrono::hours(1);

// Empty when the environment names no place.
std::string FindStateFolder() {
  const std::string state = kit::PersonalFolder("XDG_STATE_HOME", ".local/state");
  return state.empty() ? state : kit::JoinPath(state, "vlxslt/opened");
}

// "name.ext", "name-2.ext" and so on.
std::string NumberName(const std::string &name, int number) {
  if (number == 1)
    return name;
  const fs::path path = name;
  return (path.parent_path() / path.stem()).string() + "-" + std::to_string(number) + path.extension().string();
}

// A link where the file system has them; an existing target is never replaced.
std::error_code LinkOrCopy(const std::string &from, const std::string &to) {
  std::error_code error;
  fs::create_hard_link(from, to, error);
  if (!error || error == std::errc::file_exists)
    return error;
  error.clear();
  fs::copy_file(from, to, fs::copy_options::none, error);
  std::error_code ignored;
  // What does not fit on the disk leaves no half of it.
  if (error && error != std::errc::file_exists)
    fs::remove(to, ignored);
  return error;
}

bool IsYoung(const fs::path &folder) {
  std::error_code error;
  const auto changed = fs::last_write_time(folder, error);
  return error || fs::file_time_type::clock::now() - changed < minAge;
}

} // namespace

std::string KeptOutputs::Keep(const std::string &path, std::string &error, std::string name) {
  // What failed once is not tried again when it is taken.
  copies[path] = path;
  if (runFolder.empty() && !MakeRunFolder(error))
    return path;
  if (name.empty())
    name = kit::FileNameOf(path);
  std::error_code failure;
  fs::create_directories(kit::FolderOf(kit::JoinPath(runFolder, name)), failure);
  for (int number = 1; !failure || (failure == std::errc::file_exists && number <= maxTries); ++number) {
    std::string copy = kit::JoinPath(runFolder, NumberName(name, number));
    failure = LinkOrCopy(path, copy);
    if (!failure)
      return copies[path] = std::move(copy);
  }
  error = "cannot keep " + path + " in " + runFolder + ": " + failure.message();
  return path;
}

std::string KeptOutputs::Take(const std::string &path, std::string &error) {
  if (!copies.contains(path))
    (void)Keep(path, error);
  return copies.extract(path).mapped();
}

bool KeptOutputs::MakeRunFolder(std::string &error) {
  if (base.empty())
    base = FindStateFolder();
  if (base.empty()) {
    error = "there is no folder to keep outputs in: neither XDG_STATE_HOME nor HOME is set";
    return false;
  }
  std::error_code failure;
  fs::create_directories(base, failure);
  const std::string name = FormatTime(std::chrono::system_clock::now(), "%Y%m%d-%H%M%S-") + std::to_string(getpid());
  for (int number = 1; !failure && number <= maxTries; ++number) {
    const std::string folder = kit::JoinPath(base, NumberName(name, number));
    if (mkdir(folder.c_str(), 0700) == 0) {
      runFolder = folder;
      DropOldRuns();
      return true;
    }
    if (errno != EEXIST)
      failure.assign(errno, std::generic_category());
  }
  error = "cannot make a folder for outputs in " + base + ": " + failure.message();
  return false;
}

void KeptOutputs::DropOldRuns() const {
  static const std::regex ours(R"(\d{8}-\d{6}-\d+(-\d+)?)");
  std::vector<fs::path> runs;
  std::error_code failure;
  for (fs::directory_iterator entries(base, failure), end; !failure && entries != end; entries.increment(failure))
    if (std::error_code ignored; entries->symlink_status(ignored).type() == fs::file_type::directory &&
                                 std::regex_match(entries->path().filename().string(), ours))
      runs.push_back(entries->path());
  // The names sort by time.
  std::ranges::sort(runs, std::ranges::greater());
  for (size_t index = maxRuns; index < runs.size(); ++index)
    if (!IsYoung(runs[index]))
      fs::remove_all(runs[index], failure);
}

} // namespace host
