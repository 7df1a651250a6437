// Copies of outputs that outlive the process.
#include "host/record/kept_outputs.h"
#include "kit/paths.h"
#include "tests/unit/folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <regex>
#include <string>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

using Strings = std::vector<std::string>;

class KeptOutputs : public testing::Test {
protected:
  std::string Keep(const std::string &name) {
    error.clear();
    return kept.Keep(folder.Path(name), error);
  }

  // A run folder of that name that was last changed so many minutes ago.
  void MakeRunFolder(const std::string &name, int minutes) const {
    folder.Write("base/" + name + "/file", "old");
    fs::last_write_time(folder.Path("base/" + name), fs::file_time_type::clock::now() - std::chrono::minutes(minutes));
  }

  test::Folder folder;
  host::KeptOutputs kept;
  std::string error;
};

TEST_F(KeptOutputs, OutliveTheirFiles) {
  kept.UseFolder(folder.Path("base"));
  folder.Write("t/a.html", "one");
  folder.Write("u/a.html", "two");
  folder.Write("t/plain", "three");
  Strings copies;
  Strings names;
  Strings contents;
  for (const char *name : {"t/a.html", "u/a.html", "t/plain", "t/plain"}) {
    copies.push_back(Keep(name));
    names.push_back(kit::FileNameOf(copies.back()));
    contents.push_back(test::ReadAll(copies.back()));
  }
  EXPECT_EQ(error, "");
  EXPECT_EQ(names, (Strings{"a.html", "a-2.html", "plain", "plain-2"}));
  EXPECT_EQ(contents, (Strings{"one", "two", "three", "three"}));
  EXPECT_TRUE(std::regex_match(kit::FileNameOf(kit::FolderOf(copies[0])),
                               std::regex(R"(\d{8}-\d{6}-)" + std::to_string(getpid()))));

  // Another run has a folder of its own, also in the same second.
  kept.BeginRun();
  const std::string next = Keep("t/a.html");
  EXPECT_EQ(kit::FileNameOf(next), "a.html");
  EXPECT_NE(kit::FolderOf(next), kit::FolderOf(copies[0]));
}

TEST_F(KeptOutputs, AreTakenOnce) {
  kept.UseFolder(folder.Path("base"));
  const std::string path = folder.Write("a.html", "one");
  const std::string copy = Keep("a.html");
  EXPECT_EQ(kept.Take(path, error), copy);
  // Of a file that was not announced, and of another one that has the name by now.
  const std::string second = kept.Take(path, error);
  EXPECT_EQ(kit::FileNameOf(second), "a-2.html");
  EXPECT_EQ(error, "");
}

TEST_F(KeptOutputs, LieInTheStateFolder) {
  const auto keepWith = [&](const std::string &state, const std::string &home) {
    setenv("XDG_STATE_HOME", state.c_str(), 1);
    setenv("HOME", home.c_str(), 1);
    host::KeptOutputs each;
    error.clear();
    return each.Keep(folder.Write("a.html", ""), error);
  };
  EXPECT_TRUE(keepWith(folder.Path("s"), folder.Path("h")).starts_with(folder.Path("s/vlxslt/opened/2")));
  EXPECT_TRUE(keepWith("", folder.Path("h")).starts_with(folder.Path("h/.local/state/vlxslt/opened/2")));
  EXPECT_TRUE(keepWith("not absolute", folder.Path("h")).starts_with(folder.Path("h/.local/")));
  EXPECT_EQ(keepWith("", ""), folder.Path("a.html"));
  EXPECT_NE(error.find("XDG_STATE_HOME"), std::string::npos) << error;
}

TEST_F(KeptOutputs, ThatCannotBeCopiedStayWhereTheyAre) {
  const std::string path = folder.Write("a.html", "one");
  kept.UseFolder(folder.Path("a.html/below"));
  EXPECT_EQ(Keep("a.html"), path);
  EXPECT_NE(error.find(folder.Path("a.html/below")), std::string::npos) << error;
  error.clear();
  EXPECT_EQ(kept.Take(path, error), path);
  EXPECT_EQ(error, "") << "said before";
  kept.UseFolder(folder.Path("base"));
  EXPECT_EQ(Keep("none.html"), folder.Path("none.html"));
  EXPECT_NE(error.find(folder.Path("none.html")), std::string::npos) << error;
}

TEST_F(KeptOutputs, OfOldRunsGo) {
  constexpr int count = 30;
  Strings expected;
  for (int run = 0; run < count; ++run) {
    const std::string name = "20200101-0000" + std::to_string(10 + run) + "-77";
    // The very first was still written to a moment ago.
    MakeRunFolder(name, run == 0 ? 59 : 61);
    if (run == 0 || run >= count - static_cast<int>(host::KeptOutputs::maxRuns) + 1)
      expected.push_back("base/" + name + "/file");
  }
  for (const char *other : {"20200101-000010", "20200101-000010-77x", "mine", "99999999-999999-"}) {
    MakeRunFolder(other, 100000);
    expected.push_back("base/" + std::string(other) + "/file");
  }
  fs::create_directory_symlink(folder.Path("base/mine"), folder.Path("base/20190101-000000-1"));
  folder.Write("base/20190101-000000-2", "a file");
  expected.insert(expected.end(), {"base/20190101-000000-1", "base/20190101-000000-2"});
  kept.UseFolder(folder.Path("base"));
  folder.Write("a.html", "");
  const std::string copy = Keep("a.html");
  expected.push_back(folder.Shorten({copy}).front());
  Strings left;
  for (const auto &each : fs::recursive_directory_iterator(folder.Path("base")))
    if (each.is_symlink() || !each.is_directory())
      left.push_back(folder.Shorten({each.path().string()}).front());
  std::ranges::sort(left);
  std::ranges::sort(expected);
  EXPECT_EQ(left, expected);
}

} // namespace
