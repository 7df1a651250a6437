// Folder inputs and the test for empty files, on real folders. Java is not started for these.
#include "processors/file_listing.h"
#include "tests/unit/folder.h"
#include "tests/unit/log_fixture.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

using Strings = std::vector<std::string>;

class Listing : public LogTest {
protected:
  void Touch(const std::string &name, const std::string &text = {}) const { folder.Write(name, text); }
  [[nodiscard]] Strings List(const std::string &name, int32_t recurse) const {
    Strings names;
    for (const std::string &path : processors::GetAllFilesInFolder((root + "/" + name).c_str(), recurse).Items())
      names.push_back(path.substr(root.size() + 1));
    return names;
  }

  test::Folder folder;
  const std::string &root = folder.Root();
};

TEST_F(Listing, FilesOfFoldersComeBeforeThoseOfTheirParent) {
  // The last one is what a run that was killed leaves.
  for (const char *name : {"a/top.xml", "a/.hidden", "a/b/middle", "a/b/c/deep.dita", "a/.vlxslt-4711-1.tmp"})
    Touch(name);
  fs::create_directories(root + "/a/empty");
  fs::create_directory_symlink("..", root + "/a/b/back"); // leads back to the start
  fs::create_symlink("top.xml", root + "/a/zlink.xml");
  Strings flat = List("a", 0);
  std::ranges::sort(flat);
  EXPECT_EQ(flat, (Strings{"a/.hidden", "a/top.xml", "a/zlink.xml"}));
  const Strings deep = List("a", 1);
  ASSERT_EQ(deep.size(), 5U);
  EXPECT_EQ(deep[0], "a/b/c/deep.dita");
  EXPECT_EQ(deep[1], "a/b/middle");
  EXPECT_EQ(List("a", -1), deep);
  EXPECT_EQ(TakeLog(), "");
}

TEST_F(Listing, WhatCannotBeReadIsToldAndTheRestKept) {
  EXPECT_EQ(List("none", 1), Strings());
  const std::string missing = TakeLog();
  EXPECT_NE(missing.find(root + "/none"), std::string::npos) << missing;
  EXPECT_EQ(std::ranges::count(missing, '\n'), 1);
  Touch("file");
  EXPECT_EQ(List("file", 0), Strings());
  EXPECT_NE(TakeLog(), "");
  EXPECT_EQ(processors::GetAllFilesInFolder(nullptr, 0).Items(), Strings());
  EXPECT_NE(TakeLog(), "");
}

TEST_F(Listing, OnlyAFileWithoutBytesIsEmpty) {
  Touch("empty");
  Touch("full", "x");
  fs::create_symlink("empty", root + "/link");
  ASSERT_EQ(mkfifo((root + "/pipe").c_str(), 0600), 0);
  const auto isEmpty = [this](const std::string &name) { return processors::IsEmptyFile((root + "/" + name).c_str()); };
  EXPECT_EQ(isEmpty("empty"), 1);
  EXPECT_EQ(isEmpty("link"), 1);
  for (const char *other : {"full", "none", "pipe", ""})
    EXPECT_EQ(isEmpty(other), 0) << other;
  EXPECT_EQ(processors::IsEmptyFile(nullptr), 0);
  EXPECT_EQ(processors::IsEmptyFile(""), 0);
}

} // namespace
