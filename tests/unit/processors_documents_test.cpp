// What the processors read, with a real Java behind them: what they ask the host for, what they tell of it, which
// addresses stylesheets see, and what is said of a document that cannot be read.
#include "tests/unit/java_fixture.h"

#include <csignal>
#include <cstdio>
#include <regex>
#include <set>
#include <utility>

namespace {

using namespace test;
using Strings = std::vector<std::string>;

// Serves the files of a folder on this machine.
class HttpServer {
public:
  explicit HttpServer(const std::string &root) {
    const std::string command = "exec python3 -c 'import functools, http.server, os, sys\n"
                                "class Quiet(http.server.SimpleHTTPRequestHandler):\n"
                                "  def log_message(self, *ignored): pass\n"
                                "serve = http.server.HTTPServer((\"127.0.0.1\", 0), functools.partial(Quiet, "
                                "directory=sys.argv[1]))\n"
                                "print(os.getpid(), serve.server_port, flush=True)\n"
                                "serve.serve_forever()' '" +
                                root + "'";
    pipe = popen(command.c_str(), "r");
    if (!pipe || std::fscanf(pipe, "%d %d", &process, &port) != 2)
      ADD_FAILURE() << "no server";
  }
  ~HttpServer() {
    if (process > 0)
      kill(process, SIGTERM);
    if (pipe)
      pclose(pipe);
  }
  HttpServer(const HttpServer &) = delete;
  HttpServer &operator=(const HttpServer &) = delete;

  [[nodiscard]] std::string Address(const std::string &name) const {
    return "http://127.0.0.1:" + std::to_string(port) + "/" + name;
  }

private:
  FILE *pipe = nullptr;
  int process = 0;
  int port = 0;
};

class Documents : public JavaProcessors {
protected:
  // What was announced as read, in order.
  [[nodiscard]] Strings Started() const {
    const std::string start = "EntityResolver start -basefile \"";
    Strings files;
    for (const auto &[client, request] : host.requests)
      if (request.starts_with(start))
        files.push_back(request.substr(start.size(), request.size() - start.size() - 1));
    return files;
  }
  [[nodiscard]] Strings Asked() const {
    Strings questions;
    for (const auto &[client, request] : host.requests)
      if (request.find("resolveentity") != std::string::npos)
        questions.push_back(request);
    return questions;
  }
  void ExpectEachQuestionOnce() const {
    const Strings asked = Asked();
    EXPECT_EQ(std::set<std::string>(asked.begin(), asked.end()).size(), asked.size()) << testing::PrintToString(asked);
  }
};

// What a kept grammar brings must count as if it had just been read.
TEST_F(Documents, AreReadTheSameAloneAndAfterASibling) {
  const std::string xsl = Write("copy.xsl", Stylesheet("<xsl:template match='/'><xsl:copy-of select='.'/>"
                                                       "</xsl:template>"));
  struct Row {
    const char *start, *body, *reason; // empty: it can be read
  };
  const std::vector<Row> rows = {
      {"<?xml version='1.0' standalone='yes'?><!DOCTYPE d SYSTEM 'd.dtd'>", "&word;", "standalone document"},
      {"<?xml version='1.0' standalone='yes'?><!DOCTYPE d SYSTEM 'd.dtd'>", "&out;", "standalone document"},
      {"<?xml version='1.0' standalone='yes'?><!DOCTYPE d SYSTEM 'd.dtd'>", "no entity", ""},
      {"<?xml version='1.0' standalone='yes'?><!DOCTYPE d SYSTEM 'd.dtd' [<!ENTITY word 'own'>]>", "&word;", ""},
      {"<?xml version='1.0' standalone='no'?><!DOCTYPE d SYSTEM 'd.dtd'>", "&word;&out;", ""},
      {"<!DOCTYPE d SYSTEM 'd.dtd'>", "&word;&nowhere;", ""},
  };
  const auto writeDtd = [this](const std::string &place) {
    Write(place + "/d.dtd", "<!ELEMENT d ANY><!ATTLIST d a CDATA 'default'><!ENTITY word 'external'>"
                            "<!ENTITY out SYSTEM 'part.ent'>");
    Write(place + "/part.ent", "<d>part</d>");
    return Write(place + "/sibling.xml", "<!DOCTYPE d SYSTEM 'd.dtd'><d>&word;</d>");
  };
  for (const char *className : {saxon, xalan, jdk}) {
    ASSERT_TRUE(processor.SetTransformer(className));
    for (size_t i = 0; i < rows.size(); ++i) {
      std::set<std::string> outcomes;
      for (const bool isAlone : {true, false}) {
        const std::string place = className + std::to_string(i) + (isAlone ? "-alone" : "-after");
        const std::string sibling = writeDtd(place);
        if (!isAlone) {
          EXPECT_EQ(Run(sibling, xsl), "");
        }
        fs::remove(Path("out"));
        const std::string log =
            Run(Write(place + "/in.xml", rows[i].start + std::string("<d>") + rows[i].body + "</d>"), xsl);
        EXPECT_EQ(succeeded, *rows[i].reason == 0) << className << rows[i].start << log;
        EXPECT_NE(log.find(rows[i].reason), std::string::npos) << log;
        outcomes.insert(succeeded ? Read("out") : "failed");
      }
      EXPECT_EQ(outcomes.size(), 1U) << className << rows[i].start << testing::PrintToString(outcomes);
    }
  }
}

TEST_F(Documents, HaveAddressesOfOneSpelling) {
  const std::string here = "file://" + Path("");
  const std::string escaped =
      "file:///tmp/" +
      std::regex_replace(
          std::regex_replace(std::regex_replace(fs::path(folder.Root()).filename().string(), std::regex("%"), "%25"),
                             std::regex(" "), "%20"),
          std::regex("\xC3\xBC"), "%C3%BC");
  Write("d.dtd",
        "<!NOTATION n SYSTEM 'n'><!ENTITY a SYSTEM 'a.gif' NDATA n><!ENTITY b SYSTEM '" + here + "b.gif' NDATA n>");
  Write("sub/part.ent", "<e/>");
  Write("sub/other.xml", "<x xml:base='more/'><y xml:base='z.xml'/></x>");
  Write("m.xsl", Stylesheet("<xsl:template name='m'><xsl:sequence select='static-base-uri()'/></xsl:template>", "2.0"));
  const std::string kept = Write("kept.xml", "<!DOCTYPE d SYSTEM 'd.dtd'><d/>");
  const std::string own =
      Write("own.xml", "<!DOCTYPE d SYSTEM 'd.dtd' [<!ENTITY c SYSTEM 'sub/c.gif' NDATA n><!ENTITY p SYSTEM '" + here +
                           "sub/part.ent'>]><d><k xml:base='sub/k'/>&p;</d>");
  const std::string unparsed =
      Write("unparsed.xsl", Stylesheet("<xsl:template match='/'>"
                                       "<xsl:value-of select=\"unparsed-entity-uri('a')\"/>|"
                                       "<xsl:value-of select=\"unparsed-entity-uri('b')\"/>|"
                                       "<xsl:value-of select=\"unparsed-entity-uri('c')\"/>|</xsl:template>"));
  const std::string all =
      Write("all.xsl",
            "<xsl:stylesheet version='2.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'><xsl:import href='m.xsl'/>"
            "<xsl:template match='/'><xsl:variable name='m'><xsl:call-template name='m'/></xsl:variable>"
            "<xsl:value-of separator='|' select=\"base-uri(.), document-uri(.), base-uri(//k), base-uri(//e), "
            "static-base-uri(), string($m), resolve-uri('x', base-uri(.)), resolve-uri('x'), for $d in "
            "(document('sub/other.xml'), document(concat('file://', substring-after(resolve-uri('sub/other.xml'), "
            "'file:'))), "
            "document('sub/other.xml', .)) return (base-uri($d), document-uri($d), $d//base-uri()), "
            "collection('sub?select=*.xml')/base-uri(), unparsed-entity-uri('a')\"/>|</xsl:template></xsl:stylesheet>");
  const auto expectOneSpelling = [this](const std::string &log, size_t count) {
    EXPECT_EQ(log, "");
    const std::string out = Read("out");
    const std::string start = "file:" + std::string(folder.Root()).substr(0, 5);
    EXPECT_EQ(CountOf(out, "file:/"), count) << out;
    EXPECT_EQ(CountOf(out, start), count) << out;
    EXPECT_EQ(CountOf(out, "\xC3"), 0U) << "one escapes what the others do not: " << out;
  };
  for (const char *className : {saxon, xalan, jdk}) {
    ASSERT_TRUE(processor.SetTransformer(className));
    for (int time = 0; time < 2; ++time) // the second one from the kept grammar
      expectOneSpelling(Run(kept, unparsed), 2);
    expectOneSpelling(Run(own, unparsed), 3);
  }
  ASSERT_TRUE(processor.SetTransformer(saxon));
  expectOneSpelling(Run(own, all), 25);
}

// Announced to the host with a start and an end, asked for once, and in the list of what a job read.
TEST_F(Documents, AreAnnouncedWhereverTheyComeFrom) {
  const HttpServer server(folder.Root());
  processor.SetPolicy({.hosts = {"127.0.0.1"}});
  Write("net.dtd", "<!ENTITY word 'fetched'>");
  Write("net.xml", "<!DOCTYPE d SYSTEM 'net.dtd'><d>&word;</d>");
  Write("net.xsl", Stylesheet("<xsl:template name='n'>module </xsl:template>"));
  const std::string xml = Write("in.xml", "<doc/>");
  const std::string part = Write("part.xml", "<p/>");
  const std::string item = Write("folder/item.xml", "<!DOCTYPE html PUBLIC '-//W3C//DTD XHTML 1.0 Strict//EN' "
                                                    "'http://www.w3.org/TR/xhtml1/DTD/xhtml1-strict.dtd'>"
                                                    "<html>&eacute;</html>"); // Saxon has a copy of that
  const std::string net = server.Address("net.xml");
  const auto write = [&](const std::string &name, const std::string &more) {
    return Write(name, "<xsl:stylesheet version='2.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'><xsl:import "
                       "href='" +
                           server.Address("net.xsl") +
                           "'/><xsl:output method='text'/><xsl:template match='/'><xsl:call-template name='n'/>"
                           "<xsl:value-of select=\"document('" +
                           net + "')\"/><xsl:value-of select=\"document('" + net + "')\"/>" + more +
                           "</xsl:template></xsl:stylesheet>");
  };
  const std::string plain = write("plain.xsl", "<xsl:copy-of select=\"document('part.xml#p')\"/>");
  const std::string rich = write("rich.xsl", "<xsl:value-of select=\"collection('folder?select=*.xml')\"/>");
  for (const auto &[className, xsl, last, text] :
       {std::tuple{saxon, plain, part, ""}, std::tuple{saxon, rich, item, "\xC3\xA9"},
        std::tuple{xalan, plain, part, ""}, std::tuple{jdk, plain, part, ""}}) {
    ASSERT_TRUE(processor.SetTransformer(className));
    EXPECT_EQ(Run(xml, xsl), "") << className;
    EXPECT_EQ(Read("out"), std::string("module fetchedfetched") + text) << className;
    EXPECT_EQ(Started(), (Strings{xsl, server.Address("net.xsl"), xml, net, last})) << className;
    EXPECT_EQ(CountKind("start"), CountKind("end"));
    ExpectEachQuestionOnce();
    for (const std::string &address : {net, server.Address("net.dtd"), server.Address("net.xsl"), last})
      EXPECT_EQ(std::ranges::count(result.filesRead, address), 1) << className << address;
  }
}

// Also when the input is read twice, and when a later run finds a grammar of an earlier one.
TEST_F(Documents, AreAskedForOnce) {
  Write("d.dtd", "<!ENTITY % m SYSTEM 'm.mod'>%m;");
  Write("m.mod", "<!ENTITY e 'x'>");
  Write("data.xml", "<data/>");
  Write("s.xsl", Stylesheet("<xsl:template match='/'><xsl:copy-of select=\"document('data.xml')\"/>"
                            "<xsl:copy-of select=\"document('data.xml')\"/></xsl:template>"));
  const std::string xml =
      Write("in.xml", "<!DOCTYPE d SYSTEM 'd.dtd'><?xml-stylesheet type='text/xsl' href='s.xsl'?><d>&e;</d>");
  for (const char *className : {saxon, xalan, jdk, saxon}) {
    ASSERT_TRUE(processor.SetTransformer(className)); // a new run
    for (const size_t count : {4U, 0U}) {             // once a run, also of a kept grammar
      EXPECT_EQ(Run(xml, ""), "");
      EXPECT_EQ(Asked().size(), count) << className << testing::PrintToString(Asked());
      ExpectEachQuestionOnce();
    }
  }
}

TEST_F(Documents, AreToldOfWhereTheyAreAtFault) {
  const std::string plain = Write("plain.xsl", Stylesheet("<xsl:template match='/'><o/></xsl:template>"));
  const std::string ending = Write("ending.xsl", Stylesheet("<xsl:template match='/'><xsl:message terminate='yes'>no"
                                                            "</xsl:message></xsl:template>"));
  const auto naming = [this](const std::string &href) {
    return Write("in.xml", "<?xml version='1.0'?>\n <?xml-stylesheet type='text/xsl' href='" + href + "'?>\n<d/>");
  };
  struct Row {
    std::string xml, xsl, place, reason;
  };
  const auto expect = [this](const Row &row) {
    for (const char *className : {saxon, xalan, jdk}) {
      ASSERT_TRUE(processor.SetTransformer(className));
      const std::string log = Run(row.xml, row.xsl);
      EXPECT_FALSE(succeeded);
      EXPECT_EQ(CountOf(log, "rror at file "), 1U) << className << log;
      EXPECT_NE(log.find("rror at file " + Path(row.place)), std::string::npos) << className << log;
      EXPECT_NE(log.find(row.reason), std::string::npos) << className << log;
    }
  };
  expect({naming(""), "", "in.xml, line 2, char ", "the href of the xml-stylesheet processing instruction is empty"});
  expect({naming("  "), "", "in.xml, line 2, char ", "the href of the xml-stylesheet processing instruction is empty"});
  expect({naming("%00"), "", "in.xml, line 2, char ", "\"%00\" leads to no file"});
  expect({naming("file://elsewhere" + plain), "", "in.xml, line 2, char ", "leads to no file"});
  expect({Write("none.xml", "<!--\n-->\n<d/>"), "", "none.xml, line 3, char ", "No stylesheet"});
  expect({Write("empty.xml", ""), plain, "empty.xml, line 1, char 1", "Premature end of file"});
  const HttpServer server(folder.Root());
  processor.SetPolicy({.hosts = {"127.0.0.1", "no-such-host.invalid"}});
  for (const auto &[reference, reason] :
       {std::pair{server.Address("gone.xsl"), "gone.xsl: there is no such document."},
        std::pair{std::string("http://no-such-host.invalid/m.xsl"), "m.xsl: there is no such host."}})
    for (const char *className : {xalan, jdk}) { // Saxon fetches by itself, in its own words
      ASSERT_TRUE(processor.SetTransformer(className));
      const std::string log =
          Run(Write("good.xml", "<d/>"), Write("far.xsl", Stylesheet("<xsl:include href='" + reference + "'/>")));
      EXPECT_NE(log.find(reason), std::string::npos) << className << log;
    }
  // The input has no part in it.
  expect({Write("good.xml", "<d/>"), ending, "ending.xsl, line ", ""});
}

} // namespace
