#include "host/desktop/save_preferences.h"

#include "kit/atomic_file.h"
#include "kit/paths.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace desktop {

namespace {

std::string ReadText(const std::string &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string WriteWhole(const std::string &path, const std::string &text) {
  std::error_code error;
  std::filesystem::create_directories(kit::FolderOf(path), error);
  kit::AtomicFile file(path);
  return file.Write(text) && file.Commit() ? std::string() : file.Error();
}

} // namespace

SavedPreferences SavePreferences(const host::ConfigurationChange &change, const host::Installation &installation) {
  const bool isOwn = !change.before.source.empty() && !change.before.isInstalledDefault;
  const std::string path = isOwn ? change.before.source : host::OwnConfigurationPath();
  if (path.empty())
    return {{}, "there is no home folder to keep preferences in"};
  const std::string textBefore = isOwn ? ReadText(path) : std::string();
  host::EditedConfiguration edited = isOwn ? host::EditConfiguration(textBefore, change)
                                           : host::EditedConfiguration{host::WriteConfiguration(change.after), {}};
  if (!edited.error.empty())
    return {{}, path + ": " + edited.error};
  if (const std::string error = WriteWhole(path, edited.text); !error.empty())
    return {{}, error};
  host::ConfigurationResult read = host::ReadConfiguration(path, installation);
  if (read.problems.empty())
    return {std::move(read.configuration), {}};
  // What cannot be read back must not stay.
  if (isOwn)
    static_cast<void>(WriteWhole(path, textBefore));
  return {{}, read.problems.front()};
}

} // namespace desktop
