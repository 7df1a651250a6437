#include "tests/unit/folder.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace fs = std::filesystem;

namespace test {

std::string ReadAll(const std::string &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

Folder::Folder() {
  // A blank, a percent sign and a letter beyond ASCII: every test goes through them.
  std::string pattern = (fs::temp_directory_path() / "test 100% \xc3\xbc-XXXXXX").string();
  if (!mkdtemp(pattern.data()))
    throw std::system_error(errno, std::generic_category(), pattern);
  root = fs::canonical(pattern).string();
}

Folder::~Folder() {
  std::error_code error;
  fs::remove_all(root, error);
}

std::string Folder::Write(std::string_view name, std::string_view content) const {
  std::string path = Path(name);
  fs::create_directories(fs::path(path).parent_path());
  std::ofstream(path, std::ios::binary) << content;
  return path;
}

std::vector<std::string> Folder::Names(std::string_view name) const {
  std::vector<std::string> names;
  for (const auto &entry : fs::directory_iterator(Path(name)))
    if (entry.is_regular_file() || entry.is_symlink())
      names.push_back(entry.path().filename().string());
  std::ranges::sort(names);
  return names;
}

std::vector<std::string> Folder::Shorten(const std::vector<std::string> &paths) const {
  std::vector<std::string> shortened;
  shortened.reserve(paths.size());
  for (const std::string &path : paths)
    shortened.push_back(path.starts_with(root + "/") ? path.substr(root.size() + 1) : path);
  return shortened;
}

} // namespace test
