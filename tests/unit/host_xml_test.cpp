// What the host reads of XML files that it did not choose: enough to know them, and never more than that.
#include "host/documents/component_walk.h"
#include "host/documents/xml_file.h"
#include "tests/unit/folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace {

using host::ComponentSource;
using host::OutlineDepth;
using host::XmlOutline;

std::string Utf16(const std::string &ascii) {
  std::string wide = "\xFF\xFE";
  for (const char letter : ascii)
    wide.append(1, letter).append(1, '\0');
  return wide;
}

TEST(Outlines, AreReadAsFarAsTheyMustBe) {
  const test::Folder folder;
  const std::string filler(300000, ' ');
  struct Row {
    std::string text;
    XmlOutline outline;
  };
  const std::vector<Row> rows = {
      {"<a/>", {"a", "", "", ""}},
      {"\xEF\xBB\xBF<?xml version='1.0'?><!-- c --><?pi x?>\n<a><!-- d -->text<b/><c/></a>", {"a", "", "", "b"}},
      {"<p:a xmlns:p='urn:p' xmlns='urn:d'><b/></p:a>", {"a", "urn:p", "", "b"}},
      {"<a xmlns='urn:d'/>", {"a", "urn:d", "", ""}},
      {"<!DOCTYPE a PUBLIC '-//P//EN' 'http://example.invalid/a.dtd'><a><b>", {"a", "", "-//P//EN", "b"}},
      {"<!DOCTYPE a SYSTEM '/dev/zero'><a/>", {"a", "", "", ""}},
      {"<!DOCTYPE a [<!ENTITY x SYSTEM 'file:///etc/passwd'>]><a><b/>&x;</a>", {"a", "", "", "b"}},
      {"<!--" + filler + "--><a>" + filler + "<b/>", {"a", "", "", "b"}},
      {"<?xml version='1.0' encoding='iso-8859-1'?><a\xE4/>", {"a\xC3\xA4", "", "", ""}},
      {Utf16("<a><b/></a>"), {"a", "", "", "b"}},
      {"<a><b/>&nothing; <c></b>", {"a", "", "", "b"}},
  };
  for (const Row &row : rows) {
    const std::string path = folder.Write("in.xml", row.text);
    const auto outline = host::ReadXmlOutline(path, OutlineDepth::FirstChild);
    ASSERT_TRUE(outline) << row.text.substr(0, 200);
    EXPECT_EQ(outline->root, row.outline.root);
    EXPECT_EQ(outline->rootNamespace, row.outline.rootNamespace);
    EXPECT_EQ(outline->publicId, row.outline.publicId);
    EXPECT_EQ(outline->firstChild, row.outline.firstChild) << row.text.substr(0, 200);
    const auto root = host::ReadXmlOutline(path);
    ASSERT_TRUE(root);
    EXPECT_EQ(root->root, row.outline.root);
  }
}

TEST(Outlines, AreMissingWhereThereIsNone) {
  const test::Folder folder;
  for (const std::string &text : {std::string(), std::string("plain text"), std::string("<"), std::string("<!-- open"),
                                  std::string("\0\0\0", 3), std::string("<?xml version='1.0' encoding='none-1'?>x")})
    EXPECT_FALSE(host::ReadXmlOutline(folder.Write("in.xml", text))) << text;
  ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
  for (const char *name : {"none", "pipe", "."})
    EXPECT_FALSE(host::ReadXmlOutline(folder.Path(name))) << name;
}

TEST(ComponentSources, AreKnownByWhatIsInThem) {
  const test::Folder folder;
  struct Row {
    const char *name, *text;
    ComponentSource source;
  };
  for (const Row &row : {
           Row{"a.xml", "<map/>", ComponentSource::DitaMap},
           Row{"b.xml", "<bookmap><title/></bookmap>", ComponentSource::DitaMap},
           Row{"c.xml", "<subjectScheme/>", ComponentSource::DitaMap},
           Row{"d.xml", "<x:map xmlns:x='urn:other'/>", ComponentSource::None},
           Row{"e.xml", "<!DOCTYPE own PUBLIC '-//ME//DTD DITA My Map//EN' ''><own/>", ComponentSource::DitaMap},
           Row{"f.xml", "<!DOCTYPE own PUBLIC '-//ME//DTD DITA Topic//EN' ''><own/>", ComponentSource::None},
           Row{"g.ditamap", "not XML", ComponentSource::DitaMap},
           Row{"h.BookMap", "", ComponentSource::DitaMap},
           Row{"i.xml", "<book>\n<component href='x'/></book>", ComponentSource::Book},
           Row{"j.xml", "<book><title/><component/></book>", ComponentSource::None},
           Row{"k.xml", "<book/>", ComponentSource::None},
           Row{"l.xml", "", ComponentSource::None},
       })
    EXPECT_EQ(host::RecogniseComponentSource(folder.Write(row.name, row.text)), row.source) << row.name;
}

// Deep nesting is an attack on the stack, not a document; circles and diamonds end.
TEST(Walks, EndWhateverTheMapsSay) {
  const test::Folder folder;
  constexpr int count = 400;
  for (int index = 0; index < count; ++index)
    folder.Write("m" + std::to_string(index) + ".ditamap", "<map><mapref href='m" +
                                                               std::to_string((index + 1) % count) +
                                                               ".ditamap'/><mapref href='m0.ditamap'/>"
                                                               "<topicref href='t" +
                                                               std::to_string(index) + ".dita'/></map>");
  const host::ComponentList walked = host::ListComponents(folder.Path("m0.ditamap"), ComponentSource::DitaMap, {});
  EXPECT_GT(walked.paths.size(), 200U);
  std::vector<std::string> sorted = walked.paths;
  std::ranges::sort(sorted);
  EXPECT_EQ(std::ranges::adjacent_find(sorted), sorted.end()) << "each file once";

  std::string deep = "<map>";
  for (int index = 0; index < 5000; ++index)
    deep += "<topicref href='d.dita'>";
  const host::ComponentList stopped =
      host::ListComponents(folder.Write("deep.ditamap", deep), ComponentSource::DitaMap, {});
  EXPECT_FALSE(stopped.problems.empty());
}

} // namespace
