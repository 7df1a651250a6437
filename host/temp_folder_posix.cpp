#include "host/temp_folder.h"

#include "kit/paths.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace host {

const std::string &TempFolder::Path() {
  if (isMade)
    return path;
  isMade = true;
  std::error_code error;
  if (!path.empty()) {
    std::filesystem::create_directories(path, error);
    return path;
  }
  std::filesystem::path parent = std::filesystem::temp_directory_path(error);
  // $TMPDIR may name a folder that is not there.
  if (error)
    parent = "/tmp";
  std::string pattern = (parent / "vlxslt-XXXXXX").string();
  if (mkdtemp(pattern.data())) {
    path = pattern;
    isPrivate = true;
  }
  return path;
}

std::string TempFolder::NameOf(const std::string &file) const {
  const std::string place = kit::AbsolutePath(file);
  const std::string folder = kit::JoinPath(kit::AbsolutePath(path), "");
  return isMade && !path.empty() && place.starts_with(folder) ? place.substr(folder.size()) : std::string();
}

TempFolder::~TempFolder() {
  std::error_code error;
  if (isPrivate)
    std::filesystem::remove_all(path, error);
}

} // namespace host
