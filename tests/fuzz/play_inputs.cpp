// Plays files, and the files of folders, through one fuzz target; names each before it is played. For builds without
// libFuzzer.
#include "tests/fuzz/fuzzing.h"
#include "tests/unit/folder.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

int main(int count, char **arguments) {
  namespace fs = std::filesystem;
  std::vector<std::string> files;
  for (int index = 1; index < count; ++index) {
    const fs::path given = arguments[index];
    if (!fs::is_directory(given))
      files.push_back(given.string());
    else
      for (const auto &entry : fs::directory_iterator(given))
        files.push_back(entry.path().string());
  }
  std::ranges::sort(files);
  for (const std::string &file : files) {
    std::cout << file << std::endl;
    fuzz::RunInput(test::ReadAll(fs::absolute(file).string()));
  }
  std::cout << files.size() << " inputs\n";
  return files.empty() ? 1 : 0;
}
