// Requests to the clients that the host answers itself, and how requests travel.
#include "host/session.h"
#include "kit/request_builder.h"
#include "tests/unit/host_fixture.h"

#include <gtest/gtest.h>

namespace {

using Names = std::vector<std::string>;

class BuiltInClients : public test::HostTest {
protected:
  // Made at the first use, when the test has settled the configuration.
  host::Session &TheSession() { return session ? *session : Open(); }

  std::string Resolve(const std::string &publicId, const std::string &base, const std::string &systemId) {
    const std::string request = "EntityResolver resolveentity -publicid \"" + publicId + "\" -baseuri \"" + base +
                                "\" -systemid \"" + systemId + "\"";
    const kit::TypedValues reply = TheSession().Send("XmlUtilities", request).values;
    EXPECT_LE(reply.Size(), 1U);
    return folder.Shorten({reply.String(0).value_or("")}).front();
  }

  // A catalog in the namespace of catalogs.
  void WriteCatalog(std::string_view name, const std::string &entries) const {
    folder.Write(name, "<catalog xmlns='urn:oasis:names:tc:entity:xmlns:xml:catalog'>" + entries + "</catalog>");
  }
};

class Catalogs : public BuiltInClients {
protected:
  Catalogs() {
    for (const char *file : {"dtd/p.dtd", "dtd/s.dtd", "dtd/u.xsl", "tree/x/deep.mod", "tree/style.xsl", "next.dtd",
                             "d/public.dtd", "d/system.dtd", "d/uri.xsl", "doc/beside.dtd", "dtd/beside.dtd"})
      folder.Write(file, "");
    WriteCatalog("main.xml", R"(
      <public publicId="-//X//DTD P//EN" uri="dtd/p.dtd"/>
      <system systemId="http://x.example/s.dtd" uri="dtd/s.dtd"/>
      <system systemId="beside.dtd" uri="dtd/beside.dtd"/>
      <uri name="http://x.example/u.xsl" uri="dtd/u.xsl"/>
      <rewriteSystem systemIdStartString="http://x.example/tree/" rewritePrefix="tree/"/>
      <rewriteURI uriStartString="http://x.example/styles/" rewritePrefix="tree/"/>
      <public publicId="-//X//DTD Gone//EN" uri="dtd/gone.dtd"/>
      <delegatePublic publicIdStartString="-//D//" catalog="d/catalog.xml"/>
      <delegateSystem systemIdStartString="http://d.example/" catalog="d/catalog.xml"/>
      <delegateURI uriStartString="http://d.example/u" catalog="d/catalog.xml"/>
      <nextCatalog catalog="next.xml"/>)");
    WriteCatalog("next.xml", R"(<public publicId="-//X//DTD Next//EN" uri="next.dtd"/>
      <uri name="urn:next" uri="next.dtd"/><nextCatalog catalog="main.xml"/>)");
    WriteCatalog("d/catalog.xml", R"(<public publicId="-//D//DTD P//EN" uri="public.dtd"/>
      <system systemId="http://d.example/s.dtd" uri="system.dtd"/><uri name="http://d.example/u.xsl" uri="uri.xsl"/>)");
    WriteCatalog("second.xml", R"(<public publicId="-//X//DTD Gone//EN" uri="dtd/p.dtd"/>)");
    for (const char *file : {"main.xml", "second.xml"})
      configuration.catalogs.push_back(folder.Path(file));
  }
};

TEST_F(Catalogs, FollowEveryKindOfEntry) {
  struct Case {
    const char *publicId;
    const char *systemId;
    const char *found;
  };
  const Case cases[] = {
      {"-//X//DTD P//EN", "p.dtd", "dtd/p.dtd"},
      {"-//X//DTD   P//EN", "", "dtd/p.dtd"},
      {"", "http://x.example/s.dtd", "dtd/s.dtd"},
      {"-//Unknown//EN", "http://x.example/s.dtd", "dtd/s.dtd"},
      {"", "http://x.example/u.xsl", "dtd/u.xsl"},
      {"", "http://x.example/tree/x/deep.mod", "tree/x/deep.mod"},
      {"", "http://x.example/styles/style.xsl", "tree/style.xsl"},
      {"-//X//DTD Next//EN", "", "next.dtd"},
      {"", "urn:next", "next.dtd"},
      {"-//D//DTD P//EN", "", "d/public.dtd"},
      {"", "http://d.example/s.dtd", "d/system.dtd"},
      {"", "http://d.example/u.xsl", "d/uri.xsl"},
      // The first catalog names a file that is not there; the second one knows better.
      {"-//X//DTD Gone//EN", "", "dtd/p.dtd"},
      {"-//Unknown//EN", "http://unknown.example/x.dtd", ""},
      {"", "", ""},
  };
  for (int round = 0; round < 2; ++round)
    for (const Case &each : cases)
      EXPECT_EQ(Resolve(each.publicId, "http://base.example/doc.xml", each.systemId), each.found)
          << each.publicId << " | " << each.systemId;
  // The second file leads back to the first.
  EXPECT_EQ(front.console, Names{folder.Path("main.xml") + ": catalog: it includes itself, maybe through another one"});
}

TEST_F(Catalogs, ResolveRelativeNamesAgainstTheDocument) {
  EXPECT_EQ(Resolve("", "http://x.example/doc.xml", "s.dtd"), "dtd/s.dtd");
  EXPECT_EQ(Resolve("", "http://x.example/tree/doc.xml", "x/deep.mod"), "tree/x/deep.mod");
  // A bare name that a catalog lists must not hide a file beside the document, and helps where there is none.
  EXPECT_EQ(Resolve("", folder.Path("doc/a.xml"), "beside.dtd"), "");
  EXPECT_EQ(Resolve("", folder.Path("tree/a.xml"), "beside.dtd"), "dtd/beside.dtd");
  const std::string longBase = "http://x.example/" + std::string(5000, 'a') + "/../tree/doc.xml";
  EXPECT_EQ(Resolve("", longBase, "x/deep.mod"), "tree/x/deep.mod");
}

TEST_F(BuiltInClients, WarnOnceOfABrokenCatalogAndUseTheOthers) {
  folder.Write("ok.dtd", "");
  folder.Write("broken.xml", "<catalog xmlns='urn:oasis:names:tc:entity:xmlns:xml:catalog'>\n<public\n");
  WriteCatalog("good.xml", "<nextCatalog catalog='broken.xml'/><public publicId='-//Ok//EN' uri='ok.dtd'/>");
  configuration.catalogs = {folder.Path("missing.xml"), folder.Path("broken.xml"), folder.Path("good.xml")};
  for (const char *id : {"-//Ok//EN", "-//None//EN", "-//Ok//EN"})
    EXPECT_EQ(Resolve(id, "", ""), id == std::string("-//Ok//EN") ? "ok.dtd" : "");
  ASSERT_EQ(front.console.size(), 2U);
  EXPECT_EQ(front.console[0], folder.Path("missing.xml") + ": catalog: there is no such file");
  EXPECT_TRUE(front.console[1].starts_with(folder.Path("broken.xml") + ":")) << front.console[1];
  for (const char *request : {"EntityResolver start -basefile \"x\"", "EntityResolver end", "EntityResolver terminate",
                              "EntityResolver", "Something else"})
    EXPECT_EQ(TheSession().Send("XmlUtilities", request).values.Size(), 0U) << request;
}

TEST_F(BuiltInClients, DispatcherKnowsCataloguesAndApplications) {
  configuration.defaultCatalogue = "/default.xml";
  configuration.applications = {{.name = "DITA", .catalogue = "$STRUCTDIR/dita.xml", .files = {"*.dita"}},
                                {.name = "Two words", .catalogue = "/two.xml", .files = {"*.dita"}},
                                {.name = "Bare", .files = {"*.xml"}}};
  const auto catalogueOf = [&](const std::string &request) {
    return TheSession().Send("VlDispatcher", request).values.String(0).value_or("none");
  };
  EXPECT_EQ(catalogueOf("XSLTGetTrScenarioFile  -appname \"DITA\""), "$STRUCTDIR/dita.xml");
  EXPECT_EQ(catalogueOf("xsltgettrscenariofile -APPNAME 'Two words'"), "/two.xml");
  EXPECT_EQ(catalogueOf("XSLTGetTrScenarioFile -appname \"<Defaults>\""), "/default.xml");
  for (const char *request : {"XSLTGetTrScenarioFile -appname \"dita\"", "XSLTGetTrScenarioFile -appname Bare",
                              "XSLTGetTrScenarioFile", "XSLTGetTrScenarioFile -appname"})
    EXPECT_EQ(catalogueOf(request), "none") << request;
  const kit::TypedValues reply = TheSession().Send("VlDispatcher", "GetAppsForFile \"/a b/x.dita\"").values;
  ASSERT_EQ(reply.Size(), 1U);
  EXPECT_EQ(reply.Strings(0), (Names{"DITA", "Two words"}));
  EXPECT_EQ(TheSession().Send("VlDispatcher", "GetAppsForFile \"/x.txt\"").values.Strings(0), Names());
}

TEST_F(BuiltInClients, MissingClientsAreToldToTheCaller) {
  EXPECT_NE(TheSession().Send("Unknown", "x").error.find("there is no client \"Unknown\""), std::string::npos);
  const std::string error = TheSession().Send("XSLT", "x").error;
  EXPECT_NE(error.find("/none/XSLT.so cannot be loaded: there is no such file"), std::string::npos) << error;
}

TEST(RequestBuilder, QuotesWhatTheGrammarCanCarryAndRefusesTheRest) {
  kit::RequestBuilder request("Name");
  request.Add("-a", {"plain", "with blank", "", "it's", "a \"b\""});
  request.AddIfGiven("-none", "");
  EXPECT_EQ(request.Text(), R"(Name -a "plain" "with blank" "" "it's" 'a "b"')");
  EXPECT_EQ(request.Problem(), "");
  request.Add("-b", {std::string(1023, 'x')});
  EXPECT_EQ(request.Problem(), "");
  request.Add("-c", {std::string(1024, 'x')});
  EXPECT_NE(request.Problem().find("-c, it is longer than 1023 bytes"), std::string::npos);
  kit::RequestBuilder other("Name");
  other.Add("-d", {"both \" and '"});
  EXPECT_NE(other.Problem().find("-d, it holds both kinds of quotes"), std::string::npos);
}

} // namespace
