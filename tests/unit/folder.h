// A folder of its own for a test, gone with it; its name is as awkward as names get.
#ifndef TESTS_UNIT_FOLDER_H
#define TESTS_UNIT_FOLDER_H

#include <string>
#include <string_view>
#include <vector>

namespace test {

// The bytes of any file; empty when there is none.
[[nodiscard]] std::string ReadAll(const std::string &path);

class Folder {
public:
  Folder();
  ~Folder();
  Folder(const Folder &) = delete;
  Folder &operator=(const Folder &) = delete;

  [[nodiscard]] const std::string &Root() const { return root; }
  // The absolute path of what is named relative to the folder.
  [[nodiscard]] std::string Path(std::string_view name) const { return root + "/" + std::string(name); }
  // Makes folders as needed; the absolute path.
  std::string Write(std::string_view name, std::string_view content) const;
  [[nodiscard]] std::string Read(std::string_view name) const { return ReadAll(Path(name)); }
  // The files and links in a folder below it, in order, to see that nothing was left behind.
  [[nodiscard]] std::vector<std::string> Names(std::string_view name = {}) const;
  // Paths below the folder, shortened to what is below it.
  [[nodiscard]] std::vector<std::string> Shorten(const std::vector<std::string> &paths) const;

private:
  std::string root;
};

} // namespace test

#endif
