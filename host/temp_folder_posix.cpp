#include "host/temp_folder.h"

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

TempFolder::~TempFolder() {
  std::error_code error;
  if (isPrivate)
    std::filesystem::remove_all(path, error);
}

} // namespace host
