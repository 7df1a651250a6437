// Where catalogues lie and what stored paths mean.
#include "catalogue/location.h"
#include "catalogue/shut_down.h"
#include "catalogue/stylesheet_parameters.h"
#include "tests/unit/catalogue_fixture.h"

#include <filesystem>

namespace {

using catalogue::ResolvePath;
using Strings = std::vector<std::string>;

TEST_F(CatalogueTest, StoredPathsBecomeAbsolute) {
  const std::string structure = root + "/structure";
  struct Row {
    std::string path, base, resolved;
  };
  const std::vector<Row> rows = {
      {"", "/a/b.xml", ""},
      {"/x/y.xml", "/a/b.xml", "/x/y.xml"},
      {"$STRUCTDIR/dita/T.xml", "", structure + "/dita/T.xml"},
      {"$structdir\\dita\\T.xml", "", structure + "/dita/T.xml"},
      {"$STRUCTDIRT.xml", "", structure + "T.xml"},
      {"$VlHomevlinit\\T.xml", "", install + "vlinit/T.xml"},
      {"$VLHOME", "", install},
      {"x/$VLHOME/T.xml", "", install + "x/$VLHOME/T.xml"},
      {"$VLHOME$STRUCTDIR", "", install + "$STRUCTDIR"},
      {"dita\\T.xml", "", install + "dita/T.xml"},
      {"style.xsl", "/a b/in.xml", "/a b/style.xsl"},
      {"../style.xsl", "$STRUCTDIR/t/in.xml", structure + "/t/../style.xsl"},
      {"style.xsl", "file:///a%20b/in.xml", "/a b/style.xsl"},
      {"style.xsl", "t/in.xml", install + "t/style.xsl"},
      {"file:///a%20b/%C3%BC.xml", "", "/a b/ü.xml"},
      {"FILE:/a/b.xml", "", "/a/b.xml"},
      {"file://localhost/a/b.xml", "", "/a/b.xml"},
      {"/a b%20c.xml", "", "/a b%20c.xml"},
      {"dctm://server/cab/T.xml", "/a/b.xml", "dctm://server/cab/T.xml"},
  };
  for (const Row &row : rows)
    EXPECT_EQ(ResolvePath(row.path, row.base), row.resolved) << row.path << " with base " << row.base;

  const std::string odd = Write("back\\slash.xml", "");
  EXPECT_EQ(ResolvePath(odd), odd) << "a file that is really called so";
  host.strings.erase({V_SESSION, V_SP_INSTALL_DIR});
  EXPECT_EQ(ResolvePath("$VLHOME/T.xml"), "");
}

TEST_F(CatalogueTest, ApplicationsAreThoseWithACatalogue) {
  std::map<std::string, std::string> stored = {
      {"<Defaults>", "$STRUCTDIR/defaults.xml"}, {"DITA", "dita\\T.xml"}, {"Bare", ""}};
  const FakeHost::Client dispatcher = [&](const std::string &request) {
    kit::TypedValues reply;
    if (request == "GetAppsForFile \"/in/a b.xml\"")
      reply.AddStrings({"Bare", "DITA", "", "DITA", "Unknown"});
    for (const auto &[name, path] : stored)
      if (request == "XSLTGetTrScenarioFile  -appname \"" + name + "\"")
        reply.AddString(path);
    return reply;
  };
  host.clients["VlDispatcher"] = dispatcher;
  host.lists[{V_SESSION, V_SP_APPLICATIONS}] = {"Bare", "", "DITA"};

  EXPECT_EQ(catalogue::GetTransformationFile("DITA"), install + "dita/T.xml");
  EXPECT_EQ(catalogue::GetTransformationFile("Bare"), "");
  EXPECT_EQ(catalogue::GetTransformationFile("dita"), "");
  EXPECT_EQ(catalogue::GetTransformationFile("DITA\" and more"), "");
  EXPECT_EQ(host.requests.back().second, "XSLTGetTrScenarioFile  -appname 'DITA\" and more'");
  const size_t requestsBefore = host.requests.size();
  EXPECT_EQ(catalogue::GetTransformationFile(""), "");
  EXPECT_EQ(host.requests.size(), requestsBefore);

  EXPECT_EQ(catalogue::GetAllApplications(), (Strings{"<Defaults>", "DITA"}));
  EXPECT_EQ(catalogue::GetApplicationsForFile("/in/a b.xml"), (Strings{"<Defaults>", "DITA", "DITA"}));
  host.strings[{7, V_OP_FULL_NAME}] = "/in/a b.xml";
  host.strings[{8, V_OP_APPLICATION}] = "DITA";
  EXPECT_EQ(catalogue::GetApplicationsForDocument(7), (Strings{"<Defaults>", "DITA", "DITA"}));
  EXPECT_EQ(catalogue::GetApplicationsForDocument(8), (Strings{"<Defaults>", "DITA"}));
  EXPECT_EQ(catalogue::GetApplicationsForDocument(0), Strings());
  stored.erase("<Defaults>");
  EXPECT_EQ(catalogue::GetApplicationsForDocument(8), Strings{"DITA"});

  // An answer that is not exactly one list names no application, and a catalogue's path is a text.
  host.clients["VlDispatcher"] = [](const std::string &request) {
    kit::TypedValues reply;
    if (request.starts_with("GetAppsForFile") || request.ends_with("\"List\""))
      reply.AddStrings({"DITA"});
    reply.AddString("/T.xml");
    return reply;
  };
  EXPECT_EQ(catalogue::GetApplicationsForFile("/in/x.xml"), Strings{"<Defaults>"});
  EXPECT_EQ(catalogue::GetTransformationFile("List"), "");
  host.clients["VlDispatcher"] = dispatcher;

  std::filesystem::create_directories(install + "dita");
  std::filesystem::rename(Write("T.xml", Catalogue(Element("one") + Element("two"))), install + "dita/T.xml");
  EXPECT_EQ(catalogue::GetTransformationNames("DITA"), (Strings{"one", "two"}));
  EXPECT_EQ(catalogue::GetTransformationNames("Bare"), std::nullopt);
  stored["Bare"] = "/no such file";
  EXPECT_EQ(catalogue::GetTransformationNames("Bare"), Strings());
  EXPECT_EQ(catalogue::GetTransformation("", "DITA", "two")->xslPath, "two.xsl");
  EXPECT_FALSE(catalogue::GetTransformation("dita/T.xml", "", "Two"));
}

TEST_F(CatalogueTest, TheDefaultCatalogueIsAskedForOnce) {
  host.strings[{V_SESSION, V_SP_DEFAULT_CATALOGUE}] = "$structdir/D.xml";
  EXPECT_EQ(catalogue::GetDefaultTransformationFile(), root + "/structure/D.xml");
  host.strings[{V_SESSION, V_SP_DEFAULT_CATALOGUE}] = "/other.xml";
  EXPECT_EQ(catalogue::GetDefaultTransformationFile(), root + "/structure/D.xml");
  catalogue::ShutDownCatalogue();
  EXPECT_EQ(catalogue::GetDefaultTransformationFile(), "/other.xml");
}

// ---- Parameters of stylesheets

constexpr const char *xslNamespace = "xmlns:xsl='http://www.w3.org/1999/XSL/Transform'";

std::string Repeat(const std::string &text, int count) {
  std::string repeated;
  for (int time = 0; time < count; ++time)
    repeated += text;
  return repeated;
}

TEST_F(CatalogueTest, TopLevelParametersAreListed) {
  const std::string open = std::string("<xsl:stylesheet ") + xslNamespace + ">";
  const std::string close = "</xsl:stylesheet>";
  Write("more.ent", "<!ENTITY greeting \"'hello'\">");
  Write("elements.dtd", "<!ELEMENT other EMPTY>");
  struct Row {
    std::string text;
    Strings parameters;
    std::string logged;
  };
  const std::vector<Row> rows = {
      {open +
           "<xsl:param name=' a ' select=' 1 + 1 '/><!-- c --><xsl:param name='b'>text</xsl:param>"
           "<xsl:param name='c' select=''/><xsl:template name='t'><xsl:param name='inner'/></xsl:template>" +
           close,
       {"a", "1 + 1", "b", "<no value>", "c", "<no value>"},
       ""},
      {"<stylesheet xmlns='urn:anything'><param name='x' select='1'/></stylesheet>", {"x", "1"}, ""},
      {std::string("<xsl:transform ") + xslNamespace + "><xsl:param name='a'/></xsl:transform>", {}, ""},
      // A document type that only brings entities, its own or those of a file beside it, is no wish to be validated.
      {"<!DOCTYPE xsl:stylesheet [<!ENTITY % more SYSTEM 'more.ent'> %more;]>" + open +
           "<xsl:param name='g' select=\"&greeting;\"/>" + close,
       {"g", "'hello'"},
       ""},
      {"<!DOCTYPE xsl:stylesheet [<!ELEMENT other EMPTY>]>" + open + "<xsl:param name='g'/>" + close, {}, "Error at"},
      {open + "<xsl:param name='a'/>\n<xsl:param name=b/>" + close, {}, "line 2, char"},
      // An external subset that declares no elements is no such wish either; one that does is.
      {"<!DOCTYPE xsl:stylesheet SYSTEM 'more.ent'>" + open + "<xsl:param name='g' select=\"&greeting;\"/>" + close,
       {"g", "'hello'"},
       ""},
      {"<!DOCTYPE xsl:stylesheet SYSTEM 'elements.dtd'>" + open + "<xsl:param name='g'/>" + close, {}, "Error at"},
      // What was not read is named, since references to its entities are passed over.
      {"<!DOCTYPE xsl:stylesheet SYSTEM 'http://127.0.0.1:1/x.dtd'>" + open + "<xsl:param name='g'/>" + close,
       {"g", "<no value>"},
       "style sheet.xsl names http://127.0.0.1:1/x.dtd, which was not read: only local files are."},
      {"<!DOCTYPE xsl:stylesheet SYSTEM 'gone.dtd'>" + open + "<xsl:param name='g' select='1&g;'/>" + close,
       {"g", "1"},
       "gone.dtd, which was not read"},
      {open + "<?param name='p' select='1'?><!--param--><xsl:param name='a'/>" + close, {"a", "<no value>"}, ""},
      // Nested too deep is said, not waited for.
      {open + Repeat("<a>", 10001) + Repeat("</a>", 10001) + close, {}, "Elements are nested more than 10000 deep."},
      {open + Repeat("<a>", 9000) + Repeat("</a>", 9000) + "<xsl:param name='a'/>" + close, {"a", "<no value>"}, ""},
  };
  for (const Row &row : rows) {
    const std::string path = Write("style sheet.xsl", row.text);
    EXPECT_EQ(catalogue::GetStylesheetParameters(path), row.parameters) << row.text.substr(0, 300);
    const std::string log = TakeLog();
    EXPECT_TRUE(row.logged.empty() ? log.empty() : log.find(row.logged) != std::string::npos) << log;
  }
  EXPECT_EQ(catalogue::GetStylesheetParameters(""), std::nullopt);
  EXPECT_EQ(catalogue::GetStylesheetParameters(Path("missing.xsl")), std::nullopt);
  EXPECT_EQ(catalogue::GetStylesheetParameters(root), std::nullopt);
}

} // namespace
