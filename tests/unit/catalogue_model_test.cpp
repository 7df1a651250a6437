// Long random sequences of additions, changes and deletions beside a list that does the same in memory: the file holds
// what the list holds after every step, whatever was answered to the questions. Seeded, so that a failure comes again.
// The same by two processes at once.
#include "catalogue/reader.h"
#include "catalogue/writer.h"
#include "tests/unit/catalogue_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <random>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using catalogue::EditResult;
using catalogue::OpenOutputKind;
using catalogue::OutputLocationKind;
using catalogue::Transformation;
using catalogue::TransformationList;
using Strings = std::vector<std::string>;

class Model : public CatalogueTest {
protected:
  size_t Below(size_t limit) { return random() % limit; }
  std::string OneOf(const Strings &words) { return words[Below(words.size())]; }
  std::string Name() { return OneOf({"A", "a", "B <&> \"'", "Ü 中 𝄞", "two  words", "-->", "]]>"}); }
  std::string Text() {
    return OneOf({"x", "a\tb", "one\r\ntwo", "&amp;", "<!-- c -->", "]]>", "é\xCC\x81", "$VLHOME/x"});
  }

  // Complete, so that only names are asked about.
  Transformation MakeRecord() {
    Transformation made;
    made.name = Name();
    made.usePI = Below(2) == 0;
    if (!made.usePI)
      made.xslPath = Text();
    made.processor = "Saxon";
    for (size_t count = Below(3); count > 0; --count)
      made.parameters.insert(made.parameters.end(), {Text(), Below(3) == 0 ? "<no value>" : Text()});
    made.output.outputLocation = static_cast<OutputLocationKind>(Below(4));
    if (made.output.outputLocation == OutputLocationKind::DirPath)
      made.output.dirPath = Text();
    if (made.output.outputLocation == OutputLocationKind::SameLocationAsSource && Below(2) == 0)
      made.output.suffix = Text();
    made.output.openOutput = static_cast<OpenOutputKind>(Below(3));
    return made;
  }

  Transformation *Find(const std::string &name) {
    const auto found = std::ranges::find(expected, name, &Transformation::name);
    return found == expected.end() ? nullptr : &*found;
  }

  // What is asked is answered with Yes or No at random; without a question the answer is not used up.
  EditResult Answered(EditResult otherwise, bool isAsked) {
    if (!isAsked)
      return otherwise;
    const bool proceeds = Below(2) == 0;
    host.answers = {proceeds ? V_ANSWER_PROCEED : V_ANSWER_DECLINE};
    return proceeds ? otherwise : EditResult::Stopped;
  }

  void Add() {
    const Transformation record = MakeRecord();
    Transformation *existing = Find(record.name);
    const EditResult result = Answered(EditResult::Saved, existing != nullptr);
    EXPECT_EQ(catalogue::AddTransformation(path, record, IsInstalled), result);
    if (result == EditResult::Saved && existing)
      *existing = record;
    else if (result == EditResult::Saved)
      expected.push_back(record);
  }

  void Edit() {
    const Transformation record = MakeRecord();
    const std::string oldName = Name();
    Transformation *existing = Find(record.name);
    Transformation *target = existing ? existing : Find(oldName);
    const bool isAsked = existing && record.name != oldName;
    const EditResult result = Answered(target ? EditResult::Saved : EditResult::Failed, isAsked);
    EXPECT_EQ(catalogue::EditTransformation(path, record, oldName, IsInstalled), result);
    if (result == EditResult::Saved)
      *target = record;
  }

  void Delete() {
    const std::string name = Name();
    EXPECT_EQ(catalogue::DeleteTransformation(path, name), EditResult::Saved);
    std::erase_if(expected, [&](const Transformation &each) { return each.name == name; });
  }

  std::mt19937 random{7};
  std::string path;
  TransformationList expected;
};

TEST_F(Model, TheFileHoldsWhatTheEditsMadeOfIt) {
  path = Write("T.xml", Catalogue(""));
  for (int step = 0; step < 300; ++step) {
    host.asked.clear();
    switch (Below(5)) {
    case 0:
      Delete();
      break;
    case 1:
    case 2:
      Edit();
      break;
    default:
      Add();
    }
    EXPECT_TRUE(host.answers.empty()) << "a question that was expected was not asked";
    host.answers.clear();
    const auto loaded = catalogue::LoadTransformationFile(path);
    ASSERT_TRUE(loaded.list) << TakeLog();
    ASSERT_EQ(NamesOf(loaded.list), NamesOf(expected)) << "step " << step;
    ASSERT_EQ(*loaded.list, expected) << "step " << step;
    ASSERT_LE(TakeAsked().size(), 1U);
    (void)TakeLog();
  }
  EXPECT_EQ(folder.Names(), Strings{"T.xml"});
}

// The three ways in which a whole catalogue comes back unchanged: read and written, by an edit that changes nothing, by
// the deletion of what is not there.
TEST_F(Model, WhatNobodyChangesStaysToTheByte) {
  for (int round = 0; round < 30; ++round) {
    TransformationList list;
    for (size_t count = Below(6); count > 0; --count) {
      Transformation made = MakeRecord();
      made.name += std::to_string(count);
      list.push_back(made);
    }
    path = Path("T.xml");
    ASSERT_TRUE(catalogue::SaveTransformationFile(path, list));
    const std::string bytes = test::ReadAll(path);
    const auto loaded = catalogue::LoadTransformationFile(path);
    ASSERT_TRUE(loaded.list) << TakeLog();
    EXPECT_EQ(*loaded.list, list);
    ASSERT_TRUE(catalogue::SaveTransformationFile(path, *loaded.list));
    EXPECT_EQ(test::ReadAll(path), bytes);
    if (!list.empty()) {
      EXPECT_EQ(catalogue::EditTransformation(path, list[0], list[0].name, IsInstalled), EditResult::Saved);
      EXPECT_EQ(test::ReadAll(path), bytes);
    }
    EXPECT_EQ(catalogue::DeleteTransformation(path, "nobody"), EditResult::Saved);
    EXPECT_EQ(test::ReadAll(path), bytes);
  }
}

// Two processes walk at once, each over names of its own and one transformation that both count in: each finds in the
// end what it alone made of its names, and no count is missing.
class TwoWalks : public Model {
protected:
  static constexpr int steps = 150;
  static constexpr const char *shared = "shared";

  // Carries the walk out in a process of its own, which leaves what it expects in a catalogue of its own.
  pid_t StartWalk(const std::string &own) {
    const pid_t child = fork();
    if (child != 0)
      return child;
    random.seed(static_cast<std::mt19937::result_type>(own.size() + std::stoul(own)));
    bool isGood = true;
    for (int step = 0; step < steps; ++step)
      isGood &= TakeStep(own) && Count(own);
    _exit(isGood && catalogue::SaveTransformationFile(Path(own), expected) ? 0 : 1);
  }

  bool TakeStep(const std::string &own) {
    Transformation record = MakeRecord();
    record.name = own + record.name;
    Transformation *existing = Find(record.name);
    host.answers.clear();
    if (Below(4) == 0) {
      std::erase_if(expected, [&](const Transformation &each) { return each.name == record.name; });
      return catalogue::DeleteTransformation(path, record.name) == EditResult::Saved;
    }
    if (existing)
      *existing = record;
    else
      expected.push_back(record);
    return catalogue::AddTransformation(path, record, IsInstalled) == EditResult::Saved;
  }

  bool Count(const std::string &own) {
    const auto change = [&](Transformation current) {
      current.parameters.insert(current.parameters.end(), {own, "1"});
      return std::optional(std::move(current));
    };
    return catalogue::ChangeTransformation(path, shared, change, IsInstalled) == EditResult::Saved;
  }
};

TEST_F(TwoWalks, NeitherLosesWhatItDid) {
  path = Write("T.xml", Catalogue(Element(shared)));
  const Strings walkers = {"1", "2"};
  std::vector<pid_t> children;
  for (const std::string &own : walkers)
    children.push_back(StartWalk(own));
  for (const pid_t child : children) {
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "an edit failed";
  }
  const auto loaded = catalogue::LoadTransformationFile(path);
  ASSERT_TRUE(loaded.list) << TakeLog();
  for (const std::string &own : walkers) {
    TransformationList kept = *loaded.list;
    std::erase_if(kept, [&](const Transformation &each) { return !each.name.starts_with(own); });
    EXPECT_EQ(NamesOf(kept), NamesOf(catalogue::LoadTransformationFile(Path(own)).list));
    EXPECT_EQ(kept, catalogue::LoadTransformationFile(Path(own)).list);
  }
  const int32_t place = FindTransformation(*loaded.list, shared);
  ASSERT_GE(place, 0);
  EXPECT_EQ(loaded.list->at(static_cast<size_t>(place)).parameters.size(), walkers.size() * steps * 2);
  EXPECT_EQ(folder.Names(), (Strings{"1", "2", "T.xml"}));
}

} // namespace
