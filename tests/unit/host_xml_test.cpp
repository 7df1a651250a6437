// What the host reads of XML files that it did not choose: enough to know them, and never more than that.
#include "host/documents/component_walk.h"
#include "host/documents/xml_file.h"
#include "kit/text.h"
#include "tests/unit/folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace {

using host::ComponentSource;
using host::OutlineDepth;
using host::XmlOutline;
using Strings = std::vector<std::string>;

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

// Circles and diamonds end; depth, of maps, of books and of elements, is no reason to leave anything out.
TEST(Walks, EndWhateverTheMapsSay) {
  const test::Folder folder;
  constexpr int count = 300;
  Strings topics;
  for (int index = 0; index < count; ++index) {
    const std::string number = std::to_string(index);
    const std::string next = std::to_string((index + 1) % count);
    topics.push_back("t" + number + ".dita");
    folder.Write("m" + number + ".ditamap",
                 kit::FillPlaceholders("<map><mapref href='m%1.ditamap'/><mapref href='m0.ditamap'/>"
                                       "<topicref href='t%0.dita'/></map>",
                                       {number, next}));
    folder.Write(
        "b" + number + ".xml",
        kit::FillPlaceholders("<book><component href='b%1.xml'/><component href='t%0.dita'/></book>", {number, next}));
  }
  std::ranges::reverse(topics);
  for (const auto &[name, source] :
       {std::pair("m0.ditamap", ComponentSource::DitaMap), std::pair("b0.xml", ComponentSource::Book)}) {
    const host::ComponentList walked = host::ListComponents(folder.Path(name), source, {});
    EXPECT_EQ(walked.problems, Strings()) << name;
    ASSERT_EQ(walked.paths.size(), 2U * count - 1) << name;
    const Strings seen(walked.paths.begin() + count - 1, walked.paths.end());
    EXPECT_EQ(folder.Shorten(seen), topics) << name << ": those inside come first";
  }

  const auto nest = [](int depth) {
    std::string text = "<map>";
    for (int index = 0; index < depth; ++index)
      text += "<topicref keys='k" + std::to_string(index) + "' processing-role='resource-only'>";
    text += "<topicref href='d.dita' processing-role='normal'/><topicref keyref='k0' href='e.dita' "
            "processing-role='normal'/>";
    for (int index = 0; index < depth; ++index)
      text += "</topicref>";
    return text + "</map>";
  };
  const host::ComponentList deep =
      host::ListComponents(folder.Write("deep.ditamap", nest(100000)), ComponentSource::DitaMap, {});
  EXPECT_EQ(folder.Shorten(deep.paths), (Strings{"d.dita", "e.dita"}));
  EXPECT_EQ(deep.problems, Strings());

  // What is left out is said: with entities the parser's own limits stay.
  for (const std::string &text :
       {std::string("<map><topicref href='d.dita'>"), "<!DOCTYPE map [<!ENTITY e 'x'>]>" + nest(1000)})
    EXPECT_EQ(host::ListComponents(folder.Write("bad.ditamap", text), ComponentSource::DitaMap, {}).problems.size(), 1U)
        << text.substr(0, 50);
}

} // namespace
