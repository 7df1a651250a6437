// Ten thousand things that a person might do in each dialog, at random but repeatable. After every one the rules of
// what is sensitive, visible and on are checked against what the items show; what a person could not do must be
// refused. The whole client is there but the Java processors.
#include "host/dialogs/dialog_model.h"
#include "host/session.h"
#include "kit/paths.h"
#include "tests/unit/host_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

using host::ActionResult;
using host::DialogItem;
using host::DialogModel;
using host::ItemKind;

constexpr int eventsPerDialog = 10000;
constexpr int configuredProcessors = 2;
enum DialogNumber { AdvancedRun = 10, ChooseManage = 11, NewEdit = 12, StylesheetParams = 13 };

// What the items of a dialog show.
class Items {
public:
  explicit Items(const DialogModel &shown) : dialog(shown) {}
  [[nodiscard]] bool IsOn(int item) const { return At(item).state != 0; }
  [[nodiscard]] int State(int item) const { return At(item).state; }
  [[nodiscard]] bool Has(int item) const { return !At(item).text.empty(); }
  [[nodiscard]] int CountOn(std::initializer_list<int> items) const {
    return static_cast<int>(std::ranges::count_if(items, [&](int item) { return IsOn(item); }));
  }
  void ExpectSensitive(std::initializer_list<int> items, bool wanted) const {
    for (const int item : items)
      EXPECT_EQ(At(item).sensitive, wanted) << "item " << item;
  }
  void ExpectVisible(std::initializer_list<int> items, bool wanted) const {
    for (const int item : items)
      EXPECT_EQ(At(item).visible, wanted) << "item " << item;
  }
  // An item that is insensitive is off, too.
  void ExpectOffUnless(std::initializer_list<int> items, bool allowed) const {
    EXPECT_TRUE(allowed || CountOn(items) == 0);
  }
  [[nodiscard]] const DialogItem &At(int item) const { return *dialog.Find(item); }

private:
  const DialogModel &dialog;
};

void CheckChooseManage(const DialogModel &dialog) {
  const Items items(dialog);
  const bool manages = dialog.Title() == "Manage Transformations";
  const bool hasSelection = items.State(4) >= 0;
  EXPECT_EQ(items.CountOn({1, 2, 11}), 1);
  EXPECT_EQ(hasSelection, !items.At(4).labels.empty());
  EXPECT_EQ(items.At(3).labels.front(), "CHOICES");
  items.ExpectSensitive({3}, items.IsOn(2));
  items.ExpectSensitive({12, 13}, items.IsOn(11));
  items.ExpectVisible({5, 6, 7}, manages);
  items.ExpectSensitive({8}, manages || hasSelection);
  if (manages)
    items.ExpectSensitive({5, 7}, hasSelection);
  items.ExpectSensitive({1, 2, 4, 6, 9, 11}, true);
}

bool IsComplete(const Items &items) {
  const bool lacksFolder = items.IsOn(13) && !items.Has(14);
  const bool lacksSuffix = items.IsOn(16) && items.IsOn(17) && !items.Has(18);
  const bool hasProcessor = items.State(10) >= 1 && items.State(10) <= configuredProcessors;
  return items.Has(1) && (items.IsOn(7) || items.Has(5)) && hasProcessor && !lacksFolder && !lacksSuffix;
}

void CheckNewEdit(const DialogModel &dialog) {
  const Items items(dialog);
  const bool besideSource = items.IsOn(16);
  EXPECT_EQ(items.CountOn({4, 7}), 1);
  EXPECT_EQ(items.CountOn({13, 16, 20, 21}), 1);
  EXPECT_EQ(items.CountOn({17, 19}), besideSource ? 1 : 0);
  EXPECT_EQ(items.CountOn({28, 29}), items.IsOn(22) ? 1 : 0);
  items.ExpectSensitive({5, 6}, items.IsOn(4));
  items.ExpectSensitive({14, 15}, items.IsOn(13));
  items.ExpectSensitive({17, 19}, besideSource);
  items.ExpectSensitive({18}, besideSource && items.IsOn(17));
  items.ExpectSensitive({28, 29}, items.IsOn(22));
  items.ExpectSensitive({30}, IsComplete(items));
  items.ExpectSensitive({1, 4, 7, 8, 10, 13, 16, 20, 21, 22, 27}, true);
  // Whether something changed since the last save does not show; but without a file nothing can be saved.
  EXPECT_TRUE(!items.At(26).sensitive || (IsComplete(items) && items.Has(23)));
}

// The walk opens a map and makes it the active document.
void CheckAdvancedRun(const DialogModel &dialog) {
  const Items items(dialog);
  const bool inFolder = items.IsOn(3);
  EXPECT_EQ(items.CountOn({1, 2, 3}), 1);
  EXPECT_EQ(items.CountOn({8, 9}), 1);
  items.ExpectSensitive({1, 2, 3, 8, 9, 15}, true);
  items.ExpectSensitive({6}, items.IsOn(1));
  items.ExpectSensitive({4, 5, 16}, inFolder);
  items.ExpectOffUnless({6}, items.IsOn(1));
  items.ExpectOffUnless({16}, inFolder);
  items.ExpectSensitive({10, 11}, items.IsOn(8));
  items.ExpectSensitive({12, 13}, items.IsOn(9));
  items.ExpectSensitive({14}, (!inFolder || items.Has(4)) && items.Has(items.IsOn(8) ? 10 : 12));
}

void CheckStylesheetParams(const DialogModel &dialog) {
  const Items items(dialog);
  const host::GridModel &grid = *dialog.Grid();
  ASSERT_FALSE(grid.Rows().empty());
  EXPECT_EQ(grid.Rows().back().values, (std::vector<std::string>{"", ""})) << "no row for one more";
  items.ExpectSensitive({4}, grid.Selection().row >= 0);
  items.ExpectSensitive({3}, true);
}

class Wanderer final : public test::SilentFront {
public:
  Wanderer(const test::Folder &where, int wantedDialog)
      : folder(where), target(wantedDialog), random(static_cast<unsigned>(wantedDialog)) {}

  std::map<int, int> events;

  [[nodiscard]] host::Answer Alert(host::AlertKind, const std::string &) override {
    return OneIn(2) ? host::Answer::Proceed : host::Answer::Decline;
  }
  [[nodiscard]] std::optional<std::string> ChooseFile(const host::FileChooser &) override {
    return OneIn(4) ? std::nullopt : std::optional(SomePath());
  }
  void RunDialog(DialogModel &dialog) override {
    Check(dialog);
    for (int step = 0; dialog.IsOpen(); ++step) {
      const std::string did = Act(dialog, step);
      ++events[dialog.Number()];
      if (dialog.IsOpen())
        Check(dialog);
      if (testing::Test::HasFailure()) {
        ADD_FAILURE() << "after event " << events[dialog.Number()] << " of dialog " << dialog.Number() << ": " << did;
        static_cast<void>(dialog.CloseFrame());
      }
    }
  }
  [[nodiscard]] bool IsCancelled() override { return OneIn(10); }

private:
  bool OneIn(unsigned count) { return random() % count == 0; }
  std::string SomePath() {
    constexpr const char *names[] = {"good.xml", "broken.xml", "other.xml", "empty.xml",    "missing/a.xml",
                                     "a.xsl",    "broken.xsl", "input",     "input/a.dita", ""};
    return folder.Path(names[random() % std::size(names)]);
  }
  std::string SomeText() {
    constexpr const char *texts[] = {
        "", "HTML", "PDF", "\xC3\xBC \"x\" 'y' & <z>", "<no value>", "depth", "$STRUCTDIR/a.xml"};
    return OneIn(3) ? SomePath() : texts[random() % std::size(texts)];
  }

  static void Check(const DialogModel &dialog) {
    const std::map<int, void (*)(const DialogModel &)> checks = {{AdvancedRun, CheckAdvancedRun},
                                                                 {ChooseManage, CheckChooseManage},
                                                                 {NewEdit, CheckNewEdit},
                                                                 {StylesheetParams, CheckStylesheetParams}};
    checks.at(dialog.Number())(dialog);
  }

  // One thing that a person could do; what it was.
  std::string Act(DialogModel &dialog, int step) {
    if (step > 80) {
      EXPECT_EQ(dialog.CloseFrame(), ActionResult::Done);
      return "close";
    }
    if (dialog.Number() == NewEdit && target == StylesheetParams && OneIn(3)) {
      EXPECT_EQ(dialog.Click(8), ActionResult::Done);
      return "parameters";
    }
    for (;;) {
      const DialogItem &item = dialog.Items()[random() % dialog.Items().size()];
      std::string name = "item " + std::to_string(item.number);
      if (item.kind == ItemKind::Label || item.kind == ItemKind::GridFrame || item.isGroupBox)
        continue;
      if (!item.IsShown() || !item.sensitive) {
        EXPECT_NE(dialog.Click(item.number), ActionResult::Done) << name;
        continue;
      }
      // Closing buttons less often than the rest, so that walks are long.
      const bool mayClose =
          item.kind == ItemKind::Button && (item.number == dialog.DefaultItem() || item.number == dialog.CancelItem());
      if ((mayClose && !OneIn(6)) || !Use(dialog, item))
        continue;
      return name;
    }
  }

  // False when there was nothing to do with the item.
  bool Use(DialogModel &dialog, const DialogItem &item) {
    const int number = item.number; // the item may be gone after a nested dialog
    switch (item.kind) {
    case ItemKind::TextBox:
    case ItemKind::PathBox:
      EXPECT_EQ(dialog.EnterText(number, SomeText()), item.IsReadOnly() ? ActionResult::ReadOnly : ActionResult::Done);
      return true;
    case ItemKind::List:
    case ItemKind::PopUp: {
      if (item.labels.empty())
        return false;
      EXPECT_EQ(dialog.Choose(number, static_cast<int>(random() % item.labels.size())), ActionResult::Done);
      if (item.kind == ItemKind::List && OneIn(3)) {
        EXPECT_EQ(dialog.DoubleClick(number), ActionResult::Done);
      }
      return true;
    }
    case ItemKind::Grid:
      UseGrid(dialog);
      return true;
    default:
      EXPECT_EQ(dialog.Click(number), ActionResult::Done) << number;
      return true;
    }
  }

  void UseGrid(DialogModel &dialog) {
    const auto row = static_cast<int>(random() % dialog.Grid()->Rows().size());
    const auto cell = static_cast<int>(random() % 2);
    if (OneIn(2)) {
      EXPECT_EQ(dialog.SelectInGrid({row, OneIn(2) ? cell : -1}), ActionResult::Done);
      return;
    }
    const std::string before = dialog.Grid()->Shown(row, cell);
    EXPECT_EQ(dialog.EditGrid(row, cell, SomeText()), ActionResult::Done);
    EXPECT_TRUE(dialog.Grid()->Shown(row, cell) == before || dialog.Find(2)->sensitive)
        << "an edited list cannot be accepted";
  }

  const test::Folder &folder;
  int target;
  std::mt19937 random;
};

constexpr std::string_view catalogue = R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Transformations>
<Transformation><Name>HTML</Name><Input><XSLPath>a.xsl</XSLPath></Input><Processor>Saxon</Processor>
<Parameters><Parameter expression="3" name="depth"/></Parameters>
<Output><OutputLocation><DirPath>/nowhere</DirPath></OutputLocation><OpenOutput in=""/></Output></Transformation>
<Transformation><Name>PDF</Name><Input><UsePI/></Input><Processor>Gone</Processor><Parameters/>
<Output><OutputLocation><SameLocationAsSource suffix="_x"/></OutputLocation><OpenOutput in="Vellis"/></Output>
</Transformation></Transformations>)";

constexpr std::string_view stylesheet = R"(<x:stylesheet xmlns:x="http://www.w3.org/1999/XSL/Transform" version="1.0">
<x:param name="depth" select="2"/><x:param name="title"/></x:stylesheet>)";

void FillFolder(const test::Folder &folder) {
  folder.Write("good.xml", catalogue);
  folder.Write("other.xml", "<Transformations/>");
  folder.Write("broken.xml", "<Transformations><Name/></Transformations>");
  folder.Write("empty.xml", "");
  folder.Write("a.xsl", stylesheet);
  folder.Write("broken.xsl", "<x:stylesheet");
  folder.Write("input/a.dita", "<topic id='a'/>");
}

class DialogWalk : public testing::TestWithParam<std::pair<int, std::vector<std::string>>> {};

TEST_P(DialogWalk, TenThousandEvents) {
  // Every save waits for the disk; a walk saves thousands of times.
  if (kit::IsFolder("/dev/shm"))
    setenv("TMPDIR", "/dev/shm", 1);
  const auto &[number, requests] = GetParam();
  const test::Folder folder;
  folder.Write("map.ditamap", "<map><topicref href='input/a.dita'/></map>");
  host::Configuration configuration;
  configuration.installFolder = VLXSLT_SHARE_FOLDER;
  configuration.structureFolder = folder.Path("structure");
  configuration.defaultCatalogue = folder.Path("other.xml");
  configuration.processors = {{"Saxon", "", "a.A"}, {"Xalan", "", "b.B"}};
  configuration.applications = {{.name = "DITA", .catalogue = folder.Path("good.xml"), .files = {"*.ditamap"}},
                                {.name = "Missing", .catalogue = folder.Path("missing/a.xml"), .files = {"*"}}};
  Wanderer wanderer(folder, number);
  host::Session session(configuration, {FAKE_CLIENT_FOLDER, VLXSLT_SHARE_FOLDER}, wanderer);
  std::string problem;
  ASSERT_TRUE(session.OpenFile(folder.Path("map.ditamap"), host::OpenAs::ActiveDocument, problem)) << problem;
  for (size_t round = 0; wanderer.events[number] < eventsPerDialog && !HasFailure(); ++round) {
    FillFolder(folder); // the walk before may have saved over everything
    ASSERT_EQ(session.Send("XSLT", requests[round % requests.size()]).error, "");
  }
}

INSTANTIATE_TEST_SUITE_P(
    Dialogs, DialogWalk,
    testing::Values(std::pair(ChooseManage, std::vector<std::string>{"XSLTManageTranDlg ", "XSLTChooseTranDlg "}),
                    std::pair(NewEdit, std::vector<std::string>{"NewTransformationDlg ", "XSLTManageTranDlg "}),
                    std::pair(AdvancedRun, std::vector<std::string>{"XSLTAdvanceRunDlg "}),
                    std::pair(StylesheetParams, std::vector<std::string>{"NewTransformationDlg "})),
    [](const auto &each) { return "Dialog" + std::to_string(each.param.first); });

} // namespace
