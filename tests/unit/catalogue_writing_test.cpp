// The bytes of a catalogue, and the edits with their questions.
#include "catalogue/reader.h"
#include "catalogue/writer.h"
#include "tests/unit/catalogue_fixture.h"

#include <filesystem>
#include <optional>
#include <utility>

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

TEST_F(CatalogueTest, AFileHasExactlyTheseBytes) {
  Transformation odd = MakeTransformation("ä");
  odd.xslPath = "a & b.xsl";
  odd.parameters = {"p", "'a\tb\nc\r\"<&>'", "q", "<no value>"};
  odd.output = {static_cast<OutputLocationKind>(7), "out", "", static_cast<OpenOutputKind>(9)};
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

// Readers drop the blanks around a text, so they must not tell two names apart when something is saved.
TEST_F(CatalogueTest, BlanksAroundANameMakeNoOtherName) {
  const std::string path = Write("T.xml", Catalogue(Element("A") + Element("B")));
  EXPECT_EQ(AddTransformation(path, MakeTransformation("\t A \n"), IsInstalled), EditResult::Saved);
  EXPECT_EQ(TakeAsked(),
            (Asked{{V_ALERT_YES_NO, "Transformation with name \"A\" already exists. Do you want to replace it?"}}));
  EXPECT_EQ(LoadTransformationFile(path).list->at(0).xslPath, "new.xsl");
  EXPECT_EQ(EditTransformation(path, MakeTransformation(" B"), "B", IsInstalled), EditResult::Saved);
  EXPECT_EQ(TakeAsked(), Asked());
  EXPECT_EQ(NamesOf(LoadTransformationFile(path).list), (Strings{"A", "B"}));

  Transformation blank = MakeTransformation("C");
  blank.xslPath = "  ";
  EXPECT_EQ(AddTransformation(path, blank, IsInstalled), EditResult::Failed);
  EXPECT_EQ(TakeAsked(), (Asked{{V_ALERT_PLAIN, "XSL file not specified in Transformation C."}}));
}

TEST_F(CatalogueTest, WhatCannotBeEditedStays) {
  const std::string text = Catalogue(Element("A"));
  const std::string path = Write("T.xml", text);
  EXPECT_EQ(EditTransformation(path, MakeTransformation("new"), "gone", IsInstalled), EditResult::Failed);
  EXPECT_EQ(TakeLog(), "Transformation gone not found.\n");
  EXPECT_EQ(EditTransformation(path, MakeTransformation("new"), "", IsInstalled), EditResult::Failed);
  EXPECT_EQ(AddTransformation("", MakeTransformation("new"), IsInstalled), EditResult::Failed);
  EXPECT_EQ(catalogue::DeleteTransformation(path, ""), EditResult::Failed);
  EXPECT_EQ(catalogue::DeleteTransformation(Path("missing.xml"), "A"), EditResult::Failed);
  EXPECT_EQ(folder.Read("T.xml"), text);
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

// What is not valid counts as empty, so an addition would drop all of it: only when the person says so, who is told how
// much it is.
TEST_F(CatalogueTest, AnInvalidCatalogueIsNotReplacedUnasked) {
  using catalogue::InvalidFile;
  struct Row {
    std::string text, question, logged;
  };
  const std::string lost = "? It is not valid; what it holds would be lost (transformations: ";
  for (const Row &row :
       std::vector<Row>{{"<Transformations>\n<Nonsense/></Transformations>", lost + "0).", "line 2, char 12"},
                        {"<Transformations>\n<Nonsense/>" + Element("B") + Element("C") + "</Transformations>",
                         lost + "2).", "line 2, char 12"},
                        {Catalogue(Element("B") + Element("C") + "<Tr"), lost + "2).", "Fatal Error at file"},
                        {"<Transformatoins>" + Element("B") + "</Transformatoins>", "?", "(transformations: 1)"}}) {
    const std::string path = Write("T.xml", row.text);
    EXPECT_EQ(AddTransformation(path, MakeTransformation("A"), IsInstalled, InvalidFile::Keep), EditResult::Failed);
    EXPECT_EQ(TakeAsked(), Asked());
    EXPECT_NE(TakeLog().find(row.logged), std::string::npos) << row.text;
    host.answers = {V_ANSWER_DECLINE};
    EXPECT_EQ(AddTransformation(path, MakeTransformation("A"), IsInstalled), EditResult::Stopped);
    EXPECT_EQ(TakeAsked(), (Asked{{V_ALERT_OK_CANCEL, "OK to overwrite existing file " + path + row.question}}));
    EXPECT_EQ(EditTransformation(path, MakeTransformation("A"), "A", IsInstalled), EditResult::Failed);
    (void)TakeAsked();
    EXPECT_EQ(test::ReadAll(path), row.text);
    EXPECT_EQ(AddTransformation(path, MakeTransformation("A"), IsInstalled), EditResult::Saved);
    EXPECT_EQ(TakeAsked().size(), 1U);
    EXPECT_EQ(NamesOf(LoadTransformationFile(path).list), Strings{"A"});
    (void)TakeLog();
  }
}

// Nothing is known then of what the file holds, so there is nothing to ask.
TEST_F(CatalogueTest, WhatCannotBeReadIsNotChanged) {
  const std::string path = Write("T.xml", Catalogue(Element("B")));
  const Asked told = {
      {V_ALERT_PLAIN, "The transformation file " + path + " was not changed, because it cannot be read."}};
  std::filesystem::remove(install + "vlinit/XSLT/Transformations.xsd");
  EXPECT_EQ(AddTransformation(path, MakeTransformation("A"), IsInstalled), EditResult::Stopped);
  EXPECT_EQ(TakeAsked(), told);
  EXPECT_NE(TakeLog().find("schema of transformation files is missing"), std::string::npos);
  EXPECT_EQ(EditTransformation(path, MakeTransformation("A"), "B", IsInstalled), EditResult::Stopped);
  EXPECT_EQ(TakeAsked(), told);
  EXPECT_EQ(catalogue::DeleteTransformation(path, "B"), EditResult::Failed);
  EXPECT_EQ(test::ReadAll(path), Catalogue(Element("B")));
}

TEST_F(CatalogueTest, ATransformationNeedsAName) {
  const std::string text = Catalogue(Element("B"));
  const std::string path = Write("T.xml", text);
  const auto nameless = [](Transformation current) {
    current.name = " \t";
    return std::optional(current);
  };
  for (const char *name : {"", " \n "}) {
    EXPECT_EQ(AddTransformation(path, MakeTransformation(name), IsInstalled), EditResult::Failed);
    EXPECT_EQ(EditTransformation(path, MakeTransformation(name), "B", IsInstalled), EditResult::Failed);
    EXPECT_EQ(catalogue::ChangeTransformation(path, "B", nameless, IsInstalled), EditResult::Failed);
    EXPECT_EQ(TakeLog(), "A transformation needs a name.\nA transformation needs a name.\nA transformation needs a "
                         "name.\n");
  }
  EXPECT_EQ(test::ReadAll(path), text);
}

// While a person thinks about a question, others may edit: what they did is kept, and what they changed is asked again.
TEST_F(CatalogueTest, NothingIsLockedWhileAPersonIsAsked) {
  const std::string path = Write("T.xml", Catalogue(Element("A")));
  bool isInner = false;
  host.whenAsked = [&] {
    if (std::exchange(isInner, true))
      return;
    EXPECT_EQ(AddTransformation(path, MakeTransformation("B"), IsInstalled), EditResult::Saved);
  };
  EXPECT_EQ(AddTransformation(path, MakeTransformation("A"), IsInstalled), EditResult::Saved);
  EXPECT_EQ(TakeAsked().size(), 1U);
  EXPECT_EQ(NamesOf(LoadTransformationFile(path).list), (Strings{"A", "B"}));
  EXPECT_EQ(folder.Names(), Strings{"T.xml"});
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
  const std::string path = Write("T.xml", Catalogue(""));
  for (const auto &[record, text] : {std::pair{noXsl, "XSL file not specified in Transformation t."},
                                     std::pair{noFolder, "Output folder not specified in Transformation t."},
                                     std::pair{withPI, ""}, std::pair{noSuffix, ""}}) {
    const bool isWhole = std::string_view(text).empty();
    EXPECT_EQ(CheckTransformationFields(record, CheckMode::Quiet, IsInstalled),
              isWhole ? FieldCheck::GoOn : FieldCheck::Stop);
    EXPECT_EQ(TakeLog(), isWhole ? "" : std::string(text) + "\n");
    EXPECT_EQ(TakeAsked(), Asked());
    EXPECT_EQ(AddTransformation(path, record, IsInstalled), isWhole ? EditResult::Saved : EditResult::Failed);
    EXPECT_TRUE(TakeAsked() == (Asked{{V_ALERT_PLAIN, text}}) || isWhole);
    EXPECT_EQ(NamesOf(LoadTransformationFile(path).list).size(), isWhole ? 1U : 0U);
  }
}

} // namespace
