// Files that appear whole or not at all, and what the kit says about paths on a real disk.
#include "kit/atomic_file.h"
#include "kit/file_lock.h"
#include "kit/paths.h"
#include "kit/read_file.h"
#include "tests/unit/folder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

class OnDisk : public testing::Test {
protected:
  [[nodiscard]] std::string Path(const std::string &name) const { return folder.Path(name); }
  std::string Write(const std::string &name, const std::string &text) const { return folder.Write(name, text); }
  [[nodiscard]] static std::string Read(const std::string &path) { return test::ReadAll(path); }
  [[nodiscard]] size_t Count() const {
    return static_cast<size_t>(std::distance(fs::directory_iterator(root), fs::directory_iterator()));
  }

  test::Folder folder;
  const std::string &root = folder.Root();
};

TEST_F(OnDisk, AnUnfinishedFileLeavesTheOldOneAndNothingElse) {
  const std::string target = Write("target", "old");
  {
    kit::AtomicFile file(target);
    EXPECT_TRUE(file.Write("half of the new"));
    EXPECT_EQ(Read(target), "old");
    EXPECT_EQ(Count(), 2U) << "it is written beside its target, to be renamed on the same file system";
  }
  EXPECT_EQ(Read(target), "old");
  EXPECT_EQ(Count(), 1U);

  kit::AtomicFile file(target);
  EXPECT_TRUE(file.Write("") && file.Write("new ") && file.Write(std::string(200000, 'x')) && file.Commit());
  EXPECT_EQ(Read(target), "new " + std::string(200000, 'x'));
  EXPECT_FALSE(file.Commit()) << "once is enough";
  EXPECT_EQ(Count(), 1U);
}

TEST_F(OnDisk, TwoWritersOfOneFileDoNotMeet) {
  const std::string target = Path("target");
  kit::AtomicFile one(target);
  kit::AtomicFile two(target);
  EXPECT_TRUE(one.Write("one") && two.Write("two"));
  EXPECT_TRUE(one.Commit());
  EXPECT_EQ(Read(target), "one");
  EXPECT_TRUE(two.Commit());
  EXPECT_EQ(Read(target), "two");
  EXPECT_EQ(Count(), 1U);
}

TEST_F(OnDisk, LinksStayAndTheirTargetsAreReplaced) {
  fs::create_directories(Path("real"));
  fs::create_symlink("real", Path("folder"));
  fs::create_symlink("../second", Path("real/first"));
  fs::create_symlink("real/file", Path("second"));
  kit::AtomicFile made(Path("folder/first"));
  EXPECT_TRUE(made.Write("made") && made.Commit()) << made.Error();
  EXPECT_EQ(Read(Path("real/file")), "made") << "the end of the chain was not there yet";
  EXPECT_TRUE(fs::is_symlink(Path("real/first")) && fs::is_symlink(Path("second")));

  fs::create_symlink("b", Path("a"));
  fs::create_symlink("a", Path("b"));
  kit::AtomicFile cycle(Path("a"));
  EXPECT_FALSE(cycle.Write("x") || cycle.Commit());
  EXPECT_NE(cycle.Error().find("symbolic links"), std::string::npos) << cycle.Error();
}

TEST_F(OnDisk, PermissionsAndOwnerAreThoseOfTheOldFile) {
  const std::string target = Write("private", "secret");
  for (const fs::perms mode : {fs::perms(0600), fs::perms(0640), fs::perms(0755)}) {
    fs::permissions(target, mode);
    kit::AtomicFile file(target);
    for (const auto &entry : fs::directory_iterator(root))
      EXPECT_EQ(fs::status(entry).permissions() & ~mode, fs::perms::none) << "others cannot read it meanwhile";
    EXPECT_TRUE(file.Write("more") && file.Commit());
    EXPECT_EQ(fs::status(target).permissions(), mode);
  }
  if (geteuid() == 0) { // who may give files away
    ASSERT_EQ(chown(target.c_str(), 12345, 54321), 0);
    kit::AtomicFile file(target);
    EXPECT_TRUE(file.Write("again") && file.Commit());
    struct stat after {};
    ASSERT_EQ(stat(target.c_str(), &after), 0);
    EXPECT_TRUE(after.st_uid == 12345 && after.st_gid == 54321);
  }

  const mode_t before = umask(027);
  kit::AtomicFile made(Path("new"));
  EXPECT_TRUE(made.Write("x") && made.Commit());
  umask(before);
  EXPECT_EQ(fs::status(Path("new")).permissions(),
            fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
}

TEST_F(OnDisk, WhatIsNoPlainFileIsRefused) {
  fs::create_directories(Path("folder"));
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  const std::string locked = Write("locked", "old");
  fs::permissions(locked, fs::perms::owner_read);
  const size_t count = Count();
  for (const std::string &target : {Path("folder"), Path("pipe"), locked, Path("none/file"), Path("locked/file")}) {
    kit::AtomicFile file(target);
    EXPECT_FALSE(file.Write("x")) << target;
    EXPECT_FALSE(file.Commit()) << target;
    EXPECT_TRUE(file.Error().starts_with(target + ": ")) << file.Error();
  }
  EXPECT_EQ(Read(locked), "old");
  EXPECT_EQ(Count(), count);
}

TEST_F(OnDisk, ContentsComeFromOtherFileSystemsToo) {
  std::string elsewhere = "/dev/shm/vlxslt-XXXXXX";
  const int handle = mkstemp(elsewhere.data());
  ASSERT_GE(handle, 0);
  close(handle);
  const std::string content(300001, 'y');
  std::ofstream(elsewhere, std::ios::binary) << content;
  kit::AtomicFile file(Path("target"));
  EXPECT_TRUE(file.Write("head ") && file.WriteFile(elsewhere) && file.Commit());
  EXPECT_EQ(Read(Path("target")), "head " + content);
  fs::remove(elsewhere);

  kit::AtomicFile second(Path("target"));
  EXPECT_FALSE(second.WriteFile(elsewhere));
  EXPECT_TRUE(second.Error().starts_with(elsewhere + ": ")) << second.Error();
  const std::string first = second.Error();
  EXPECT_FALSE(second.WriteFile(root) || second.Write("more") || second.Commit());
  EXPECT_EQ(second.Error(), first) << "the first reason is the one that counts";
  EXPECT_EQ(Read(Path("target")), "head " + content);
}

TEST_F(OnDisk, OnlyPlainFilesAreReadAndTheReasonIsTold) {
  const std::string text("a\0b\r\n\xFF", 6);
  const std::string whole = text + std::string(200000, 'x');
  EXPECT_EQ(kit::ReadFile(Write("file", whole)).bytes, whole);
  EXPECT_EQ(kit::ReadFile(Write("empty", "")).error, "");
  fs::create_symlink("file", Path("link"));
  EXPECT_EQ(kit::ReadFile(Path("link")).bytes, whole);
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  const std::pair<std::string, std::string> rows[] = {{Path("pipe"), "it is a pipe or a device, not a file"},
                                                      {"/dev/zero", "it is a pipe or a device, not a file"},
                                                      {root, "Is a directory"},
                                                      {Path("none"), "No such file or directory"},
                                                      {Path("file/below"), "Not a directory"},
                                                      {"", "No such file or directory"}};
  for (const auto &[path, reason] : rows) {
    const kit::FileContent content = kit::ReadFile(path);
    EXPECT_EQ(content.error, std::string(path).append(": ").append(reason));
    EXPECT_EQ(content.bytes, "");
  }
}

TEST_F(OnDisk, PathsAreWhatTheyAre) {
  const std::string file = Write("file", "");
  fs::create_directories(Path("folder"));
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  fs::create_symlink("file", Path("link"));
  fs::create_symlink("nowhere", Path("dangling"));
  struct Row {
    std::string path;
    bool isFile, isFolder, exists;
  };
  for (const Row &row :
       {Row{file, true, false, true}, Row{Path("folder"), false, true, true}, Row{Path("link"), true, false, true},
        Row{Path("dangling"), false, false, false}, Row{Path("pipe"), false, false, true},
        Row{Path("none"), false, false, false}, Row{"", false, false, false}, Row{file + "/below", false, false, false},
        Row{std::string(5000, 'x'), false, false, false}}) {
    EXPECT_EQ(kit::IsFile(row.path), row.isFile) << row.path;
    EXPECT_EQ(kit::IsFolder(row.path), row.isFolder) << row.path;
    EXPECT_EQ(kit::Exists(row.path), row.exists) << row.path;
  }
  EXPECT_TRUE(kit::IsWritable(file) && kit::IsWritable(Path("folder")));
  EXPECT_EQ(Count(), 5U) << "to ask leaves nothing behind";
  fs::permissions(file, fs::perms::owner_read);
  fs::permissions(Path("folder"), fs::perms::owner_read | fs::perms::owner_exec);
  EXPECT_FALSE(kit::IsWritable(file) || kit::IsWritable(Path("folder")) || kit::IsWritable(Path("none")));
}

TEST_F(OnDisk, RelativePathsBecomeAbsolute) {
  const fs::path before = fs::current_path();
  fs::current_path(root);
  EXPECT_EQ(kit::AbsolutePath("a/./b/../c"), Path("a/c"));
  EXPECT_EQ(kit::AbsolutePath("/x//y/"), "/x/y/");
  fs::current_path(before);
  EXPECT_EQ(kit::JoinPath("/a", "b"), "/a/b");
  EXPECT_EQ(kit::JoinPath("/a/", "b"), "/a/b");
  EXPECT_EQ(kit::JoinPath("", "b"), "b");
}

// ---- Locks

using LockState = kit::FileLock::State;
constexpr std::chrono::milliseconds shortWait{30};

TEST_F(OnDisk, ALockKeepsOthersOutAndLeavesNothing) {
  const std::string file = Write("T.xml", "");
  fs::create_symlink(file, Path("link.xml"));
  {
    const kit::FileLock lock(file, shortWait);
    EXPECT_EQ(lock.GetState(), LockState::Held);
    EXPECT_EQ(lock.Path(), Path(".vlxslt-lock-T.xml"));
    for (const char *name : {"T.xml", "link.xml"})
      EXPECT_EQ(kit::FileLock(Path(name), shortWait).GetState(), LockState::Busy);
    EXPECT_EQ(kit::FileLock(Path("other.xml"), shortWait).GetState(), LockState::Held);
  }
  EXPECT_EQ(kit::FileLock(Path("link.xml"), shortWait).GetState(), LockState::Held);
  // What a killed program left is taken over. Long names are no obstacle, a missing folder is none either.
  Write(".vlxslt-lock-T.xml", "");
  EXPECT_EQ(kit::FileLock(file, shortWait).GetState(), LockState::Held);
  EXPECT_EQ(kit::FileLock(Path(std::string(255, 'x')), shortWait).GetState(), LockState::Held);
  EXPECT_EQ(kit::FileLock(Path("no/T.xml"), shortWait).GetState(), LockState::Unavailable);
  EXPECT_EQ(folder.Names(), (std::vector<std::string>{"T.xml", "link.xml"}));
}

// Each holder removes the lock's file: those who wait for it must not end up with a lock on a file that is gone.
TEST_F(OnDisk, ALockIsHeldByOneProcessAtATime) {
  const std::string file = Write("count", "0");
  constexpr int rounds = 200;
  std::vector<pid_t> children;
  for (int child = 0; child < 3; ++child) {
    children.push_back(fork());
    if (children.back() != 0)
      continue;
    for (int round = 0; round < rounds; ++round) {
      const kit::FileLock lock(file, std::chrono::seconds(30));
      if (lock.GetState() != LockState::Held)
        _exit(1);
      const int count = std::stoi(Read(file));
      std::ofstream(file) << count + 1;
    }
    _exit(0);
  }
  for (const pid_t child : children) {
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  }
  EXPECT_EQ(Read(file), std::to_string(3 * rounds));
}

} // namespace
