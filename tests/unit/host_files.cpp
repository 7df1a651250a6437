#include "tests/unit/host_files.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace test {

Folder::Folder() {
  // A blank, a percent sign and a letter beyond ASCII: every test goes through them.
  std::string pattern = (fs::temp_directory_path() / "host 100% \xc3\xbc-XXXXXX").string();
  if (!mkdtemp(pattern.data()))
    ADD_FAILURE() << "no folder for the test";
  root = fs::canonical(pattern).string() + "/";
}

Folder::~Folder() {
  std::error_code error;
  fs::remove_all(root, error);
}

std::string Folder::Write(std::string_view name, std::string_view content) const {
  const std::string path = Path(name);
  fs::create_directories(fs::path(path).parent_path());
  std::ofstream file(path, std::ios::binary);
  file << content;
  return path;
}

std::string Folder::Path(std::string_view name) const { return root + std::string(name); }

std::vector<std::string> Folder::Shorten(const std::vector<std::string> &paths) const {
  std::vector<std::string> shortened;
  for (const std::string &path : paths)
    shortened.push_back(path.starts_with(root) ? path.substr(root.size()) : path);
  return shortened;
}

} // namespace test
