// The bytes of a catalogue, and the edits with their questions.
#include "catalogue/reader.h"
#include "catalogue/writer.h"
#include "tests/unit/catalogue_fixture.h"

#include <filesystem>

namespace {

using catalogue::CheckMode;
using catalogue::EditResult;
using catalogue::FieldCheck;
using catalogue::LoadTransformationFile;
using catalogue::OpenOutputKind;
using catalogue::OutputLocationKind;
using catalogue::SaveTransformationFile;
using catalogue::Transformation;
using catalogue::TransformationList;
using Asked = std::vector<FakeHost::Asked>;
using Strings = std::vector<std::string>;

TransformationList OneOfEach() {
  const Transformation dir = {"A & <B> \"c\" 'd'\tä\xF0\x9F\x98\x80",
                              false,
                              "$STRUCTDIR\\x ]]> y.xsl",
                              "Saxon",
                              {"p", "'a\tb\nc\r\"<&>'", "q", "<no value>"},
                              {OutputLocationKind::DirPath, "out", "", OpenOutputKind::DefaultProgram}};
  Transformation same = {"lines\nof\r\ntext", true, "", "", {}, {}};
  same.output = {OutputLocationKind::SameLocationAsSource, "", " _new", OpenOutputKind::Vellis};
  same.output.suffix = "_new";
  Transformation prompt = MakeTransformation("p");
  prompt.output.outputLocation = OutputLocationKind::Prompt;
  return {dir, same, prompt, MakeTransformation("")};
}

TEST_F(CatalogueTest, AFileHasExactlyTheseBytes) {
  Transformation odd = OneOfEach()[0];
  odd.output.outputLocation = static_cast<OutputLocationKind>(7);
  odd.output.openOutput = static_cast<OpenOutputKind>(9);
  odd.name = "ä";
  odd.xslPath = "a & b.xsl";
  ASSERT_TRUE(SaveTransformationFile(Path("T.xml"), {odd}));
  EXPECT_EQ(folder.Read("T.xml"),
            "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\" ?>\r\n"
            "<Transformations>\r\n\r\n"
            "  <Transformation>\r\n"
            "    <Name>ä</Name>\r\n"
            "    <Input>\r\n"
            "      <XSLPath>a &amp; b.xsl</XSLPath>\r\n"
            "    </Input>\r\n"
            "    <Processor>Saxon</Processor>\r\n"
            "    <Parameters>\r\n"
            "      <Parameter expression=\"'a&#x9;b&#xA;c&#xD;&quot;&lt;&amp;>'\" name=\"p\"/>\r\n"
            "      <Parameter expression=\"\" name=\"q\"/>\r\n"
            "    </Parameters>\r\n"
            "    <Output>\r\n"
            "      <OutputLocation>\r\n"
            "        <Prompt></Prompt>\r\n"
            "      </OutputLocation>\r\n"
            "      <OpenOutput in=\"\"></OpenOutput>\r\n"
            "    </Output>\r\n"
            "  </Transformation>\r\n\r\n"
            "</Transformations>\r\n");
  ASSERT_TRUE(SaveTransformationFile(Path("T.xml"), {}));
  EXPECT_EQ(folder.Read("T.xml"),
            "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\" ?>\r\n<Transformations/>\r\n");
}

TEST_F(CatalogueTest, WhatIsWrittenIsReadAgain) {
  for (const TransformationList &list : {OneOfEach(), TransformationList()}) {
    ASSERT_TRUE(SaveTransformationFile(Path("one.xml"), list)) << TakeLog();
    const auto loaded = LoadTransformationFile(Path("one.xml"));
    ASSERT_TRUE(loaded.list) << TakeLog();
    EXPECT_EQ(*loaded.list, list);
    ASSERT_TRUE(SaveTransformationFile(Path("two.xml"), *loaded.list));
    EXPECT_EQ(folder.Read("one.xml"), folder.Read("two.xml"));
  }
}

TEST_F(CatalogueTest, TextThatXmlCannotHoldIsRefused) {
  const std::string path = Write("T.xml", Catalogue(Element("old")));
  const std::string before = test::ReadAll(path);
  Transformation control = MakeTransformation("c");
  control.parameters = {"p", "a\x01"};
  Transformation broken = MakeTransformation("b");
  broken.output.suffix = "\xFF";
  Transformation noncharacter = MakeTransformation("n\xEF\xBF\xBF");
  for (const auto &[record, logged] : {std::pair{control, "\"c\" cannot be saved: its parameter list"},
                                       std::pair{broken, "(not UTF-8)"}, std::pair{noncharacter, "(U+FFFF)"}}) {
    EXPECT_FALSE(SaveTransformationFile(path, {MakeTransformation("fine"), record}));
    EXPECT_NE(TakeLog().find(logged), std::string::npos);
    EXPECT_EQ(test::ReadAll(path), before);
  }
}

TEST_F(CatalogueTest, AddingReplacesOnlyAfterAQuestion) {
  const std::string path = Write("T.xml", Catalogue(Element("A") + Element("B") + Element("C")));
  const std::string question = "Transformation with name \"B\" already exists. Do you want to replace it?";
  EXPECT_EQ(AddTransformation(path, MakeTransformation("D"), IsInstalled), EditResult::Saved);
  EXPECT_EQ(TakeAsked(), Asked());
  host.answers = {V_ANSWER_DECLINE};
  EXPECT_EQ(AddTransformation(path, MakeTransformation("B"), IsInstalled), EditResult::Stopped);
  EXPECT_EQ(TakeAsked(), (Asked{{V_ALERT_YES_NO, question}}));
  EXPECT_EQ(LoadTransformationFile(path).list->at(1).xslPath, "B.xsl");
  EXPECT_EQ(AddTransformation(path, MakeTransformation("B"), IsInstalled), EditResult::Saved);
  EXPECT_EQ(LoadTransformationFile(path).list->at(1).xslPath, "new.xsl");
  EXPECT_EQ(NamesOf(LoadTransformationFile(path).list), (Strings{"A", "B", "C", "D"}));
  EXPECT_EQ(AddTransformation("", MakeTransformation("B"), IsInstalled), EditResult::Failed);
}

// Readers drop the blanks around a text, so they must not tell two names apart when something is saved.
TEST_F(CatalogueTest, BlanksAroundANameMakeNoOtherName) {
  const std::string path = Write("T.xml", Catalogue(Element("A") + Element("B")));
  host.answers = {V_ANSWER_DECLINE};
  EXPECT_EQ(AddTransformation(path, MakeTransformation("\t A \n"), IsInstalled), EditResult::Stopped);
  EXPECT_EQ(TakeAsked(),
            (Asked{{V_ALERT_YES_NO, "Transformation with name \"A\" already exists. Do you want to replace it?"}}));
  EXPECT_EQ(AddTransformation(path, MakeTransformation(" A "), IsInstalled), EditResult::Saved);
  EXPECT_EQ(LoadTransformationFile(path).list->at(0).xslPath, "new.xsl");
  EXPECT_EQ(TakeAsked().size(), 1U);
  EXPECT_EQ(EditTransformation(path, MakeTransformation(" B"), "B", IsInstalled), EditResult::Saved);
  EXPECT_EQ(TakeAsked(), Asked());
  EXPECT_EQ(NamesOf(LoadTransformationFile(path).list), (Strings{"A", "B"}));

  Transformation blank = MakeTransformation("C");
  blank.xslPath = "  ";
  EXPECT_EQ(AddTransformation(path, blank, IsInstalled), EditResult::Failed);
  EXPECT_EQ(TakeAsked(), (Asked{{V_ALERT_PLAIN, "XSL file not specified in Transformation C."}}));
}

TEST_F(CatalogueTest, EditingKeepsThePlaceAndReplacesAnExistingName) {
  const std::string path = Write("T.xml", Catalogue(Element("A") + Element("B") + Element("C")));
  EXPECT_EQ(EditTransformation(path, MakeTransformation("B"), "B", IsInstalled), EditResult::Saved);
  EXPECT_EQ(EditTransformation(path, MakeTransformation("X"), "A", IsInstalled), EditResult::Saved);
  EXPECT_EQ(TakeAsked(), Asked());
  EXPECT_EQ(NamesOf(LoadTransformationFile(path).list), (Strings{"X", "B", "C"}));

  Transformation taken = MakeTransformation("C");
  taken.usePI = true;
  host.answers = {V_ANSWER_DECLINE};
  EXPECT_EQ(EditTransformation(path, taken, "X", IsInstalled), EditResult::Stopped);
  EXPECT_EQ(EditTransformation(path, taken, "X", IsInstalled), EditResult::Saved);
  EXPECT_EQ(TakeAsked().size(), 2U);
  EXPECT_EQ(NamesOf(LoadTransformationFile(path).list), (Strings{"X", "B", "C"}));
  EXPECT_TRUE(LoadTransformationFile(path).list->at(2).usePI);

  const std::string before = test::ReadAll(path);
  EXPECT_EQ(EditTransformation(path, MakeTransformation("new"), "gone", IsInstalled), EditResult::Failed);
  EXPECT_EQ(TakeLog(), "Transformation gone not found.\n");
  EXPECT_EQ(EditTransformation(path, MakeTransformation("new"), "", IsInstalled), EditResult::Failed);
  EXPECT_EQ(test::ReadAll(path), before);
}

TEST_F(CatalogueTest, DeletingKeepsTheOthers) {
  const std::string path = Write("T.xml", Catalogue(Element("A") + Element("B") + Element("b")));
  EXPECT_EQ(catalogue::DeleteTransformation(path, "B"), EditResult::Saved);
  EXPECT_EQ(catalogue::DeleteTransformation(path, "none"), EditResult::Saved);
  EXPECT_EQ(NamesOf(LoadTransformationFile(path).list), (Strings{"A", "b"}));
  EXPECT_EQ(catalogue::DeleteTransformation(path, ""), EditResult::Failed);
  EXPECT_EQ(catalogue::DeleteTransformation(Path("missing.xml"), "A"), EditResult::Failed);
  const std::string broken = Write("broken.xml", "<Transformations><Nonsense/></Transformations>");
  EXPECT_EQ(catalogue::DeleteTransformation(broken, "A"), EditResult::Failed);
  EXPECT_NE(test::ReadAll(broken).find("Nonsense"), std::string::npos);
}

TEST_F(CatalogueTest, TheTargetIsLookedAtFirst) {
  std::filesystem::create_directories(Path("folder"));
  const std::string other = Write("other.xml", "<Other/>");
  const std::string locked = Write("locked.xml", Catalogue(""));
  std::filesystem::permissions(locked, std::filesystem::perms::owner_read);
  struct Row {
    std::string path;
    Asked asked;
    bool canWrite;
  };
  const std::vector<Row> rows = {
      {"", {}, false},
      {Path("no/T.xml"),
       {{V_ALERT_PLAIN, "Cannot save the file at following location: " + Path("no") + ". Make sure folder exist."}},
       false},
      {Path("new.xml"),
       {{V_ALERT_YES_NO, "File doesn't exist " + Path("new.xml") + ". Do you want to create it?"}},
       true},
      {Path("folder"), {{V_ALERT_PLAIN, "File doesn't exist " + Path("folder") + "."}}, false},
      {other, {{V_ALERT_OK_CANCEL, "OK to overwrite existing file " + other + "?"}}, true},
      {locked,
       {{V_ALERT_PLAIN, "Cannot save the transformation file: " + locked + ". Make sure you have write permissions."}},
       false},
      {Write("empty.xml", ""), {}, true},
      {Write("good.xml", Catalogue("")), {}, true},
  };
  for (const Row &row : rows) {
    EXPECT_EQ(catalogue::CanWriteTransformationFile(row.path), row.canWrite) << row.path;
    EXPECT_EQ(TakeAsked(), row.asked) << row.path;
    const bool question = !row.asked.empty() && row.asked[0].kind != V_ALERT_PLAIN;
    if (!question)
      continue;
    host.answers = {V_ANSWER_DECLINE};
    EXPECT_EQ(AddTransformation(row.path, MakeTransformation("A"), IsInstalled), EditResult::Stopped);
    EXPECT_EQ(TakeAsked().size(), 1U);
    EXPECT_EQ(AddTransformation(row.path, MakeTransformation("A"), IsInstalled), EditResult::Saved);
    EXPECT_EQ(TakeAsked().size(), 1U);
    EXPECT_EQ(NamesOf(LoadTransformationFile(row.path).list), Strings{"A"});
  }
  EXPECT_EQ(test::ReadAll(locked), Catalogue(""));
}

TEST_F(CatalogueTest, AnUnreadableCatalogueIsNotReplacedUnasked) {
  const std::string text = "<Transformations>\n<Nonsense/></Transformations>";
  const std::string path = Write("T.xml", text);
  host.answers = {V_ANSWER_DECLINE};
  EXPECT_EQ(AddTransformation(path, MakeTransformation("A"), IsInstalled), EditResult::Stopped);
  EXPECT_EQ(TakeAsked(), (Asked{{V_ALERT_OK_CANCEL, "OK to overwrite existing file " + path + "?"}}));
  EXPECT_EQ(test::ReadAll(path), text);
  EXPECT_NE(TakeLog().find("line 2, char 12"), std::string::npos);
  EXPECT_EQ(EditTransformation(path, MakeTransformation("A"), "A", IsInstalled), EditResult::Failed);
  EXPECT_EQ(test::ReadAll(path), text);
  EXPECT_EQ(AddTransformation(path, MakeTransformation("A"), IsInstalled), EditResult::Saved);
  EXPECT_EQ(NamesOf(LoadTransformationFile(path).list), Strings{"A"});
}

TEST_F(CatalogueTest, RequiredFieldsAreChecked) {
  Transformation noXsl = MakeTransformation("t");
  noXsl.xslPath.clear();
  Transformation withPI = noXsl;
  withPI.usePI = true;
  Transformation noFolder = MakeTransformation("t");
  noFolder.output.outputLocation = OutputLocationKind::DirPath;
  Transformation noSuffix = MakeTransformation("t");
  noSuffix.output.outputLocation = OutputLocationKind::SameLocationAsSource;
  Transformation unknown = MakeTransformation("t");
  unknown.processor = "saxon";
  struct Row {
    Transformation record;
    FieldCheck check;
    std::string text;
  };
  for (const Row &row : {Row{noXsl, FieldCheck::Stop, "XSL file not specified in Transformation t."},
                         Row{noFolder, FieldCheck::Stop, "Output folder not specified in Transformation t."},
                         Row{withPI, FieldCheck::GoOn, ""}, Row{noSuffix, FieldCheck::GoOn, ""}}) {
    EXPECT_EQ(CheckTransformationFields(row.record, CheckMode::Interactive, IsInstalled), row.check);
    EXPECT_EQ(TakeAsked(), row.text.empty() ? Asked() : (Asked{{V_ALERT_PLAIN, row.text}}));
    EXPECT_EQ(CheckTransformationFields(row.record, CheckMode::Quiet, IsInstalled), row.check);
    EXPECT_EQ(TakeLog(), row.text.empty() ? "" : row.text + "\n");
  }
  EXPECT_EQ(CheckTransformationFields(unknown, CheckMode::Quiet, IsInstalled), FieldCheck::Stop);
  EXPECT_EQ(TakeLog(), "XSLT processor saxon not found. Please check your XSLT processor preferences.\n");
  EXPECT_EQ(TakeAsked(), Asked());
  host.answers = {V_ANSWER_DECLINE};
  const std::string path = Write("T.xml", Catalogue(Element("old")));
  EXPECT_EQ(AddTransformation(path, unknown, IsInstalled), EditResult::Stopped);
  EXPECT_EQ(TakeAsked(), (Asked{{V_ALERT_YES_NO,
                                 "XSLT processor saxon not found. Do you still want to create the Transformation?"}}));
  EXPECT_EQ(AddTransformation(path, noXsl, IsInstalled), EditResult::Failed);
  EXPECT_EQ(NamesOf(LoadTransformationFile(path).list), Strings{"old"});
  EXPECT_EQ(AddTransformation(path, unknown, IsInstalled), EditResult::Saved);
  EXPECT_EQ(NamesOf(LoadTransformationFile(path).list), (Strings{"old", "t"}));
}

} // namespace
