#include "host/desktop/save_preferences.h"

#include "kit/atomic_file.h"
#include "kit/paths.h"
#include "kit/read_file.h"
#include "kit/unfinished_files.h"

#include <filesystem>
#include <system_error>

namespace desktop {

namespace {

std::string WriteWhole(const std::string &path, const std::string &text) {
  std::error_code error;
  std::filesystem::create_directories(kit::FolderOf(path), error);
  kit::RemoveAbandonedFiles(kit::FolderOf(kit::FollowLinks(path)));
  kit::AtomicFile file(path);
  return file.Write(text) && file.Commit() ? std::string() : file.Error();
}

// What the command line trusts with for this time only does not become a preference.
host::Configuration WithoutOptions(host::Configuration chosen, const host::Installation &installation) {
  const host::Configuration file = host::ReadConfiguration(chosen.source, installation).configuration;
  chosen.trustedHosts = file.trustedHosts;
  chosen.allowsExtensions = file.allowsExtensions;
  return chosen;
}

} // namespace

SavedPreferences SavePreferences(const host::ConfigurationChange &change, const host::Installation &installation) {
  const bool isOwn = !change.before.source.empty() && !change.before.isInstalledDefault;
  const std::string path = isOwn ? change.before.source : host::OwnConfigurationPath();
  if (path.empty())
    return {{}, "there is no home folder to keep preferences in"};
  const kit::FileContent read = isOwn ? kit::ReadFile(path) : kit::FileContent();
  if (!read.error.empty())
    return {{}, read.error};
  host::EditedConfiguration edited =
      isOwn ? host::EditConfiguration(read.bytes, change)
            : host::EditedConfiguration{host::WriteConfiguration(WithoutOptions(change.after, installation)), {}};
  if (!edited.error.empty())
    return {{}, path + ": " + edited.error};
  if (const std::string error = WriteWhole(path, edited.text); !error.empty())
    return {{}, error};
  host::ConfigurationResult saved = host::ReadConfiguration(path, installation);
  if (saved.problems.empty())
    return {std::move(saved.configuration), {}};
  // Restores the file when the new text cannot be read back.
  if (isOwn)
    static_cast<void>(WriteWhole(path, read.bytes));
  return {{}, saved.problems.front()};
}

} // namespace desktop
