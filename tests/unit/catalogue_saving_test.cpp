// Nothing is ever lost: full disks, read-only folders, links, a process killed at any moment, two that save in turn.
#include "catalogue/reader.h"
#include "catalogue/writer.h"
#include "tests/unit/catalogue_fixture.h"

#include <csignal>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

using catalogue::LoadTransformationFile;
using catalogue::SaveTransformationFile;
using catalogue::TransformationList;
using Strings = std::vector<std::string>;

TransformationList Many(const std::string &prefix, int count) {
  TransformationList list;
  for (int index = 0; index < count; ++index)
    list.push_back(MakeTransformation(prefix + std::to_string(index)));
  return list;
}

// A small file system of its own for as long as it lives.
class SmallDisk {
public:
  explicit SmallDisk(std::string folder) : path(std::move(folder)) {
    fs::create_directories(path);
    mounted = mount("tmpfs", path.c_str(), "tmpfs", 0, "size=64k") == 0;
  }
  ~SmallDisk() {
    if (mounted)
      umount(path.c_str());
  }
  [[nodiscard]] bool IsMounted() const { return mounted; }
  [[nodiscard]] bool MakeReadOnly() const {
    return mount("tmpfs", path.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, "size=64k") == 0;
  }

private:
  std::string path;
  bool mounted = false;
};

TEST_F(CatalogueTest, AFullOrReadOnlyDiskLeavesTheOldFile) {
  const SmallDisk disk(Path("disk"));
  if (!disk.IsMounted())
    GTEST_SKIP() << "only root may mount the small file system that this test fills";
  const std::string path = Path("disk/T.xml");
  ASSERT_TRUE(SaveTransformationFile(path, Many("old", 3)));
  const std::string before = test::ReadAll(path);
  EXPECT_FALSE(SaveTransformationFile(path, Many("new", 1000)));
  EXPECT_EQ(TakeLog(), "The transformation file could not be written: " + path + ": No space left on device\n");
  EXPECT_EQ(test::ReadAll(path), before);
  EXPECT_EQ(folder.Names("disk"), Strings{"T.xml"});
  EXPECT_FALSE(SaveTransformationFile(Path("disk/fresh.xml"), Many("new", 1000)));
  EXPECT_EQ(folder.Names("disk"), Strings{"T.xml"});

  ASSERT_TRUE(disk.MakeReadOnly());
  (void)TakeLog();
  EXPECT_FALSE(SaveTransformationFile(path, Many("new", 1)));
  EXPECT_NE(TakeLog().find(path + ": "), std::string::npos);
  EXPECT_EQ(AddTransformation(path, MakeTransformation("A"), IsInstalled), catalogue::EditResult::Stopped);
  EXPECT_EQ(TakeAsked(), (std::vector<FakeHost::Asked>{
                             {V_ALERT_PLAIN, "Cannot save the file at following location: " + Path("disk") +
                                                 ". Make sure you have write permissions."}}));
  EXPECT_EQ(test::ReadAll(path), before);
}

TEST_F(CatalogueTest, WhatCannotBeReplacedIsLeftAlone) {
  fs::create_directories(Path("folder"));
  const std::string locked = Write("locked.xml", "old");
  fs::permissions(locked, fs::perms::owner_read);
  for (const auto &[path, reason] :
       {std::pair{Path("no/T.xml"), "No such file or directory"}, std::pair{Path("folder"), "Is a directory"},
        std::pair{locked, "Permission denied"}, std::pair{std::string("/dev/null"), "Invalid argument"}}) {
    EXPECT_FALSE(SaveTransformationFile(path, Many("new", 1)));
    EXPECT_EQ(TakeLog(), "The transformation file could not be written: " + path + ": " + reason + "\n");
  }
  EXPECT_EQ(test::ReadAll(locked), "old");
  EXPECT_FALSE(SaveTransformationFile("", {}));
  EXPECT_EQ(folder.Names(), Strings{"locked.xml"});
}

TEST_F(CatalogueTest, NetworkCataloguesAreSavedInTheLocalCopyAndPushedBack) {
  const std::string url = "https://server/dita/T.xml";
  const std::string copy = Write("cache/T.xml", Catalogue(Element("A")));
  host.netFiles = {url};
  host.netCache = {{url, copy}};
  EXPECT_EQ(NamesOf(LoadTransformationFile(url).list), Strings{"A"});
  EXPECT_EQ(AddTransformation(url, MakeTransformation("B"), IsInstalled), catalogue::EditResult::Saved);
  EXPECT_EQ(NamesOf(LoadTransformationFile(copy).list), (Strings{"A", "B"}));
  EXPECT_EQ(host.saved, Strings{url});
  host.saveResult = 0;
  EXPECT_FALSE(SaveTransformationFile(url, {}));
  // A copy of something that the host does not push.
  host.netCache[copy] = copy;
  EXPECT_TRUE(SaveTransformationFile(copy, {}));
  EXPECT_EQ(host.saved.size(), 2U);
}

// Saves one list after the other until it is killed, as a process of its own.
pid_t StartSaving(const std::string &path, const TransformationList &one, const TransformationList &other) {
  const pid_t child = fork();
  if (child == 0) {
    while (SaveTransformationFile(path, one) && SaveTransformationFile(path, other)) {
    }
    _exit(1);
  }
  return child;
}

TEST_F(CatalogueTest, AProcessKilledWhileSavingLeavesAWholeCatalogue) {
  const std::string path = Path("T.xml");
  const TransformationList one = Many("one", 400);
  const TransformationList other = Many("other", 150);
  ASSERT_TRUE(SaveTransformationFile(path, one));
  std::srand(20);
  for (int kill = 0; kill < 40; ++kill) {
    const pid_t child = StartSaving(path, one, other);
    ASSERT_GT(child, 0);
    const timespec moment{0, (1 + std::rand() % 40) * 1000000L};
    nanosleep(&moment, nullptr);
    ASSERT_EQ(::kill(child, SIGKILL), 0);
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status)) << "a save failed: " << TakeLog();
    const auto loaded = LoadTransformationFile(path);
    ASSERT_TRUE(loaded.list) << TakeLog();
    ASSERT_TRUE(*loaded.list == one || *loaded.list == other) << loaded.list->size();
  }
}

TEST_F(CatalogueTest, TwoProcessesThatSaveAtOnceEachWriteAWholeCatalogue) {
  const std::string path = Path("T.xml");
  const TransformationList one = Many("one", 300);
  const TransformationList other = Many("other", 200);
  ASSERT_TRUE(SaveTransformationFile(path, one));
  const pid_t first = StartSaving(path, one, one);
  const pid_t second = StartSaving(path, other, other);
  for (int look = 0; look < 60; ++look) {
    const auto loaded = LoadTransformationFile(path);
    EXPECT_TRUE(loaded.list && (*loaded.list == one || *loaded.list == other)) << TakeLog();
  }
  for (const pid_t child : {first, second}) {
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status)) << "a save failed";
  }
}

} // namespace
