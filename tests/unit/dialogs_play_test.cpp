// The dialogs over several openings in one session, and the requests that they compose, played by scripts.
#include "host/fronts/script_front.h"
#include "tests/unit/host_fixture.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace {

using Strings = std::vector<std::string>;

std::string Catalogue(const Strings &names) {
  std::string text;
  for (const std::string &name : names)
    text.append("<Transformation><Name>" + name)
        .append("</Name><Input><XSLPath>" + name)
        .append(".xsl</XSLPath></Input><Processor>Saxon</Processor></Transformation>");
  return "<Transformations>" + text + "</Transformations>";
}

// Asks the script that is being played.
class PlayedFront final : public test::SilentFront {
public:
  host::Front *script = nullptr;
  std::function<void(const std::string &)> beforeAlert = [](const std::string &) {};

  [[nodiscard]] host::Answer Alert(host::AlertKind kind, const std::string &text) override {
    beforeAlert(text);
    return script->Alert(kind, text);
  }
  [[nodiscard]] std::optional<std::string> ChooseFile(const host::FileChooser &chooser) override {
    return script->ChooseFile(chooser);
  }
  void RunDialog(host::DialogModel &dialog) override { script->RunDialog(dialog); }
};

// <Defaults> with one catalogue, "Other" and "Two Words" with another one; the documents belong to the last.
class DialogPlay : public testing::Test {
protected:
  DialogPlay() {
    folder.Write("default.xml", Catalogue({"Plain"}));
    folder.Write("two.xml", Catalogue({"HTML", "PDF"}));
    configuration.installFolder = VLXSLT_SHARE_FOLDER;
    configuration.defaultCatalogue = defaultFile;
    configuration.processors = {{"Saxon", "", "a.A"}};
    configuration.applications = {{.name = "Other", .catalogue = folder.Path("two.xml")},
                                  {.name = "Two Words", .catalogue = folder.Path("two.xml"), .files = {"a.*"}}};
  }

  V_ObjectT Open(const std::string &name, const std::string &text, host::OpenAs role) {
    std::string error;
    EXPECT_TRUE(session.OpenFile(folder.Write(name, text), role, error)) << error;
    return session.ListDocuments().back().object;
  }
  V_ObjectT OpenDocument() { return Open("a.xml", "<doc/>", host::OpenAs::ActiveDocument); }
  V_ObjectT OpenMap() { return Open("a.ditamap", "<map/>", host::OpenAs::ActiveDocument); }
  V_ObjectT OpenBook() { return Open("book.xml", "<book><component/></book>", host::OpenAs::ActiveBook); }

  // Plays a script to its end while the request has a dialog on screen.
  kit::TypedValues Play(const std::string &request, std::vector<host::ScriptStep> steps) {
    host::ScriptFront script("script", std::move(steps), screen);
    front.script = &script;
    (void)session.TakeRecord();
    kit::TypedValues reply = session.Send("XSLT", request).values;
    script.Finish();
    EXPECT_EQ(script.Failure(), "");
    return reply;
  }
  static std::vector<host::ScriptStep> Parse(const std::string &script) {
    host::ScriptResult read = host::ParseScript(script);
    EXPECT_EQ(read.error, "");
    return read.steps;
  }
  // The request that the dialog composed; empty after Cancel.
  std::string Advanced(const std::vector<host::ScriptStep> &steps) {
    (void)Play("XSLTAdvanceRunDlg ", steps);
    return session.Record().requests.size() > 1 ? session.Record().requests[1] : "";
  }
  std::string Advanced(const std::string &steps) { return Advanced(Parse("dialog 10\n" + steps)); }
  Strings Choose(const std::string &steps) {
    return Play("XSLTChooseTranDlg ", Parse("dialog 11\n" + steps)).Strings(0).value();
  }
  // Of the transformations of a catalogue, in file order.
  Strings Names(const std::string &catalogue) {
    const std::string text = folder.Read(catalogue);
    Strings names;
    for (size_t at = 0; (at = text.find("<Name>", at)) != std::string::npos;) {
      at += 6;
      names.push_back(text.substr(at, text.find("</Name>", at) - at));
    }
    return names;
  }
  void Manage(const std::string &steps) { (void)Play("XSLTManageTranDlg ", Parse("dialog 11\n" + steps)); }

  test::Folder folder;
  const std::string defaultFile = folder.Path("default.xml");
  host::Configuration configuration;
  test::SilentFront screen;
  PlayedFront front;
  host::Session session{configuration, {FAKE_CLIENT_FOLDER, VLXSLT_SHARE_FOLDER}, front};
};

using AdvancedDialog = DialogPlay;

TEST_F(AdvancedDialog, ComposesExactlyTheseRequests) {
  OpenMap();
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
  std::vector<host::ScriptStep> steps = Parse("dialog 10\nset 4 folder\nclick 9\nset 12 /it's.xsl\nclick 14\n");
  steps[1].words[2] = "/a\"b"; // which a script cannot write
  EXPECT_EQ(Advanced(steps), "XSLTRunTrScenario  -folder '/a\"b'  -xslfilepath \"/it's.xsl\" ");
}

TEST_F(AdvancedDialog, SaysWhatNoRequestCanCarry) {
  std::vector<std::string> alerts;
  front.beforeAlert = [&](const std::string &text) { alerts.push_back(text); };
  // Both kinds of quotes, which a script cannot write, in the folder, the stylesheet, and the name.
  std::vector<host::ScriptStep> steps =
      Parse("dialog 10\nset 4 folder\nclick 9\nset 12 /a.xsl\nclick 14\nanswer ok\nset 4 /in\nset 12 xsl\nclick 14\n"
            "answer ok\nclick 8\nset 10 name\nclick 14\nanswer ok\nset 10 Plain\nclick 14\n");
  const std::string quotes = R"(it's "a")";
  for (host::ScriptStep &step : steps)
    for (const char *word : {"folder", "xsl", "name"})
      if (step.words.size() > 2 && step.words[2] == word)
        step.words[2] = quotes;
  EXPECT_EQ(Advanced(steps), "XSLTRunTrScenario  -folder \"/in\"  -trfile \"" + defaultFile + "\" -trname \"Plain\"");
  ASSERT_EQ(alerts.size(), 3U);
  for (size_t index = 0; const char *option : {"-folder", "-xslfilepath", "-trname"})
    EXPECT_EQ(alerts[index++], std::string("The run cannot be started: a request cannot carry the value of ") + option +
                                   ", it holds both kinds of quotes: " + quotes);
}

TEST_F(AdvancedDialog, FollowsWhatIsOpen) {
  // Nothing is open: only folders are left, and the scope stays there when a document comes.
  Advanced("expect 1 insensitive\nexpect 2 insensitive\nexpect 3 state on\nexpect 4 sensitive\nclick 15\n");
  const V_ObjectT document = OpenDocument();
  Advanced("expect 3 state on\nexpect 1 sensitive\nexpect 2 sensitive\nclick 1\nexpect 6 insensitive\n"
           "expect 4 insensitive\nexpect 16 insensitive\nclick 2\nclick 15\n");
  // The open document is hidden: its scope falls back to the current file.
  V_ApiSetInt(document, V_OP_SHOWN, 0);
  Advanced("expect 2 insensitive\nexpect 1 state on\nclick 15\n");
  // A book has components, whatever the document is; it is no open file to be transformed.
  const V_ObjectT book = OpenBook();
  Advanced("expect 2 insensitive\nexpect 6 sensitive\nclick 6\nclick 15\n");
  // Without it the check box is off again, but remembered.
  session.CloseDocument(book);
  Advanced("expect 6 insensitive\nexpect 6 state off\nclick 15\n");
  OpenBook();
  Advanced("expect 6 state on\nclick 15\n");
}

TEST_F(AdvancedDialog, OffersTheDocumentsApplicationsOnlyForTheDocumentAlone) {
  OpenMap();
  Advanced(
      "click 11\ndialog 11\nexpect title \"Choose Transformation\"\nexpect 3 labels CHOICES <Defaults> \"Two Words\"\n"
      "click 9\nexpect 10 text \"\"\n"
      "click 6\nclick 11\ndialog 11\nexpect 3 labels CHOICES <Defaults> Other \"Two Words\"\nclick 9\n"
      "click 2\nclick 11\ndialog 11\nexpect 3 labels CHOICES <Defaults> Other \"Two Words\"\nclick 9\nclick 15\n");
}

TEST_F(AdvancedDialog, LooksForANameThatWasTyped) {
  EXPECT_EQ(Advanced("set 4 /in\nset 10 None\nclick 14\n"),
            "XSLTRunTrScenario  -folder \"/in\"  -trfile \"" + defaultFile + "\" -trname \"None\"");
  EXPECT_EQ(Advanced("set 10 \"  \"\nexpect 14 insensitive\nset 10 HTML\nclick 14\n"),
            "XSLTRunTrScenario  -folder \"/in\"  -trfile \"" + defaultFile + "\" -trname \"HTML\"");
  OpenDocument();
  // The same name again, now that a document is active whose application has it.
  EXPECT_EQ(Advanced("expect 10 text HTML\nclick 14\n"),
            "XSLTRunTrScenario  -folder \"/in\"  -appname Two Words -trname \"HTML\"");
  const std::string current = "XSLTRunTrScenario  -currentfile -appname ";
  EXPECT_EQ(Advanced("click 1\nset 10 PDF\nclick 14\n"), current + "Two Words -trname \"PDF\"");
  EXPECT_EQ(Advanced("expect 10 text PDF\nset 10 Plain\nclick 14\n"), current + "<Defaults> -trname \"Plain\"");
  // No catalogue has it; the run will say so.
  EXPECT_EQ(Advanced("set 10 None\nclick 14\n"), current + "<Defaults> -trname \"None\"");
}

using ChooseDialog = DialogPlay;

TEST_F(ChooseDialog, BeginsWhereItWasLeft) {
  OpenDocument();
  EXPECT_EQ(Choose("expect 3 text \"Two Words\"\nset 4 1\nclick 8\n"),
            (Strings{folder.Path("two.xml"), "PDF", "Two Words"}));
  EXPECT_EQ(Choose("expect 4 text PDF\nclick 11\nset 12 \"" + defaultFile + "\"\nclick 8\n"),
            (Strings{defaultFile, "Plain", ""}));
  EXPECT_EQ(
      Choose("expect 11 state on\nexpect 4 text Plain\nclick 2\nexpect 3 text \"Two Words\"\nset 4 1\nclick 8\n")[1],
      "PDF");
  // Close forgets the three, and only them.
  EXPECT_EQ(Choose("expect 4 text PDF\nclick 1\nclick 9\n"), (Strings{"", "", ""}));
  EXPECT_EQ(Choose("expect 1 state on\nexpect 4 labels Plain\nclick 2\nexpect 4 text HTML\nframe\n"),
            (Strings{"", "", ""}));
  // The manage job shows the same list, with its buttons.
  Manage("expect title \"Manage Transformations\"\nexpect 2 state on\nexpect 6 visible\nclick 8\n");
  Choose("expect title \"Choose Transformation\"\nexpect 6 hidden\nclick 9\n");
}

TEST_F(ChooseDialog, KeepsTheListWhenADeletionFails) {
  front.beforeAlert = [this](const std::string &text) {
    if (text == "Delete the selected transformation?")
      folder.Write("default.xml", "<Transformations><Unknown/></Transformations>");
  };
  Manage("click 1\nclick 7\nanswer yes\nanswer ok\nexpect 4 labels Plain\nexpect 7 sensitive\nclick 8\n");
  EXPECT_EQ(folder.Read("default.xml"), "<Transformations><Unknown/></Transformations>");
}

TEST_F(ChooseDialog, EditsStartFromTheRecordEachTime) {
  const std::string file = folder.Write("all.xml", Catalogue({"A", "B"}));
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
  (void)Play("NewTransformationDlg ", Parse("dialog 12\nexpect 23 text \"\"\nclick 27\n"));
}

using EditDialog = DialogPlay;

TEST_F(EditDialog, ReplacesInAnotherFileOnlyWhenAsked) {
  const std::string own = folder.Write("own.xml", Catalogue({"A", "B"}));
  const std::string other = folder.Write("other.xml", Catalogue({"A", "C"}));
  const std::string before = folder.Read("other.xml");
  const std::string edit = "click 11\nset 12 \"" + own + "\"\nset 4 0\nclick 5\ndialog 12\nset 5 changed.xsl\n";
  Manage(edit + "click 30\nchoose \"" + other + "\"\nanswer no\nexpect 23 text \"" + other +
         // Nor does a new name make the refused entry go.
         "\"\nclick 26\nanswer no\nexpect 26 sensitive\nset 1 C\nclick 26\nanswer no\nclick 27\nclick 8\n");
  EXPECT_EQ(folder.Read("other.xml"), before);
  Manage(edit + "click 30\nchoose \"" + other +
         "\"\nanswer no\nset 1 N\nclick 26\nexpect 26 insensitive\nclick 27\nclick 8\n");
  EXPECT_EQ(Names("other.xml"), (Strings{"A", "C", "N"}));
  // What was saved there once is the dialog's own from then on: no question, and a new name moves it.
  Manage(edit + "click 30\nchoose \"" + other +
         "\"\nanswer yes\nset 5 again.xsl\nclick 26\nexpect 26 insensitive\nset 1 D\nclick 26\nclick 27\nclick 8\n");
  EXPECT_EQ(Names("other.xml"), (Strings{"D", "C", "N"}));
  EXPECT_EQ(Names("own.xml"), (Strings{"A", "B"}));
  EXPECT_EQ(folder.Read("own.xml").find("changed"), std::string::npos);
}

TEST_F(EditDialog, GoesOnUnderTheNewName) {
  const std::string file = folder.Write("own.xml", Catalogue({"A", "B"}));
  // The same file by another name is the same file.
  std::filesystem::create_symlink(file, folder.Path("link.xml"));
  Manage("click 11\nset 12 \"" + file +
         "\"\nclick 5\ndialog 12\nset 1 \" A2 \"\nclick 26\nexpect 26 insensitive\nset 5 two.xsl\nclick 26\n"
         "expect 26 insensitive\nset 1 A3\nclick 26\nset 5 three.xsl\nclick 26\nexpect 26 insensitive\nclick "
         "30\nchoose \"" +
         folder.Path("link.xml") +
         "\"\nanswer no\nset 1 A4\nclick 26\nset 1 B\nclick 26\nanswer no\nclick 27\nclick 8\n");
  EXPECT_EQ(Names("own.xml"), (Strings{"A4", "B"}));
  EXPECT_NE(folder.Read("own.xml").find("three.xsl"), std::string::npos);
}

} // namespace
