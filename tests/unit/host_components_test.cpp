// Books and DITA maps as a client sees them: through the table's walk over an open document.
#include "host/session.h"
#include "tests/unit/host_fixture.h"

#include <gtest/gtest.h>

namespace {

using Names = std::vector<std::string>;

class Components : public test::HostTest {
protected:
  Components() { Open(); }

  // The walk over a file that is opened as the active book.
  Names Walk(const std::string &path, int32_t options = 0) {
    std::string error;
    EXPECT_TRUE(session->OpenFile(path, host::OpenAs::ActiveBook, error)) << error;
    V_WalkT *walk = V_ApiStartWalk(V_ApiGetObject(V_SESSION, V_SP_ACTIVE_BOOK), options);
    Names paths;
    for (char *component = nullptr; V_ApiNextComponent(walk, &component) == 1;)
      paths.push_back(kit::HostString::Adopt(component).Text());
    V_ApiEndWalk(walk);
    return folder.Shorten(paths);
  }
};

TEST_F(Components, OfAMapComeInDocumentOrderEachOnce) {
  const std::string map = folder.Write("book.ditamap", R"(<bookmap>
    <title><xref href="not-a-component.dita"/></title>
    <bookmeta><data href="neither.dita"/></bookmeta>
    <frontmatter><preface href="preface.dita"/></frontmatter>
    <chapter href="a%20b.dita#topic/para"><topicmeta><linktext><xref href="no.dita"/></linktext></topicmeta>
      <topicref href="sub/./c.xml"/>
      <topicgroup><topicref href="a%20b.dita"/><topicref href="missing.dita"/></topicgroup>
      <topichead navtitle="x"><topicref href="#local"/></topichead>
    </chapter>
    <part><chapter href="sub/nested.ditamap" format="ditamap"/></part>
    <mapref href="sub/nested.ditamap"/>
    <appendix href="last.dita"/>
    <reltable><relrow><relcell><topicref href="related.dita"/></relcell></relrow></reltable>
  </bookmap>)");
  folder.Write("sub/nested.ditamap", R"(<map><topicref href="d.dita"/><topicref href="../book.ditamap"/>
    <mapref href="deeper.ditamap"/></map>)");
  folder.Write("sub/deeper.ditamap", R"(<map><mapref href="nested.ditamap"/><topicref href="e.dita"/></map>)");
  EXPECT_EQ(Walk(map), (Names{"preface.dita", "a b.dita", "sub/c.xml", "missing.dita", "sub/nested.ditamap",
                              "sub/d.dita", "sub/deeper.ditamap", "sub/e.dita", "last.dita", "related.dita"}));
  EXPECT_EQ(front.console, Names());
}

TEST_F(Components, LeaveOutWhatIsExternalOrForReferenceOnly) {
  const std::string map = folder.Write("m.xml", R"(<map>
    <topicref href="http://example.org/x.dita" scope="external"/>
    <topicref href="https://example.org/unmarked.html"/>
    <topicref href="peer.dita" scope="peer"><topicref href="below-peer.dita"/>
      <topicref href="local-again.dita" scope="local"/></topicref>
    <topicref href="page.html"/><topicref href="manual" format="pdf"/>
    <topicref href="resource.dita" processing-role="resource-only"><topicref href="below-resource.dita"/>
      <topicref href="normal-again.dita" processing-role="normal"/></topicref>
    <keydef keys="k" href="key.dita"/>
    <mapref href="resources.ditamap" processing-role="resource-only"/>
    <topicref href="resource.dita"/>
  </map>)");
  folder.Write("resources.ditamap", "<map><topicref href='in-resources.dita'/></map>");
  EXPECT_EQ(Walk(map), (Names{"local-again.dita", "normal-again.dita", "resource.dita"}));
  EXPECT_EQ(Walk(map, V_WALK_RESOURCE_ONLY),
            (Names{"local-again.dita", "resource.dita", "below-resource.dita", "normal-again.dita", "key.dita",
                   "resources.ditamap", "in-resources.dita"}));
  EXPECT_EQ(Walk(map, V_WALK_EXTERNAL),
            (Names{"http://example.org/x.dita", "https://example.org/unmarked.html", "peer.dita", "below-peer.dita",
                   "local-again.dita", "page.html", "manual", "normal-again.dita", "resource.dita"}));
}

TEST_F(Components, AreFoundThroughKeys) {
  const std::string map = folder.Write("m.ditamap", R"(<map>
    <topicref keyref="first"/><topicref keyref="alias"/><topicref keyref="unknown" href="fallback.dita"/>
    <topicref keyref="site"/><topicref keyref="round"/><topicref keyref="inner"/>
    <mapref href="keys.ditamap" processing-role="resource-only"/>
    <keydef keys="twice" href="outer.dita"/><topicref keyref="twice"/>
  </map>)");
  folder.Write("keys.ditamap", R"(<map>
    <keydef keys="first other" href="sub/first.dita"/><keydef keys="alias" keyref="second"/>
    <keydef keys="second" href="second.dita"/><keydef keys="twice" href="never.dita"/>
    <keydef keys="site" href="http://example.org/" scope="external" format="html"/>
    <keydef keys="round" keyref="about"/><keydef keys="about" keyref="round"/>
    <keydef keys="inner" href="inner.ditamap" format="ditamap"/></map>)");
  folder.Write("inner.ditamap", "<map><topicref href='inner.dita'/></map>");
  EXPECT_EQ(Walk(map),
            (Names{"sub/first.dita", "second.dita", "fallback.dita", "inner.ditamap", "inner.dita", "outer.dita"}));
}

TEST_F(Components, OfKeysInARingLeadNowhere) {
  constexpr int count = 5000;
  std::string keys;
  for (int key = 0; key < count; ++key)
    keys += "<keydef keys='k" + std::to_string(key) + "' keyref='k" + std::to_string((key + 1) % count) +
            "'/><topicref keyref='k" + std::to_string(key) + "'/>";
  folder.Write("t.dita", "<topic/>");
  const std::string map = folder.Write(
      "ring.ditamap", "<map>" + keys + "<keydef keys='in' keyref='out'/><keydef keys='out' href='t.dita'/>" +
                          "<topicref keyref='in'/></map>");
  EXPECT_EQ(Walk(map), Names{"t.dita"});
}

TEST_F(Components, OfABookAreItsFilesWithThoseOfMapsAndBooksInIt) {
  folder.Write("map.ditamap", "<map><topicref href='t.dita'/></map>");
  folder.Write("inner.xml", "<book><component href='chapter.xml'/><component href='outer.xml'/></book>");
  const std::string book = folder.Write("outer.xml", R"(<book><component href="intro.xml"/><component/>
    <component href="map.ditamap"/><component href="inner.xml"/><component href="a%23b.xml"/></book>)");
  EXPECT_EQ(Walk(book), (Names{"intro.xml", "map.ditamap", "t.dita", "inner.xml", "chapter.xml", "a#b.xml"}));
  EXPECT_EQ(Walk(folder.Write("empty.ditamap", "")), Names());
  EXPECT_EQ(front.console.size(), 1U);
}

TEST_F(Components, DocumentsTellWhatTheyAre) {
  std::string error;
  ASSERT_TRUE(session->OpenFile(folder.Write("t.dita", "<topic/>"), host::OpenAs::ActiveDocument, error));
  ASSERT_TRUE(session->OpenFile(folder.Write("m.xml", "<!DOCTYPE x PUBLIC '-//OASIS//DTD DITA Map//EN' 'map.dtd'><x/>"),
                                host::OpenAs::ModifiedDocument, error));
  ASSERT_TRUE(session->OpenFile(folder.Write("b.xml", "<book><component/></book>"), host::OpenAs::Document, error));
  struct Expected {
    int32_t type;
    int32_t isMap;
    int32_t isModified;
    const char *name;
  };
  const Expected expected[] = {
      {V_TYPE_DOCUMENT, 0, 0, "t.dita"}, {V_TYPE_DOCUMENT, 1, 1, "m.xml"}, {V_TYPE_BOOK, 0, 0, "b.xml"}};
  V_ObjectT object = V_ApiGetObject(V_SESSION, V_SP_FIRST_OPEN_DOCUMENT);
  EXPECT_EQ(object, V_ApiGetObject(V_SESSION, V_SP_ACTIVE_DOCUMENT));
  for (const Expected &each : expected) {
    EXPECT_EQ(V_ApiGetInt(object, V_OP_TYPE), each.type) << each.name;
    EXPECT_EQ(V_ApiGetInt(object, V_OP_IS_DITA_MAP), each.isMap) << each.name;
    EXPECT_EQ(V_ApiGetInt(object, V_OP_MODIFIED), each.isModified) << each.name;
    EXPECT_EQ(V_ApiGetInt(object, V_OP_SHOWN), 1);
    EXPECT_EQ(kit::GetString(object, V_OP_FULL_NAME), folder.Path(each.name));
    object = V_ApiGetObject(object, V_OP_NEXT_OPEN_DOCUMENT);
  }
  EXPECT_EQ(object, 0U);

  // An output that is opened under another name goes; a copy of it stays.
  const std::string output = folder.Write("t-out.xml", "<html/>");
  const V_ObjectT opened = V_ApiOpenDocument(output.c_str(), "t.html");
  ASSERT_EQ(std::remove(output.c_str()), 0);
  EXPECT_EQ(kit::GetString(opened, V_OP_NAME), "t.html");
  const std::string copy = kit::GetString(opened, V_OP_FULL_NAME);
  EXPECT_EQ(test::ReadAll(copy), "<html/>");
  EXPECT_EQ(V_ApiOpenDocument(copy.c_str(), nullptr), opened);
  EXPECT_EQ(session->Record().console.size(), 1U) << "one that is no copy";
  EXPECT_EQ(V_ApiOpenDocument(folder.Path("none").c_str(), nullptr), 0U);
}

} // namespace
