// The dialogs over several openings in one process, and the requests that they compose, played by scripts.
#include "dialogs/dialogs.h"

#include "catalogue/reader.h"
#include "host/dialog_host.h"
#include "host/fronts/script_front.h"
#include "report/messages.h"
#include "tests/unit/catalogue_fixture.h"
#include "tests/unit/host_fixture.h"

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr V_ObjectT document = 7;
constexpr V_ObjectT book = 8;

// The host of the other tests, with the dialogs of the real one and a script in front.
class DialogPlay : public CatalogueTest {
protected:
  DialogPlay() : table(host.Table()) {
    current = this;
    table.openDialog = [](void *, const char *name) { return current->Open(name); };
    table.dialogItem = [](void *, V_ObjectT dialog, int32_t item) { return current->models.Item(dialog, item); };
    table.runDialog = [](void *, int32_t number, V_ObjectT dialog) {
      current->models.Run(number, dialog, *current->front,
                          [](int32_t which, int32_t item) { dialogs::DialogEvent(which, item, 0); });
    };
    table.keepDialogUp = [](void *, V_ObjectT dialog) { current->models.KeepUp(dialog); };
    table.alert = [](void *, const char *text, int32_t kind) { return current->Alert(text, kind); };
    table.chooseFile = [](void *, int32_t kind, const char *title, const char *filter, const char *) {
      return Give(current->front->ChooseFile({static_cast<host::ChooserKind>(kind), title, filter ? filter : "", {}}));
    };
    ForwardProperties();
    ForwardGrid();
    V_AttachHost(&table);
    dialogs::ShutDownDialogs();
    MakeApplications();
  }
  ~DialogPlay() override {
    dialogs::ShutDownDialogs();
    V_AttachHost(&host.Table());
  }

  // Plays a script to its end while `open` has a dialog on screen.
  template <class Open> auto Play(const std::string &script, Open open) {
    host::ScriptResult read = host::ParseScript(script);
    EXPECT_EQ(read.error, "");
    host::ScriptFront scriptFront("script", std::move(read.steps), screen);
    front = &scriptFront;
    auto result = open();
    scriptFront.Finish();
    EXPECT_EQ(scriptFront.Failure(), "");
    return result;
  }
  std::string Advanced(const std::string &steps) {
    return Play("dialog 10\n" + steps, [] { return dialogs::OpenAdvancedRunDialog(); });
  }
  std::vector<std::string> Choose(const std::string &steps) {
    return Play("dialog 11\n" + steps, [] { return dialogs::OpenChooseDialog().Strings(0).value(); });
  }
  void Manage(const std::string &steps) {
    Play("dialog 11\n" + steps, [] { return dialogs::OpenManageDialog(), 0; });
  }

  void Activate(bool isMap) {
    host.objects[{V_SESSION, V_SP_ACTIVE_DOCUMENT}] = document;
    host.objects[{V_SESSION, V_SP_FIRST_OPEN_DOCUMENT}] = document;
    host.ints[{document, V_OP_TYPE}] = V_TYPE_DOCUMENT;
    host.ints[{document, V_OP_SHOWN}] = 1;
    host.ints[{document, V_OP_IS_DITA_MAP}] = isMap;
    host.strings[{document, V_OP_FULL_NAME}] = "/in/a.xml";
    host.strings[{document, V_OP_APPLICATION}] = "Two Words";
  }

  std::function<void(const std::string &)> beforeAlert;
  bool opensDialogs = true;
  host::Front *front = nullptr;

private:
  static char *Give(const std::optional<std::string> &text) {
    return text ? kit::HostString::Copy(*text).Release() : nullptr;
  }
  V_ObjectT Open(const char *name) { return opensDialogs ? models.Open(name, report::ClientResources()) : 0; }
  int32_t Alert(const char *text, int32_t kind) {
    if (beforeAlert)
      beforeAlert(text);
    return front->Alert(static_cast<host::AlertKind>(kind), text) == host::Answer::Proceed;
  }

  void ForwardProperties() {
    table.getInt = [](void *fake, V_ObjectT object, int32_t property) {
      return host::DialogHost::Owns(object) ? current->models.GetInt(object, property)
                                            : current->host.Table().getInt(fake, object, property);
    };
    table.setInt = [](void *fake, V_ObjectT object, int32_t property, int32_t value) {
      if (host::DialogHost::Owns(object))
        current->models.SetInt(object, property, value);
      else
        current->host.Table().setInt(fake, object, property, value);
    };
    table.getString = [](void *fake, V_ObjectT object, int32_t property) {
      return host::DialogHost::Owns(object) ? Give(current->models.GetString(object, property))
                                            : current->host.Table().getString(fake, object, property);
    };
    table.setString = [](void *, V_ObjectT object, int32_t property, const char *value) {
      current->models.SetString(object, property, value);
    };
    table.getStrings = [](void *fake, V_ObjectT object, int32_t property) {
      return host::DialogHost::Owns(object) ? kit::MakeStrings(current->models.GetStrings(object, property))
                                            : current->host.Table().getStrings(fake, object, property);
    };
    table.setStrings = [](void *, V_ObjectT object, int32_t property, const V_StringsT *value) {
      current->models.SetStrings(object, property, kit::ReadStrings(*value));
    };
  }

  void ForwardGrid() {
    table.makeGrid = [](void *, V_ObjectT dialog, int32_t item, int32_t frame, const char *header, const char *none) {
      return current->models.MakeGrid(dialog, item, frame, host::GridModel(header, none));
    };
    table.gridAddRow = [](void *, V_ObjectT grid, const V_StringsT *titles, const V_StringsT *values) {
      return current->models.FindGrid(grid)->AddRow({kit::ReadStrings(*titles), kit::ReadStrings(*values)});
    };
    table.gridRowCount = [](void *, V_ObjectT grid) {
      return static_cast<int32_t>(current->models.FindGrid(grid)->Rows().size());
    };
    table.gridCellCount = [](void *, V_ObjectT grid, int32_t row) {
      return current->models.FindGrid(grid)->CellCount(row);
    };
    table.gridCell = [](void *, V_ObjectT grid, int32_t row, int32_t cell) {
      return Give(current->models.FindGrid(grid)->Shown(row, cell));
    };
  }

  // <Defaults> with one catalogue, "Two Words" with another one; the open document belongs to the second.
  void MakeApplications() {
    Write("structure/default.xml", Catalogue(Element("Plain")));
    Write("structure/two.xml", Catalogue(Element("HTML") + Element("PDF")));
    host.strings[{V_SESSION, V_SP_DEFAULT_CATALOGUE}] = "$STRUCTDIR/default.xml";
    host.lists[{V_SESSION, V_SP_APPLICATIONS}] = {"Other", "Two Words"};
    host.clients["VlDispatcher"] = [](const std::string &request) {
      kit::TypedValues reply;
      if (request.starts_with("GetAppsForFile"))
        reply.AddStrings({"Two Words"});
      else if (request.find("\"Two Words\"") != std::string::npos || request.find("\"Other\"") != std::string::npos)
        reply.AddString("$STRUCTDIR/two.xml");
      else if (request.find("\"<Defaults>\"") != std::string::npos)
        reply.AddString("$STRUCTDIR/default.xml");
      return reply;
    };
  }

  static inline DialogPlay *current = nullptr;
  host::DialogHost models;
  V_HostT table;
  test::SilentFront screen;
};

using AdvancedDialog = DialogPlay;

TEST_F(AdvancedDialog, ComposesExactlyTheseRequests) {
  Activate(true);
  const std::string defaultFile = Path("structure/default.xml");
  const struct {
    std::string steps;
    std::string request;
  } cases[] = {
      {"click 1\nclick 8\nclick 11\ndialog 11\nclick 1\nclick 8\nexpect 10 text Plain\nclick 14\n",
       "XSLTRunTrScenario  -currentfile -trfile \"" + defaultFile + "\" -trname \"Plain\""},
      {"click 6\nclick 11\ndialog 11\nclick 2\nset 3 3\nset 4 1\nclick 8\nclick 14\n",
       "XSLTRunTrScenario  -currentfilewithchildren -appname Two Words -trname \"PDF\""},
      {"click 2\nexpect 6 state off\nclick 14\n",
       "XSLTRunTrScenario  -allopenfiles  -appname Two Words -trname \"PDF\""},
      {"click 9\nset 12 \"/a b.xsl\"\nclick 14\n", "XSLTRunTrScenario  -allopenfiles  -xslfilepath \"/a b.xsl\" "},
      {"click 3\nexpect 14 insensitive\nclick 5\nchoose /in\nclick 14\n",
       "XSLTRunTrScenario  -folder \"/in\"  -xslfilepath \"/a b.xsl\" "},
      {"click 16\nclick 8\nclick 14\n", "XSLTRunTrScenario  -folders \"/in\"  -appname Two Words -trname \"PDF\""},
      {"click 9\nclick 13\ndismiss\nclick 13\nchoose /c.xsl\nclick 14\n",
       "XSLTRunTrScenario  -folders \"/in\"  -xslfilepath \"/c.xsl\" "},
      {"click 15\n", ""},
      {"frame\n", ""},
      {"click 1\nexpect 6 state on\nset 12 /q.xsl\nclick 14\n",
       "XSLTRunTrScenario  -currentfilewithchildren -xslfilepath \"/q.xsl\" "},
  };
  for (const auto &each : cases)
    EXPECT_EQ(Advanced(each.steps), each.request) << each.steps;
}

TEST_F(AdvancedDialog, QuotesWithWhateverQuoteIsLeft) {
  const std::vector<host::ScriptStep> steps = {
      {host::StepKind::Dialog, 1, {"dialog", "10"}, ""}, {host::StepKind::Set, 2, {"set", "4", "/a\"b"}, ""},
      {host::StepKind::Click, 3, {"click", "9"}, ""},    {host::StepKind::Set, 4, {"set", "12", "/it's.xsl"}, ""},
      {host::StepKind::Click, 5, {"click", "14"}, ""},
  };
  test::SilentFront silent;
  host::ScriptFront script("script", steps, silent);
  front = &script;
  EXPECT_EQ(dialogs::OpenAdvancedRunDialog(), "XSLTRunTrScenario  -folder '/a\"b'  -xslfilepath \"/it's.xsl\" ");
  EXPECT_EQ(script.Failure(), "");
}

TEST_F(AdvancedDialog, FollowsWhatIsOpen) {
  // Nothing is open: only folders are left, and the scope stays there when a document comes.
  Advanced("expect 1 insensitive\nexpect 2 insensitive\nexpect 3 state on\nexpect 4 sensitive\nclick 15\n");
  Activate(false);
  Advanced("expect 3 state on\nexpect 1 sensitive\nexpect 2 sensitive\nclick 1\nexpect 6 insensitive\n"
           "expect 4 insensitive\nexpect 16 insensitive\nclick 2\nclick 15\n");
  // The open document is hidden: its scope falls back to the current file.
  host.ints[{document, V_OP_SHOWN}] = 0;
  Advanced("expect 2 insensitive\nexpect 1 state on\nclick 15\n");
  // A book on screen is no open file to be transformed.
  host.ints[{document, V_OP_SHOWN}] = 1;
  host.ints[{document, V_OP_TYPE}] = V_TYPE_BOOK;
  Advanced("expect 2 insensitive\nclick 15\n");
  // A book has components, whatever the document is.
  host.objects[{V_SESSION, V_SP_ACTIVE_BOOK}] = book;
  Advanced("expect 6 sensitive\nclick 6\nclick 15\n");
  // Without it the check box is off again, but remembered.
  host.objects.erase({V_SESSION, V_SP_ACTIVE_BOOK});
  Advanced("expect 6 insensitive\nexpect 6 state off\nclick 15\n");
  host.objects[{V_SESSION, V_SP_ACTIVE_BOOK}] = book;
  Advanced("expect 6 state on\nclick 15\n");
}

TEST_F(AdvancedDialog, OffersTheDocumentsApplicationsOnlyForTheDocumentAlone) {
  Activate(true);
  Advanced(
      "click 11\ndialog 11\nexpect title \"Choose Transformation\"\nexpect 3 labels CHOICES <Defaults> \"Two Words\"\n"
      "click 9\nexpect 10 text \"\"\n"
      "click 6\nclick 11\ndialog 11\nexpect 3 labels CHOICES <Defaults> Other \"Two Words\"\nclick 9\n"
      "click 2\nclick 11\ndialog 11\nexpect 3 labels CHOICES <Defaults> Other \"Two Words\"\nclick 9\nclick 15\n");
}

TEST_F(AdvancedDialog, LooksForANameThatWasTyped) {
  Activate(false);
  EXPECT_EQ(Advanced("set 10 PDF\nclick 14\n"), "XSLTRunTrScenario  -currentfile -appname Two Words -trname \"PDF\"");
  EXPECT_EQ(Advanced("expect 10 text PDF\nset 10 Plain\nclick 14\n"),
            "XSLTRunTrScenario  -currentfile -appname <Defaults> -trname \"Plain\"");
  // No catalogue has it; the run says so.
  EXPECT_EQ(Advanced("set 10 None\nclick 14\n"),
            "XSLTRunTrScenario  -currentfile -appname <Defaults> -trname \"None\"");
}

TEST_F(AdvancedDialog, NeedsACatalogueForANameThatNobodyHas) {
  EXPECT_EQ(Advanced("set 4 /in\nset 10 None\nclick 14\n"),
            "XSLTRunTrScenario  -folder \"/in\"  -trfile \"" + Path("structure/default.xml") + "\" -trname \"None\"");
}

using ChooseDialog = DialogPlay;

TEST_F(ChooseDialog, BeginsWhereItWasLeft) {
  Activate(false);
  const std::string twoWords = Path("structure/two.xml");
  EXPECT_EQ(Choose("expect 3 text \"Two Words\"\nset 4 1\nclick 8\n"),
            (std::vector<std::string>{twoWords, "PDF", "Two Words"}));
  EXPECT_EQ(Choose("expect 4 text PDF\nclick 11\nset 12 \"" + Path("structure/default.xml") + "\"\nclick 8\n"),
            (std::vector<std::string>{Path("structure/default.xml"), "Plain", ""}));
  EXPECT_EQ(
      Choose("expect 11 state on\nexpect 4 text Plain\nclick 2\nexpect 3 text \"Two Words\"\nset 4 1\nclick 8\n")[1],
      "PDF");
  // Close forgets the three, and only them.
  EXPECT_EQ(Choose("expect 4 text PDF\nclick 1\nclick 9\n"), (std::vector<std::string>{"", "", ""}));
  EXPECT_EQ(Choose("expect 1 state on\nexpect 4 labels Plain\nclick 2\nexpect 4 text HTML\nframe\n"),
            (std::vector<std::string>{"", "", ""}));
  // The manage job shows the same list, with its buttons.
  Manage("expect title \"Manage Transformations\"\nexpect 2 state on\nexpect 6 visible\nclick 8\n");
  Choose("expect title \"Choose Transformation\"\nexpect 6 hidden\nclick 9\n");
}

TEST_F(ChooseDialog, KeepsTheListWhenADeletionFails) {
  beforeAlert = [this](const std::string &text) {
    if (text == "Delete the selected transformation?")
      Write("structure/default.xml", "<Transformations><Unknown/></Transformations>");
  };
  Manage("click 1\nclick 7\nanswer yes\nanswer ok\nexpect 4 labels Plain\nexpect 7 sensitive\nclick 8\n");
  EXPECT_EQ(folder.Read("structure/default.xml"), "<Transformations><Unknown/></Transformations>");
}

TEST_F(ChooseDialog, EditsStartFromTheRecordEachTime) {
  const std::string file = Write("all.xml", Catalogue(Element("A") + Element("B")));
  Manage("click 11\nset 12 \"" + file +
         "\"\nclick 5\ndialog 12\nset 5 changed.xsl\nclick 13\nset 14 /out\nclick 22\n"
         "set 1 Changed\nclick 27\n"
         // Nothing was saved: the form shows the record again, or nothing for a new one.
         "click 5\ndialog 12\nexpect 1 text A\nexpect 5 text A.xsl\nexpect 14 text \"\"\nexpect 21 state on\n"
         "expect 22 state off\nexpect 26 insensitive\nexpect 23 text \"" +
         file +
         "\"\nclick 27\n"
         "click 6\ndialog 12\nexpect title \"New Transformation\"\nexpect 1 text \"\"\nexpect 5 text \"\"\n"
         "expect 10 state -1\nexpect 23 text \"" +
         file + "\"\nclick 27\nexpect 4 text A\nclick 8\n");
  Play("dialog 12\nexpect 23 text \"\"\nclick 27\n", [] { return dialogs::OpenNewDialog(), 0; });
}

TEST_F(ChooseDialog, SaysWhenTheHostHasNoSuchDialog) {
  opensDialogs = false;
  const std::string alert = "answer ok\n";
  EXPECT_EQ(Play(alert, [] { return dialogs::OpenChooseDialog().Strings(0).value(); }),
            (std::vector<std::string>{"", "", ""}));
  EXPECT_EQ(Play(alert, [] { return dialogs::OpenAdvancedRunDialog(); }), "");
  // The parameters' own dialog cannot be opened: the list stays as it is, and the form stays usable.
  opensDialogs = true;
  beforeAlert = [this](const std::string &text) {
    EXPECT_EQ(text, "Unable to open dialog resource.");
    opensDialogs = true;
  };
  class Closing final : public host::Front {
  public:
    explicit Closing(bool &opens) : opensDialogs(opens) {}
    [[nodiscard]] host::Answer Alert(host::AlertKind, const std::string &) override { return host::Answer::Proceed; }
    [[nodiscard]] std::optional<std::string> ChooseFile(const host::FileChooser &) override { return std::nullopt; }
    void RunDialog(host::DialogModel &dialog) override {
      opensDialogs = false;
      EXPECT_EQ(dialog.Click(8), host::ActionResult::Done);
      EXPECT_TRUE(opensDialogs) << "no message was shown";
      EXPECT_TRUE(dialog.IsOpen());
    }
    void WriteConsole(std::string_view) override {}
    void ReportProgress(const host::Progress &) override {}
    [[nodiscard]] bool IsCancelled() override { return false; }

  private:
    bool &opensDialogs;
  };
  Closing closing(opensDialogs);
  front = &closing;
  dialogs::OpenNewDialog();
}

} // namespace
