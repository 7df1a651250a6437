// Entities that the host finds through XML catalogs.
#include "host/session.h"
#include "tests/unit/host_fixture.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <filesystem>

namespace {

using Names = std::vector<std::string>;

// A port that can be called and does not answer.
class Listener {
public:
  Listener() : descriptor(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto *const name = reinterpret_cast<sockaddr *>(&address);
    socklen_t size = sizeof(address);
    EXPECT_EQ(bind(descriptor, name, size), 0);
    EXPECT_EQ(listen(descriptor, 1), 0);
    EXPECT_EQ(getsockname(descriptor, name, &size), 0);
    port = ntohs(address.sin_port);
  }
  ~Listener() { close(descriptor); }
  Listener(const Listener &) = delete;
  Listener &operator=(const Listener &) = delete;

  [[nodiscard]] int Port() const { return port; }
  [[nodiscard]] bool WasCalled() const {
    pollfd waiting{descriptor, POLLIN, 0};
    return poll(&waiting, 1, 0) != 0;
  }

private:
  int descriptor;
  int port = 0;
};

class CatalogFiles : public test::HostTest {
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

class Catalogs : public CatalogFiles {
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

TEST_F(CatalogFiles, EndTheSearchInRingsAndHugeCatalogs) {
  folder.Write("a.dtd", "");
  const std::string self = "<delegateSystem systemIdStartString='http:' catalog='ring.xml'/><delegatePublic "
                           "publicIdStartString='-//' catalog='ring.xml'/><delegateURI uriStartString='urn:' "
                           "catalog='ring.xml'/><nextCatalog catalog='r/back.xml'/>";
  WriteCatalog("ring.xml", self + "<nextCatalog catalog='r/../ring.xml'/>");
  WriteCatalog("r/back.xml", "<nextCatalog catalog='../ring.xml'/><uri name='urn:a' uri='../a.dtd'/>");
  for (int level = 0; level < 40; ++level) {
    const std::string next = "<nextCatalog catalog='" + std::to_string(level + 1) + ".xml'/>";
    WriteCatalog("fan/" + std::to_string(level) + ".xml", next + next);
  }
  std::string entries;
  for (int entry = 0; entry < 110'000; ++entry)
    entries += "<uri name='u' uri='u'/>";
  WriteCatalog("huge.xml", entries);
  for (const char *file : {"ring.xml", "fan/0.xml", "huge.xml"})
    configuration.catalogs.push_back(folder.Path(file));
  EXPECT_EQ(Resolve("", "", "urn:unknown"), "");
  EXPECT_EQ(Resolve("-//X//EN", "", "http://x.example/x"), "");
  EXPECT_EQ(Resolve("", "", "urn:a"), "a.dtd");
  const std::string unused = ": catalog: it is not used: ";
  EXPECT_EQ(
      front.console,
      (Names{folder.Path("ring.xml") + ": catalog: it includes itself, maybe through another one",
             folder.Path("fan/0.xml") + unused + "the catalogs that it leads to refer to each other over and over",
             folder.Path("huge.xml") + unused + folder.Path("huge.xml") + " holds more than 100000 entries"}));
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

// libxml2 would follow the cycle until the stack is full, and a folder that links to itself gives it new names without
// end.
TEST_F(CatalogFiles, EndWhereTheyLeadBack) {
  WriteCatalog("a.xml", "<nextCatalog catalog='b.xml'/><delegateURI uriStartString='urn:' catalog='b.xml'/>");
  WriteCatalog("b.xml", "<nextCatalog catalog='loop/a.xml'/><uri name='urn:b' uri='b.xml'/>");
  std::filesystem::create_directory_symlink(".", folder.Path("loop"));
  configuration.catalogs = {folder.Path("a.xml")};
  EXPECT_EQ(Resolve("", "", "urn:none"), "");
  EXPECT_EQ(Resolve("", "", "urn:b"), "b.xml");
  EXPECT_EQ(front.console, Names{folder.Path("a.xml") + ": catalog: it includes itself, maybe through another one"});
}

TEST_F(CatalogFiles, DoNotComeFromTheNetwork) {
  const Listener listener;
  const std::string address = "http://127.0.0.1:" + std::to_string(listener.Port()) + "/c.xml";
  WriteCatalog("a.xml", "<nextCatalog catalog='" + address + "'/><uri name='urn:a' uri='a.xml'/>");
  configuration.catalogs = {folder.Path("a.xml")};
  EXPECT_EQ(Resolve("", "", "urn:none"), "");
  EXPECT_EQ(Resolve("", "", "urn:a"), "a.xml");
  EXPECT_FALSE(listener.WasCalled());
  EXPECT_EQ(front.console, Names{address + ": catalog: it is not read: catalogs are local files"});
}

TEST_F(CatalogFiles, WarnOnceOfABrokenCatalogAndUseTheOthers) {
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

} // namespace
