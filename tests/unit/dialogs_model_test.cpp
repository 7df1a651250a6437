// The dialog model: what a person can and cannot do, what closes a dialog, and scripts that cannot be used.
#include "host/dialog_host.h"
#include "host/fronts/script.h"
#include "report/messages.h"
#include "tests/unit/fake_host.h"
#include "tests/unit/host_fixture.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace {

using host::ActionResult;
using host::DialogModel;

// Runs what a test does while the dialog is open.
class PlayingFront final : public test::SilentFront {
public:
  std::function<void(DialogModel &)> play;

  void RunDialog(DialogModel &dialog) override { play(dialog); }
};

// One dialog of the client's resources with a client that only notes events, and can act on them.
class OneDialog {
public:
  host::DialogHost dialogs;
  V_ObjectT handle;
  std::vector<int> events;
  std::function<void(int)> serve;

  explicit OneDialog(const char *name) : handle(dialogs.Open(name, report::ClientResources())) {}

  void Play(std::function<void(DialogModel &)> play) {
    PlayingFront front;
    front.play = std::move(play);
    dialogs.Run(11, handle, front, [this](int32_t, int32_t item) {
      events.push_back(item);
      if (serve)
        serve(item);
    });
  }
  void Set(int item, int property, int value) { dialogs.SetInt(dialogs.Item(handle, item), property, value); }
  [[nodiscard]] int Get(int item, int property) { return dialogs.GetInt(dialogs.Item(handle, item), property); }
};

TEST(DialogModel, StartsAsTheTableSays) {
  OneDialog dialog("new_edit_transformation");
  dialog.Play([](DialogModel &model) {
    EXPECT_EQ(model.Title(), "New Transformation");
    EXPECT_EQ(model.Number(), 11);
    EXPECT_EQ(model.Focus(), 1);
    EXPECT_EQ(model.DefaultItem(), 26);
    EXPECT_EQ(model.CancelItem(), 27);
  });
  for (const int item : {4, 13, 17})
    EXPECT_EQ(dialog.Get(item, V_IP_STATE), 1) << item;
  for (const int item : {7, 16, 19, 22, 28})
    EXPECT_EQ(dialog.Get(item, V_IP_STATE), 0) << item;
  EXPECT_EQ(dialog.Get(10, V_IP_STATE), -1) << "a pop-up without labels";
  EXPECT_EQ(dialog.events, (std::vector<int>{V_ITEM_INITIALISE, V_ITEM_FRAME_CLOSED})) << "the front walked away";
}

TEST(DialogModel, RefusesWhatAPersonCouldNotDo) {
  OneDialog dialog("new_edit_transformation");
  dialog.Set(1, V_IP_SENSITIVE, 0);
  dialog.Set(5, V_IP_VISIBLE, 0);
  const struct {
    std::function<ActionResult(DialogModel &)> act;
    ActionResult result;
  } cases[] = {
      {[](DialogModel &model) { return model.EnterText(1, "x"); }, ActionResult::Insensitive},
      {[](DialogModel &model) { return model.EnterText(5, "x"); }, ActionResult::Hidden},
      {[](DialogModel &model) { return model.Click(25); }, ActionResult::Hidden}, // of no size
      {[](DialogModel &model) { return model.EnterText(23, "x"); }, ActionResult::ReadOnly},
      {[](DialogModel &model) { return model.Click(0); }, ActionResult::WrongKind}, // a label
      {[](DialogModel &model) { return model.Click(2); }, ActionResult::WrongKind}, // a group box
      {[](DialogModel &model) { return model.Click(14); }, ActionResult::WrongKind},
      {[](DialogModel &model) { return model.EnterText(26, "x"); }, ActionResult::WrongKind},
      {[](DialogModel &model) { return model.DoubleClick(10); }, ActionResult::WrongKind},
      {[](DialogModel &model) { return model.Switch(26, true); }, ActionResult::WrongKind},
      {[](DialogModel &model) { return model.Choose(10, 0); }, ActionResult::BadValue}, // no labels
      {[](DialogModel &model) { return model.Choose(10, -1); }, ActionResult::BadValue},
      {[](DialogModel &model) { return model.Switch(4, false); }, ActionResult::BadValue}, // nothing turns it off
      {[](DialogModel &model) { return model.Click(31); }, ActionResult::NoSuchItem},
      {[](DialogModel &model) { return model.EditGrid(0, 0, "x"); }, ActionResult::NoSuchItem},
  };
  dialog.Play([&](DialogModel &model) {
    for (const auto &each : cases)
      EXPECT_EQ(each.act(model), each.result) << &each - cases;
    EXPECT_EQ(dialog.events, std::vector<int>{V_ITEM_INITIALISE}) << "the client heard of it";
    EXPECT_EQ(model.CloseFrame(), ActionResult::Done);
    EXPECT_EQ(model.Click(27), ActionResult::NotOpen);
  });
}

TEST(DialogModel, OnlyPushButtonsAndTheFrameClose) {
  OneDialog dialog("choose_manage_xslt");
  const V_ObjectT list = dialog.dialogs.Item(dialog.handle, 4);
  dialog.dialogs.SetStrings(list, V_IP_LABELS, {"a", "b"});
  dialog.Play([](DialogModel &model) {
    EXPECT_EQ(model.Choose(4, 1), ActionResult::Done);
    EXPECT_EQ(model.Click(11), ActionResult::Done);
    EXPECT_EQ(model.EnterText(12, "/a"), ActionResult::Done);
    EXPECT_TRUE(model.IsOpen());
    EXPECT_EQ(model.Click(8), ActionResult::Done);
    EXPECT_FALSE(model.IsOpen());
  });
  EXPECT_EQ(dialog.events, (std::vector<int>{V_ITEM_INITIALISE, 4, 11, 12, 8}));

  // A second opening finds the items as the first one left them.
  dialog.events.clear();
  dialog.serve = [&](int item) {
    if (item == 6)
      dialog.dialogs.KeepUp(dialog.handle);
  };
  dialog.Play([](DialogModel &model) {
    EXPECT_EQ(model.Find(12)->text, "/a");
    EXPECT_EQ(model.Find(4)->state, 1);
    EXPECT_EQ(model.Click(6), ActionResult::Done);
    EXPECT_TRUE(model.IsOpen());
    EXPECT_EQ(model.Click(5), ActionResult::Done) << "kept up for one event only";
    EXPECT_FALSE(model.IsOpen());
  });
}

TEST(DialogModel, ADoubleClickPressesTheDefaultButtonUnlessTheDialogIsKeptUp) {
  OneDialog dialog("choose_manage_xslt");
  dialog.dialogs.SetStrings(dialog.dialogs.Item(dialog.handle, 4), V_IP_LABELS, {"a"});
  dialog.Set(4, V_IP_REPORTS_DOUBLE_CLICK, 1);
  bool keepsUp = true;
  std::vector<int> doubleClicks;
  dialog.serve = [&](int item) {
    if (dialog.dialogs.GetInt(dialog.handle, V_DP_DOUBLE_CLICK))
      doubleClicks.push_back(item);
    if (keepsUp)
      dialog.dialogs.KeepUp(dialog.handle);
  };
  dialog.Play([&](DialogModel &model) {
    EXPECT_EQ(model.DoubleClick(4), ActionResult::BadValue) << "nothing is chosen";
    EXPECT_EQ(model.Choose(4, 0), ActionResult::Done);
    EXPECT_EQ(model.DoubleClick(4), ActionResult::Done);
    EXPECT_TRUE(model.IsOpen());
    keepsUp = false;
    EXPECT_EQ(model.DoubleClick(4), ActionResult::Done);
    EXPECT_FALSE(model.IsOpen());
  });
  EXPECT_EQ(dialog.events, (std::vector<int>{V_ITEM_INITIALISE, 4, 4, 4, 8}));
  EXPECT_EQ(doubleClicks, (std::vector<int>{4, 4}));
}

TEST(DialogModel, RadioButtonsExcludeTheirOwnGroupOnly) {
  OneDialog dialog("new_edit_transformation");
  dialog.Play([&](DialogModel &model) {
    const struct {
      int click;
      std::vector<int> on;
    } steps[] = {{7, {7, 13, 17}}, {21, {7, 17, 21}}, {19, {7, 19, 21}}, {28, {7, 19, 21, 28}}, {29, {7, 19, 21, 29}}};
    for (const auto &step : steps) {
      EXPECT_EQ(model.Click(step.click), ActionResult::Done);
      std::vector<int> on;
      for (const host::DialogItem &item : model.Items())
        if (item.kind == host::ItemKind::Radio && item.state)
          on.push_back(item.number);
      EXPECT_EQ(on, step.on) << step.click;
    }
  });
}

TEST(DialogModel, NothingReachesADialogThatServesAnEvent) {
  OneDialog dialog("choose_manage_xslt");
  DialogModel *open = nullptr;
  ActionResult reached = ActionResult::Done;
  ActionResult closed = ActionResult::Done;
  dialog.serve = [&](int item) {
    if (item == 1) {
      reached = open->Click(2);
      closed = open->CloseFrame();
    }
    // Nor can it be opened a second time.
    PlayingFront front;
    front.play = [](DialogModel &) { ADD_FAILURE() << "opened twice"; };
    dialog.dialogs.Run(11, dialog.handle, front, [](int32_t, int32_t) {});
  };
  dialog.Play([&](DialogModel &model) {
    open = &model;
    EXPECT_EQ(model.Click(1), ActionResult::Done);
  });
  EXPECT_EQ(reached, ActionResult::Busy);
  EXPECT_EQ(closed, ActionResult::Busy);
}

TEST(DialogModel, HandlesLeadOnlyToWhatIsThere) {
  host::DialogHost dialogs;
  EXPECT_EQ(dialogs.Open("no_such_dialog", report::ClientResources()), 0U);
  const V_ObjectT one = dialogs.Open("choose_manage_xslt", report::ClientResources());
  const V_ObjectT other = dialogs.Open("ADVANCE_XSLT", report::ClientResources());
  EXPECT_GE(one, 0x10000U);
  EXPECT_NE(one, other);
  EXPECT_EQ(dialogs.Open("Choose_Manage_Xslt", report::ClientResources()), one) << "not on screen, so it begins anew";
  EXPECT_EQ(dialogs.Item(one, 14), 0U);
  EXPECT_EQ(dialogs.Item(one, -9), 0U);
  EXPECT_EQ(dialogs.Item(other + 0x5000, 1), 0U);
  EXPECT_EQ(dialogs.GetInt(dialogs.Item(other, 14), V_OP_TYPE), V_TYPE_DIALOG_ITEM);
  EXPECT_EQ(dialogs.GetInt(other, V_OP_TYPE), V_TYPE_DIALOG);
  dialogs.SetString(dialogs.Item(other, 12), V_IP_TEXT, "/a.xsl");
  EXPECT_EQ(dialogs.GetString(dialogs.Item(other, 12), V_IP_TEXT), "/a.xsl");
  EXPECT_EQ(dialogs.GetString(dialogs.Item(one, 12), V_IP_TEXT), "");
  EXPECT_EQ(dialogs.MakeGrid(one, 1, 0, {}), 0U) << "no place for a grid";
  EXPECT_EQ(dialogs.FindGrid(dialogs.Item(one, 1)), nullptr);
}

TEST(GridModel, KeepsRowsCellsAndOneSelection) {
  host::GridModel grid("Parameters", "<no value>");
  EXPECT_EQ(grid.AddRow({{"Name", "Expression"}, {"depth", ""}}), 0);
  EXPECT_EQ(grid.AddRow({{"Name", "Expression"}, {}}), 1);
  EXPECT_EQ(grid.Shown(0, 0), "depth");
  EXPECT_EQ(grid.Shown(0, 1), "<no value>");
  EXPECT_EQ(grid.Shown(0, 2), "");
  EXPECT_EQ(grid.Shown(-1, 0), "");
  EXPECT_EQ(grid.EditCell(2, 0, "x"), ActionResult::BadValue);
  EXPECT_EQ(grid.EditCell(1, 1, "<no value>"), ActionResult::Done);
  EXPECT_EQ(grid.Rows()[1].values[1], "");
  EXPECT_EQ(grid.Selection(), (host::GridSelection{1, 1}));
  EXPECT_EQ(grid.SelectPlace({0, 2}), ActionResult::BadValue);
  grid.DeleteRow(5);
  EXPECT_EQ(grid.Selection(), (host::GridSelection{1, 1}));
  grid.DeleteRow(0);
  EXPECT_EQ(grid.Rows().size(), 1U);
  EXPECT_EQ(grid.Selection(), host::GridSelection()) << "what was selected may have moved";
}

TEST(Script, WordsQuotesAndComments) {
  const host::ScriptResult script = host::ParseScript("# a comment\n\n\tset 12 \"a b  c\"  # more\r\nchoose a#b\n"
                                                      "expect 4 labels\nexpect 4 labels a \"\" \"# b\"\nset 1 \"\"");
  ASSERT_EQ(script.error, "");
  ASSERT_EQ(script.steps.size(), 5U);
  EXPECT_EQ(script.steps[0].line, 3U);
  EXPECT_EQ(script.steps[0].words, (std::vector<std::string>{"set", "12", "a b  c"}));
  EXPECT_EQ(script.steps[1].words, (std::vector<std::string>{"choose", "a#b"}));
  EXPECT_EQ(script.steps[3].words, (std::vector<std::string>{"expect", "4", "labels", "a", "", "# b"}));
  EXPECT_EQ(script.steps[4].words, (std::vector<std::string>{"set", "1", ""}));
}

TEST(Script, EverySlipIsFoundWithItsLine) {
  for (const std::string_view bad : {"answer maybe",
                                     "answer",
                                     "answer yes no",
                                     "choose",
                                     "choose a b",
                                     "dismiss now",
                                     "dialog",
                                     "dialog eleven",
                                     "set 1",
                                     "set one x",
                                     "set -1 x",
                                     "set 12345678901 x",
                                     "click",
                                     "click 1 2",
                                     "doubleclick x",
                                     "frame 1",
                                     "grid",
                                     "grid add a",
                                     "grid set 0 value x",
                                     "grid select",
                                     "grid select 0 title",
                                     "expect",
                                     "expect title",
                                     "expect 3 labelled a",
                                     "expect 3 text",
                                     "expect 3 text a b",
                                     "expect 3 visible now",
                                     "expect grid 0 a",
                                     "expect grid rows many",
                                     "Click 1",
                                     "set 1 \"open"}) {
    const host::ScriptResult script = host::ParseScript("click 1\n" + std::string(bad) + "\nclick 2\n");
    EXPECT_TRUE(script.error.starts_with("line 2: ")) << bad << ": " << script.error;
    EXPECT_NE(script.error.find(bad), std::string::npos) << script.error;
  }
}

} // namespace
