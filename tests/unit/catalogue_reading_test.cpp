// What becomes of a catalogue file, good or bad.
#include "catalogue/reader.h"
#include "tests/unit/catalogue_fixture.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <unistd.h>

namespace {

using catalogue::LoadStatus;
using catalogue::LoadTransformationFile;
using catalogue::OpenOutputKind;
using catalogue::OutputLocationKind;
using catalogue::Transformation;
using Strings = std::vector<std::string>;

constexpr const char *wide = "<Name>A\xF0\x9F\x98\x80</Name>";

TEST_F(CatalogueTest, EveryPartOfATransformationIsRead) {
  const std::string path = Write("T.xml", Catalogue(R"(<!-- first --><?note between?>
    <Transformation><Output><OpenOutput in="DefaultProgram"/><OutputLocation><DirPath> out dir </DirPath>
      </OutputLocation></Output>
      <Parameters><Parameter name="dropped"/></Parameters>
      <Parameters><!-- kept --><Parameter name=" n " expression=" a &#9;b "/><Parameter name="m"/>
        <Parameter name="l" expression=" "></Parameter></Parameters>
      <Processor>Sax<!-- -->on</Processor>
      <Input><XSLPath>$STRUCTDIR\a &amp; b.xsl</XSLPath><UsePI> </UsePI></Input>
      <Name>
	 <![CDATA[<one>]]> &quot;x&quot;
      </Name></Transformation>
    <Transformation><Name>two</Name><Input><UsePI/><XSLPath>x.xsl</XSLPath></Input><Processor/><Parameters/>
      <Output><OutputLocation><SameLocationAsSource suffix="_new"/></OutputLocation>
        <OpenOutput in="vellis"/></Output></Transformation>
    <Transformation><Name>two</Name><Input><UsePI/></Input></Transformation>
    <Transformation><Name/></Transformation><Transformation><Name> </Name></Transformation>
    <Transformation><Name>Two</Name><Output><OutputLocation><Prompt/></OutputLocation><OpenOutput in="Vellis"/>
      </Output></Transformation>)"));
  const auto loaded = LoadTransformationFile(path);
  ASSERT_EQ(loaded.status, LoadStatus::Loaded) << TakeLog();
  const Transformation first = {"<one> \"x\"",
                                true,
                                "$STRUCTDIR\\a & b.xsl",
                                "Saxon",
                                {"n", "a \tb", "m", "<no value>", "l", "<no value>"},
                                {OutputLocationKind::DirPath, "out dir", "", OpenOutputKind::DefaultProgram}};
  const Transformation second = {
      "two", false, "x.xsl", "", {}, {OutputLocationKind::SameLocationAsSource, "", "_new", OpenOutputKind::None}};
  const Transformation last = {"Two", false, "", "", {}, {OutputLocationKind::Prompt, "", "", OpenOutputKind::Vellis}};
  // The nameless cannot be told apart, so none of them is dropped.
  EXPECT_EQ(*loaded.list, (catalogue::TransformationList{first, second, {}, {}, last}));
  EXPECT_EQ(FindTransformation(*loaded.list, "Two"), 4);
  EXPECT_EQ(FindTransformation(*loaded.list, ""), -1);
  EXPECT_EQ(TakeLog(), "");
}

TEST_F(CatalogueTest, EncodingsAreUnderstood) {
  const std::string text = Catalogue("<Transformation>" + std::string(wide) + "</Transformation>");
  std::string utf16 = "\xFF\xFE";
  for (const char letter : std::string("<?xml version='1.0' encoding='UTF-16'?>" + Catalogue(Element("A"))))
    utf16 += {letter, '\0'};
  struct Row {
    std::string bytes, name;
  };
  const std::vector<Row> rows = {
      {text, "A\xF0\x9F\x98\x80"},
      {"\xEF\xBB\xBF" + text, "A\xF0\x9F\x98\x80"},
      {utf16, "A"},
      {"<?xml version='1.0' encoding='ISO-8859-1'?>" + Catalogue(Element("\xE4")), "ä"},
      {"<?xml version='1.0' encoding='windows-1252'?>" + Catalogue(Element("\x80")), "€"},
  };
  for (const Row &row : rows) {
    const auto loaded = LoadTransformationFile(Write("ünï 100% #1.xml", row.bytes));
    EXPECT_EQ(NamesOf(loaded.list), Strings{row.name}) << TakeLog();
  }
}

TEST_F(CatalogueTest, TheSchemaRejectsWhatIsNoCatalogue) {
  const std::string xsi = "xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' ";
  const auto with = [](const std::string &child) {
    return Catalogue("<Transformation><Name>A</Name>\n" + child + "</Transformation>");
  };
  const Strings rejected = {
      with("<Procesor/>"),
      with("<Name>B</Name>"),
      with("text"),
      with("<Processor>a</Processor><Processor>b</Processor>"),
      with("<Processor x='1'/>"),
      with("<Input/>"),
      with("<Input><XslPath/></Input>"),
      with("<Input><UsePI>yes</UsePI></Input>"),
      with("<Parameters><Parameter expression='1'/></Parameters>"),
      with("<Parameters><Parameter name='a' select='1'/></Parameters>"),
      with("<Parameters><Parameter name='a'>1</Parameter></Parameters>"),
      with("<Output><OutputLocation/></Output>"),
      with("<Output><OutputLocation><Prompt/><DoNotSave/></OutputLocation></Output>"),
      with("<Output><OutputLocation><DoNotSave suffix='x'/></OutputLocation></Output>"),
      with("<Output><OpenOutput/><OpenOutput/></Output>"),
      with("<Output><Prompt/></Output>"),
      "<Transformations>\n<Transformation/></Transformations>",
      "<Transformations>\n<Transformation xml:lang='en'><Name>A</Name></Transformation></Transformations>",
      "<Transformations\nversion='1'/>",
      "<Transformations xmlns='urn:other'>\n</Transformations>",
      "<Transformations " + xsi + "\nxsi:schemaLocation='urn:x missing.xsd'/>",
      "<!DOCTYPE Transformations [<!ENTITY a 'b'>]>" + with("<Procesor>&a;</Procesor>"),
  };
  for (const std::string &text : rejected) {
    const std::string path = Write("T.xml", text);
    const auto loaded = LoadTransformationFile(path);
    EXPECT_EQ(loaded.status, LoadStatus::NotLoaded) << text;
    EXPECT_FALSE(loaded.list);
    const std::string log = TakeLog();
    const bool warning = text.find("missing.xsd") != std::string::npos;
    EXPECT_EQ(log.rfind((warning ? "Warning at file " : "Error at file ") + path + ", line ", 0), 0U) << text << log;
  }
  // A hint at a schema of the catalogue's own, for an editor's sake, is nothing to complain about.
  EXPECT_EQ(LoadTransformationFile(
                Write("T.xml", "<Transformations " + xsi + "xsi:noNamespaceSchemaLocation='missing.xsd'/>"))
                .status,
            LoadStatus::Loaded)
      << TakeLog();
}

TEST_F(CatalogueTest, StatusesSayWhyThereIsNoList) {
  std::filesystem::create_directories(Path("folder"));
  std::filesystem::create_symlink(Path("nowhere"), Path("dangling.xml"));
  struct Row {
    std::string path;
    LoadStatus status;
    std::string logged;
  };
  const std::vector<Row> rows = {
      {"", LoadStatus::NotLoaded, ""},
      {Path("missing.xml"), LoadStatus::FileMissing, ""},
      {Path("folder"), LoadStatus::FileMissing, ""},
      {Path("dangling.xml"), LoadStatus::FileMissing, ""},
      {Write("empty.xml", ""), LoadStatus::NotATransformationFile, ""},
      {Write("other.xml", "<Other/>"), LoadStatus::NotATransformationFile, ""},
      {Write("prefix.xml", "<p:Transformations xmlns:p='u'/>"), LoadStatus::NotATransformationFile, ""},
      {Write("text.xml", "hello"), LoadStatus::NotATransformationFile, "Fatal Error at file " + Path("text.xml")},
      {Write("cut.xml", "<Transformations>\n<Transformation>"), LoadStatus::NotLoaded, "cut.xml, line 2, char 17"},
  };
  for (const Row &row : rows) {
    const auto loaded = LoadTransformationFile(row.path);
    EXPECT_EQ(loaded.status, row.status) << row.path;
    EXPECT_FALSE(loaded.list);
    const std::string log = TakeLog();
    EXPECT_TRUE(row.logged.empty() ? log.empty() : log.find(row.logged) != std::string::npos) << log;
    EXPECT_LE(std::count(log.begin(), log.end(), '\n'), 1) << "said once: " << log;
    EXPECT_EQ(catalogue::IsTransformationFile(row.path), row.path == Path("cut.xml"));
  }

  const std::string locked = Write("locked.xml", Catalogue(""));
  std::filesystem::permissions(locked, std::filesystem::perms::none);
  std::filesystem::permissions(root, static_cast<std::filesystem::perms>(0755));
  const bool isRoot = geteuid() == 0; // who reads everything
  ASSERT_TRUE(!isRoot || seteuid(65534) == 0);
  EXPECT_EQ(LoadTransformationFile(locked).status, LoadStatus::NotATransformationFile);
  ASSERT_TRUE(!isRoot || seteuid(0) == 0);
  EXPECT_EQ(TakeLog(), locked + ": Permission denied\n");

  const std::string good = Write("good.xml", Catalogue(""));
  EXPECT_EQ(NamesOf(LoadTransformationFile(good).list), Strings());
  Write("schema", "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:elem/></xs:schema>");
  std::filesystem::rename(Path("schema"), install + "vlinit/XSLT/Transformations.xsd");
  EXPECT_EQ(LoadTransformationFile(good).status, LoadStatus::NotLoaded);
  EXPECT_NE(TakeLog().find("Transformations.xsd, line 1"), std::string::npos);
  std::filesystem::remove(install + "vlinit/XSLT/Transformations.xsd");
  EXPECT_EQ(LoadTransformationFile(good).status, LoadStatus::NotLoaded);
  EXPECT_EQ(TakeLog(), "The schema of transformation files is missing: " + install +
                           "vlinit/XSLT/Transformations.xsd. Please repair the installation.\n");
}

TEST_F(CatalogueTest, EntitiesAreReadWithinBounds) {
  Write("secret.txt", "secret");
  const auto named = [](const std::string &subset, const std::string &name) {
    return "<!DOCTYPE Transformations [" + subset + "]>" +
           Catalogue("<Transformation>\n<Name>" + name + "</Name></Transformation>");
  };
  struct Row {
    std::string text;
    Strings names;
    std::string logged;
  };
  std::string laughs = "<!ENTITY a0 'ha'>";
  for (int level = 1; level <= 12; ++level) {
    std::string tenTimes;
    for (int time = 0; time < 10; ++time)
      tenTimes += "&a" + std::to_string(level - 1) + ";";
    laughs += "<!ENTITY a" + std::to_string(level) + " '" + tenTimes + "'>";
  }
  std::string many;
  for (int time = 0; time < 40000; ++time)
    many += "&big;";
  const std::vector<Row> rows = {
      {named("<!ENTITY base 'here'>", "x&base;"), {"xhere"}, ""},
      // The schema decides, whatever a document type says of the elements.
      {named("<!ELEMENT Transformations EMPTY>", "x"), {"x"}, ""},
      {named("<!ENTITY f SYSTEM 'secret.txt'>", "x&f;"), {"x"}, ""},
      {named("<!ENTITY f SYSTEM 'file://" + Path("secret.txt") + "'>", "x&f;"), {"x"}, ""},
      {named("<!ENTITY % p SYSTEM 'http://127.0.0.1:1/e.ent'> %p;", "x"), {"x"}, ""},
      {"<!DOCTYPE Transformations SYSTEM 'http://127.0.0.1:1/t.dtd'>" + Catalogue(Element("x")), {"x"}, ""},
      {named(laughs, "&a12;"), {}, ", line 2, char "},
      {named("<!ENTITY big '" + std::string(200000, 'x') + "'>", many), {}, "its entities make it too large"},
  };
  for (const Row &row : rows) {
    const auto start = std::chrono::steady_clock::now();
    const auto loaded = LoadTransformationFile(Write("T.xml", row.text));
    EXPECT_EQ(NamesOf(loaded.list), row.names) << row.text.substr(0, 200);
    EXPECT_EQ(loaded.list.has_value(), row.logged.empty());
    const std::string log = TakeLog();
    EXPECT_TRUE(row.logged.empty() ? log.empty() : log.find(row.logged) != std::string::npos) << log.substr(0, 500);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
  }
}

} // namespace
