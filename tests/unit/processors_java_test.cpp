// The processors with a real Java behind them: what a transformation reports, writes and leaves alone.
#include "kit/paths.h"
#include "kit/utf16.h"
#include "processors/processor_list.h"
#include "tests/unit/java_fixture.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

using namespace test;

TEST_F(JavaProcessors, ReportsEachProblemOnceWithItsPlaceAndGoesOn) {
  const std::string good = Write("good.xml", "<doc/>");
  const std::string plain = Write("plain.xsl", Stylesheet("<xsl:template match='/'><o/></xsl:template>"));
  struct Case {
    std::string xml, xsl, expected;
  };
  const std::vector<Case> cases = {
      {Write("malformed.xml", "<doc>\n<a></doc>"), plain, "malformed.xml, line 2, char 6"},
      {Write("entity.xml", "<!DOCTYPE d [<!ENTITY e SYSTEM 'gone.ent'>]>\n<d>&e;</d>"), plain, "entity.xml, line 2"},
      {good, Write("broken.xsl", Stylesheet("<xsl:template>")), "broken.xsl, line 2"},
      {good, Write("include.xsl", Stylesheet("<xsl:include href='gone.xsl'/>")), "include.xsl, line 2"},
  };
  for (const char *className : {saxon, xalan}) {
    ASSERT_TRUE(processor.SetTransformer(className));
    for (const Case &each : cases) {
      Write("out", "as it was");
      const std::string log = Run(each.xml, each.xsl);
      EXPECT_FALSE(succeeded) << each.xml << each.xsl;
      EXPECT_EQ(CountOf(log, "Error at file"), 1U) << className << ": " << log;
      EXPECT_NE(log.find(each.expected), std::string::npos) << className << ": " << log;
      EXPECT_EQ(Read("out"), "as it was");
      EXPECT_EQ(Kinds().back(), "terminate");
      EXPECT_EQ(CountKind("terminate"), 1);
      EXPECT_EQ(CountKind("start"), CountKind("end"));
    }
    EXPECT_EQ(Run(good, plain), "");
    EXPECT_TRUE(succeeded);
  }
}

// Grammars are kept from input to input; each must still get every default, entity and internal subset of its own.
TEST_F(JavaProcessors, ReadsTheSameFromAKeptGrammar) {
  const std::string module = Write("real module.mod", "<!ENTITY word 'from the module'><!ATTLIST d a CDATA 'default'>");
  entities["-//T//Module"] = module;
  Write("d.dtd", "<!ELEMENT d ANY><!ENTITY % m PUBLIC '-//T//Module' 'nowhere.mod'>%m;"
                 "<!NOTATION n SYSTEM 'n'><!ENTITY pic SYSTEM 'p.gif' NDATA n><!ENTITY out SYSTEM 'part.ent'>");
  Write("part.ent", "<d>part</d>");
  const std::string plain = Write("1.xml", "<!DOCTYPE d SYSTEM 'd.dtd'><d>&word;&out;</d>");
  const std::string other =
      Write("2.xml", "<!DOCTYPE d SYSTEM 'd.dtd' [<!ENTITY word 'mine'><!ATTLIST d a CDATA 'own'>]><d>&word;</d>");
  const std::string xsl =
      Write("copy.xsl",
            Stylesheet("<xsl:template match='/'><xsl:copy-of select='.'/><u>"
                       "<xsl:value-of select=\"substring-after(unparsed-entity-uri('pic'), '100%25%20%C3%BC-')\"/>"
                       "</u></xsl:template>"));
  ASSERT_TRUE(processor.SetTransformer(saxon));
  (void)Run(plain, xsl);
  const std::string first = Read("out");
  EXPECT_NE(first.find("<d a=\"default\">from the module<d a=\"default\">part</d></d>"), std::string::npos) << first;
  EXPECT_NE(first.find("/p.gif</u>"), std::string::npos) << first;
  (void)Run(other, xsl);
  EXPECT_EQ(Read("out").rfind("<d a=\"own\">mine</d>", 0), 0U) << Read("out");
  EXPECT_EQ(Run(plain, xsl), "");
  EXPECT_EQ(Read("out"), first);
  // Nothing is asked for again in a run; once the module changes, it is read again.
  EXPECT_EQ(CountKind("resolveentity"), 0);
  Write("real module.mod", "<!ENTITY word 'from the newer module'><!ATTLIST d a CDATA 'newer'>");
  (void)Run(plain, xsl);
  EXPECT_EQ(Read("out").rfind("<d a=\"newer\">from the newer module", 0), 0U) << Read("out");
}

TEST_F(JavaProcessors, WritesAllOutputsOrNone) {
  const std::string xml = Write("in.xml", "<?xml-stylesheet type='text/xsl' href='two%20results.xsl'?><doc/>");
  Write("two results.xsl",
        Stylesheet("<xsl:param name='fail' select='false()'/><xsl:template match='/'><main>"
                   "<xsl:result-document href='sub/a'><a/></xsl:result-document><xsl:if test='$fail'>"
                   "<xsl:message terminate='yes'>enough</xsl:message></xsl:if></main></xsl:template>",
                   "2.0"));
  ASSERT_TRUE(processor.SetTransformer(saxon));
  Write("target", "old");
  fs::create_symlink("target", Path("out"));
  fs::permissions(Path("target"), fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read);
  EXPECT_EQ(CountOf(Run(xml, "", {"fail", "true()"}), "enough"), 1U);
  EXPECT_FALSE(succeeded);
  EXPECT_EQ(Read("target"), "old");
  EXPECT_FALSE(fs::exists(Path("sub/a")));
  (void)Run(xml, "");
  EXPECT_TRUE(succeeded) << report::LogText();
  EXPECT_TRUE(fs::is_symlink(Path("out")));
  EXPECT_EQ(Read("target"), "<main/>");
  EXPECT_EQ(fs::status(Path("target")).permissions(),
            fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read);
  EXPECT_TRUE(fs::exists(Path("sub/a")));
  for (const auto &entry : fs::recursive_directory_iterator(folder.Root()))
    EXPECT_EQ(entry.path().string().find(".tmp"), std::string::npos) << "left behind";
}

TEST_F(JavaProcessors, FollowsTheInstructionThatCounts) {
  for (const char *name : {"one.xsl", "two.xsl", "a b&c.xsl"})
    Write(name, Stylesheet("<xsl:template match='/'><o>" + std::string(name, 3) + "</o></xsl:template>"));
  const auto instruction = [](const std::string &href, const std::string &more = " type='text/xsl'") {
    return "<?xml-stylesheet href='" + href + "'" + more + "?>\n";
  };
  struct Row {
    std::string prolog, result; // empty: none counts
  };
  const std::vector<Row> rows = {
      {instruction("one.xsl"), "one"},
      {instruction("one.xsl") + instruction("two.xsl"), "one"},
      {instruction("one.css", " type='text/css'") + instruction("two.xsl", " type='application/xslt+xml'"), "two"},
      {instruction("one.xsl", " type='TEXT/XSL; charset=utf-8'"), "one"},
      {instruction("one.xsl", " type='text/xsl' alternate='yes'") + instruction("two.xsl"), "two"},
      {instruction("one.xsl", " type='text/xsl' media='print'") +
           instruction("two.xsl", " type='text/xml' media='all'"),
       "two"},
      {instruction("one.xsl", " type='text/xsl' media='print'"), "one"},
      {instruction("a%20b&amp;c.xsl"), "a b"},
      {instruction("./sub/..\\two.xsl"), "two"},
      {"<!-- " + instruction("one.xsl") + " -->" + instruction("two.xsl"), "two"},
      {"<!DOCTYPE d [<!ENTITY e 'x'>]>" + instruction("one.xsl"), "one"},
      {"", ""},
      {instruction("one.css", " type='text/css'"), ""},
      {instruction("one.xsl", ""), ""},
      {"<?xml-stylesheet type='text/xsl'?>", ""},
      {"<?xml-stylesheets type='text/xsl' href='one.xsl'?>", ""},
  };
  for (const char *className : {saxon, jdk}) {
    ASSERT_TRUE(processor.SetTransformer(className));
    for (const Row &row : rows) {
      Write("out", "old");
      const std::string log = Run(Write("in.xml", row.prolog + "<d>" + instruction("two.xsl") + "</d>"), "");
      EXPECT_EQ(succeeded, !row.result.empty()) << row.prolog << log;
      EXPECT_EQ(Read("out"), row.result.empty() ? "old" : "<o>" + row.result + "</o>") << row.prolog;
      if (row.result.empty()) {
        EXPECT_NE(log.find("No stylesheet: the input has no xml-stylesheet processing instruction"), std::string::npos);
      }
      EXPECT_EQ(CountKind("start"), CountKind("end")) << "the look into the input ends early, and is closed";
    }
  }
}

// A second result that has nowhere to go ends the transformation with a reason, and takes no first one with it.
TEST_F(JavaProcessors, SaysWhyASecondResultCannotBeWritten) {
  const std::string xml = Write("in.xml", "<doc/>");
  const auto write = [this](const std::string &main, const std::string &href) {
    return Write("two.xsl", Stylesheet("<xsl:template match='/'>" + main + "<xsl:result-document href='" + href +
                                           "'><second/></xsl:result-document></xsl:template>",
                                       "2.0"));
  };
  fs::create_directories(Path("taken"));
  ASSERT_TRUE(processor.SetTransformer(saxon));
  struct Row {
    std::string main, href, reason;
  };
  for (const Row &row :
       {Row{"<main/>", "taken", "Cannot write " + Path("taken") + ": The output is a folder"},
        Row{"<main/>", "in.xml/below", "Cannot write " + Path("in.xml/below") + ": "},
        Row{"<main/>", "http://example.invalid/x", "A result can only be written to a file"},
        Row{"<main/>", "out", "Two results of the transformation go to the same file: " + Path("out")}}) {
    Write("out", "old");
    const std::string log = Run(xml, write(row.main, row.href));
    EXPECT_FALSE(succeeded) << row.href;
    EXPECT_EQ(CountOf(log, "Fatal Error at file "), 1U) << log;
    EXPECT_NE(log.find(row.reason), std::string::npos) << log;
    EXPECT_EQ(Read("out"), "old") << row.href;
  }
  // One that is the only result may well take the name of the principal one.
  EXPECT_EQ(Run(xml, write("", "out")), "");
  EXPECT_TRUE(succeeded);
  EXPECT_EQ(Read("out"), "<second/>");
  for (const auto &entry : fs::recursive_directory_iterator(folder.Root()))
    EXPECT_EQ(entry.path().string().find(".tmp"), std::string::npos) << "left behind";
}

// Also when grammar and stylesheet are kept ones, which are not opened again.
TEST_F(JavaProcessors, TellsWhatAJobReadAndWrote) {
  Write("d.dtd", "<!ENTITY % m SYSTEM 'real%20module.mod'>%m;");
  Write("real module.mod", "<!ENTITY word 'from the module'>");
  const std::string xml = Write("in.xml", "<!DOCTYPE d SYSTEM 'd.dtd'><d>&word;</d>");
  Write("m.xsl", Stylesheet("<xsl:template name='t'><xsl:value-of select=\"document('data.xml')\"/></xsl:template>"));
  Write("data.xml", "<data>data</data>");
  Write("text.txt", "text");
  const auto write = [this](const std::string &name, const std::string &body, const char *version) {
    return Write(name, std::string("<xsl:stylesheet version='") + version +
                           "' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'><xsl:import href='m.xsl'/><xsl:param "
                           "name='fail' select='false()'/><xsl:template match='/'><o><xsl:value-of select='.'/>"
                           "<xsl:call-template name='t'/>" +
                           body +
                           "<xsl:if test='$fail'><xsl:message terminate='yes'>no</xsl:message></xsl:if></o>"
                           "</xsl:template></xsl:stylesheet>");
  };
  const std::string plain = write("plain.xsl", "", "1.0");
  const std::string rich =
      write("rich.xsl",
            "<xsl:value-of select=\"unparsed-text('text.txt')\"/><xsl:for-each select=\"'b', 'a'\">"
            "<xsl:result-document href='more/{.}'/></xsl:for-each>",
            "2.0");
  using Strings = std::vector<std::string>;
  const auto sorted = [](Strings strings) { return std::ranges::sort(strings), strings; };
  const Strings common = {xml, Path("d.dtd"), Path("real module.mod"), Path("m.xsl"), Path("data.xml")};
  for (const char *className : {saxon, xalan, jdk})
    for (const std::string &xsl : className == saxon ? Strings{plain, rich} : Strings{plain}) {
      ASSERT_TRUE(processor.SetTransformer(className));
      Strings expected = common;
      expected.push_back(xsl);
      if (xsl == rich)
        expected.push_back(Path("text.txt"));
      for (const Strings &parameters : {Strings(), Strings(), Strings{"fail", "true()"}}) {
        (void)Run(xml, xsl, parameters);
        EXPECT_EQ(succeeded, parameters.empty()) << report::LogText();
        EXPECT_EQ(sorted(result.filesRead), sorted(expected)) << className;
        const Strings written = xsl == rich && succeeded ? Strings{Path("more/b"), Path("more/a")} : Strings();
        EXPECT_EQ(result.secondaryOutputs, written);
      }
    }
  EXPECT_EQ(Run(Path("gone.xml"), plain).find("Fatal Error at file " + Path("gone.xml")), 0U) << report::LogText();
  EXPECT_EQ(std::ranges::count(result.filesRead, Path("gone.xml")), 0);
}

TEST_F(JavaProcessors, BlamesTheOutputThatCannotBeWritten) {
  const std::string xml = Write("in.xml", "<doc/>");
  const std::string xsl = Write("a.xsl", Stylesheet("<xsl:template match='/'><o/></xsl:template>"));
  Write("file", "");
  fs::create_directories(Path("taken"));
  for (const char *className : {saxon, xalan, jdk}) {
    ASSERT_TRUE(processor.SetTransformer(className));
    for (const char *output : {"no such folder/out", "file/out", "taken"}) {
      report::ResetLog(false);
      EXPECT_EQ(processor.TransformXMLFile({xml, xsl, Path(output)}).status, processors::JobStatus::Failed);
      const std::string &log = report::LogText();
      EXPECT_EQ(log.find("Fatal Error at file " + Path(output)), 0U) << className << log;
      EXPECT_EQ(CountOf(log, "Error at file"), 1U) << className << log;
    }
  }
}

TEST_F(JavaProcessors, CompilesAgainWhenAModuleChanges) {
  const std::string xml = Write("in.xml", "<doc/>");
  const std::string xsl =
      Write("main.xsl", "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>"
                        "<xsl:import href='m.xsl'/></xsl:stylesheet>");
  for (const std::string text : {"one", "three"}) {
    Write("m.xsl", Stylesheet("<xsl:template match='/'><o>" + text + "</o></xsl:template>"));
    for (const char *className : {saxon, xalan, jdk}) {
      ASSERT_TRUE(processor.SetTransformer(className));
      EXPECT_EQ(Run(xml, xsl), "");
      EXPECT_EQ(Read("out"), "<o>" + text + "</o>") << className;
    }
  }
}

// A kept stylesheet serves runs with the same static parameters, whatever the others are; what one run was given must
// not show in the next.
TEST_F(JavaProcessors, KeepsStylesheetsApartByTheirStaticParameters) {
  const std::string xml = Write("in.xml", "<doc/>");
  Write("m.xsl", Stylesheet("<xsl:param name='p:s' static='yes' select='0' xmlns:p='urn:p'/>", "3.0"));
  const std::string xsl =
      Write("main.xsl",
            Stylesheet("<xsl:param name='s' static='yes' select='1'/><xsl:import href='m.xsl'/><xsl:param name='x' "
                       "select='2'/><xsl:template match='/' xmlns:p='urn:p'><o><xsl:value-of select='$s, $p:s, $x'/>"
                       "</o></xsl:template>",
                       "3.0"));
  const std::vector<std::pair<std::vector<std::string>, std::string>> runs = {
      {{"x", "5"}, "1 0 5"},           {{}, "1 0 2"},
      {{"s", "7", "x", "6"}, "7 0 6"}, {{"s", "7"}, "7 0 2"},
      {{"Q{urn:p}s", "3"}, "1 3 2"},   {{"{urn:p}s", "3", "x", "4"}, "1 3 4"},
      {{"s", "'bare'"}, "bare 0 2"},   {{"s", "bare"}, "bare 0 2"},
      {{"{}s", "9"}, "9 0 2"},         {{}, "1 0 2"}};
  for (int round = 0; round < 2; ++round)
    for (const auto &[parameters, expected] : runs) {
      ASSERT_TRUE(processor.SetTransformer(saxon));
      EXPECT_EQ(Run(xml, xsl, parameters), "");
      EXPECT_EQ(ReadText("out"), expected) << round;
      EXPECT_EQ(CountOf(ResultList(), "main.xsl"), 1U) << "among the files read";
    }
  for (int run = 0; run < 20; ++run) {
    EXPECT_EQ(Run(xml, xsl, {"s", "concat('n', " + std::to_string(run) + ")"}), "");
    EXPECT_EQ(ReadText("out"), "n" + std::to_string(run) + " 0 2");
  }
}

// Included files are looked up like entities, and are among the files read.
TEST_F(JavaProcessors, ReadsWhatInputsIncludeThroughTheHost) {
  const std::string include = "<xi:include xmlns:xi='http://www.w3.org/2001/XInclude' ";
  entities["part.xml"] = Write("elsewhere/real.xml", "<p>" + include + "href='t.txt' parse='text'/></p>");
  Write("elsewhere/t.txt", "text");
  const std::string xml =
      Write("in.xml", "<doc>" + include + "href='part.xml'/>" + include + "href='http://no.such.host/x'>" +
                          "<xi:fallback>offline</xi:fallback>" + "</xi:include></doc>");
  const std::string xsl = Write("s.xsl", Stylesheet("<xsl:template match='/'><o><xsl:value-of select='.'/></o>"
                                                    "</xsl:template>"));
  for (const char *className : {saxon, xalan, jdk}) {
    ASSERT_TRUE(processor.SetTransformer(className));
    host.requests.clear();
    result = processor.TransformXMLFile({xml, xsl, Path("out"), {}, {}, {}, true});
    EXPECT_EQ(ReadText("out"), "textoffline") << className << report::LogText();
    EXPECT_EQ(result.filesRead,
              (std::vector<std::string>{xsl, xml, Path("elsewhere/real.xml"), Path("elsewhere/t.txt")}));
    EXPECT_EQ(CountKind("start"), CountKind("end"));
    EXPECT_EQ(Run(xml, xsl), "");
    EXPECT_EQ(ReadText("out"), "offline") << "not asked for";
  }
}

TEST_F(JavaProcessors, KeepsFactoriesOfOneClassApart) {
  const std::string xml = Write("in.xml", "<doc> <a/> </doc>");
  const std::string xsl =
      Write("s.xsl", Stylesheet("<xsl:template match='/'><o><xsl:value-of select='count(//text())'/></o>"
                                "</xsl:template>"));
  const std::string strip = "http://saxon.sf.net/feature/strip-whitespace";
  for (int round = 0; round < 2; ++round) {
    ASSERT_TRUE(processor.SetTransformer(saxon));
    EXPECT_EQ(Run(xml, xsl), "");
    EXPECT_EQ(ReadText("out"), "2");
    ASSERT_TRUE(processor.SelectFactory({saxon, {strip, "string", "all"}}));
    EXPECT_EQ(Run(xml, xsl), "");
    EXPECT_EQ(ReadText("out"), "0");
  }
  const std::vector<std::vector<std::string>> accepted = {
      {"http://saxon.sf.net/feature/linenumbering", "boolean", "true"},
      {"http://saxon.sf.net/feature/optimizationLevel", "integer", "0"},
      {"http://javax.xml.XMLConstants/feature/secure-processing", "boolean", "false"}};
  for (const auto &attribute : accepted)
    EXPECT_EQ(processor.ProbeProcessor({saxon, attribute}).error, "") << attribute[0];
  for (const char *className : {saxon, xalan, jdk}) {
    report::ResetLog(false);
    const processors::Factory wrong{className, {"http://no.such/thing", "boolean", "true"}};
    EXPECT_FALSE(processor.SelectFactory(wrong));
    EXPECT_EQ(CountOf(report::LogText(), "the attribute \"http://no.such/thing\" cannot be set to true: "), 1U)
        << report::LogText();
    EXPECT_NE(processor.ProbeProcessor(wrong).error.find(className), std::string::npos);
  }
}

TEST_F(JavaProcessors, TellsWhatAProcessorIs) {
  EXPECT_FALSE(processor.SetTransformer(""));
  EXPECT_EQ(report::LogText(), "");
  EXPECT_EQ(processor.ProbeProcessor({saxon}).version.substr(0, 3), "12.");
  EXPECT_EQ(processor.ProbeProcessor({xalan}).location, PROCESSORS_DIR "/xalan/xalan.jar");
}

TEST(Conversion, KeepsTextAndReplacesWhatIsNone) {
  const FakeHost host; // gives the memory
  for (const auto &[utf8, back] : std::vector<std::pair<std::string, std::string>>{
           {"a\xC3\xA4\xE4\xB8\xAD\xF0\x9D\x84\x9E", "a\xC3\xA4\xE4\xB8\xAD\xF0\x9D\x84\x9E"},
           {"a\xFFz", "a\xEF\xBF\xBDz"}}) {
    char16_t *wide = kit::UTF8ToUTF16(utf8.c_str());
    char *narrow = kit::UTF16ToUTF8(wide);
    EXPECT_EQ(narrow, back);
    V_Free(wide);
    V_Free(narrow);
  }
  EXPECT_EQ(kit::UTF8ToUTF16(nullptr), nullptr);
}

} // namespace
