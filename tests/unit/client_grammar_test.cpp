// What the options of a run request say, before anything of it is validated or run.
#include "client/open_documents.h"
#include "client/run_request.h"
#include "kit/paths.h"
#include "tests/unit/client_fixture.h"
#include <algorithm>

#include <tuple>
#include <vector>

namespace {

using client::InputKind;
using client::RequestCheck;
using client::RunRequest;
using Strings = std::vector<std::string>;

class Grammar : public ClientParts {
protected:
  static RunRequest Parse(const std::string &options) {
    RunRequest request;
    EXPECT_EQ(client::ParseRunOptions(options, request), RequestCheck::Accepted) << options;
    return request;
  }
  void Open(V_ObjectT object, int32_t property, const std::string &fullName, const std::string &label = {}) {
    host.objects[{V_SESSION, property}] = object;
    host.strings[{object, V_OP_FULL_NAME}] = fullName;
    host.strings[{object, V_OP_LABEL}] = label;
  }
};

TEST_F(Grammar, EveryOptionFillsItsField) {
  const RunRequest all = Parse(R"(-DontPrintStartLog -dontprintendlog -USEPI -file "/a b.xml")"
                               R"( -outputfilepath '/o "1".xml' -appname App -trfile /t.xml -trname 'T 1')"
                               R"( -xslfilepath /s.xsl -processor P -sparam n "x y" -sparam m '')");
  EXPECT_FALSE(all.printStartLog);
  EXPECT_FALSE(all.printEndLog);
  EXPECT_TRUE(all.usePI);
  EXPECT_TRUE(all.RunsBareXsl());
  EXPECT_EQ(all.inputKind, InputKind::File);
  EXPECT_EQ(all.inputs, Strings{"/a b.xml"});
  EXPECT_EQ(all.outputs, Strings{"/o \"1\".xml"});
  EXPECT_EQ(std::tie(all.applicationName, all.transformationFile, all.transformationName, all.xslPath, all.processor),
            std::tuple("App", "/t.xml", "T 1", "/s.xsl", "P"));
  EXPECT_EQ(all.parameters, (Strings{"n", "x y", "m", ""}));

  const RunRequest nothing = Parse("");
  EXPECT_TRUE(nothing.printStartLog && nothing.printEndLog && !nothing.usePI && !nothing.RunsBareXsl());
  EXPECT_EQ(nothing.inputKind, InputKind::NotSpecified);
}

TEST_F(Grammar, TokensAreTakenInTheirOrder) {
  // The last of a scalar counts, inputs add up, and what is no option is passed over, one token at a time.
  const RunRequest request =
      Parse("-trname one what -ever -trname two -file /a -files /no -file /b -outputfilepath /x");
  EXPECT_EQ(request.transformationName, "two");
  EXPECT_EQ(request.inputs, (Strings{"/a", "/b"}));
  EXPECT_EQ(request.outputs, Strings{"/x"});
  // A value is a value, even one that looks like an option.
  EXPECT_EQ(Parse("-trname -usepi").transformationName, "-usepi");
  EXPECT_FALSE(Parse("-trname -usepi").usePI);
  // Where the request ends early.
  EXPECT_EQ(Parse("-sparam").parameters, (Strings{"", ""}));
  EXPECT_EQ(Parse("-sparam a").parameters, (Strings{"a", ""}));
  EXPECT_EQ(Parse("-trname T -trname").transformationName, "T");
  EXPECT_EQ(Parse("-file").inputs, Strings());
  EXPECT_EQ(Parse("-file").inputKind, InputKind::File);
  // An option of another length, or glued to its value, is none.
  EXPECT_EQ(Parse("-fil /a -file=/b -fileX /c").inputKind, InputKind::NotSpecified);
  EXPECT_EQ(Parse("-file\t/a").inputKind, InputKind::NotSpecified);
}

TEST_F(Grammar, OnlyAnOptionQuietsTheConsole) {
  EXPECT_TRUE(client::WantsConsole("-file -trname"));
  EXPECT_FALSE(client::WantsConsole("-trname x -DontUseVLConsole"));
  EXPECT_TRUE(client::WantsConsole("-trname -dontusevlconsole")) << "it is the name of a transformation here";
  EXPECT_TRUE(client::WantsLog("-file -dontreturnlog"));
  EXPECT_FALSE(client::WantsLog("-usepi -dontreturnlog"));
}

TEST_F(Grammar, InputsComeFromWhatTheHostHasOpen) {
  EXPECT_EQ(Parse("-currentfile").inputs, Strings());
  EXPECT_EQ(Parse("-currentfile").inputKind, InputKind::CurrentFile);
  Open(20, V_SP_ACTIVE_BOOK, "", "Unsaved book");
  host.components[20] = {"/one.xml", "", "/two.xml", "/one.xml"};
  EXPECT_EQ(Parse("-currentfile").inputs, Strings{"Unsaved book"});
  EXPECT_EQ(Parse("-currentfilewithchildren").inputs, (Strings{"Unsaved book", "/one.xml", "/two.xml", "/one.xml"}));
  Open(10, V_SP_ACTIVE_DOCUMENT, "/doc.xml", "label");
  host.components[10] = {"/other.xml"};
  EXPECT_EQ(Parse("-currentfile").inputs, Strings{"/doc.xml"});
  EXPECT_EQ(Parse("-currentfilewithchildren").inputs.front(), "Unsaved book") << "the book's components come first";
  host.objects[{V_SESSION, V_SP_ACTIVE_BOOK}] = 0;
  EXPECT_EQ(Parse("-currentfilewithchildren").inputs, (Strings{"/doc.xml", "/other.xml"}));
  // They add up with files, and the last option names the kind.
  const RunRequest mixed = Parse("-file /a -currentfile");
  EXPECT_EQ(mixed.inputs, (Strings{"/a", "/doc.xml"}));
  EXPECT_EQ(mixed.inputKind, InputKind::CurrentFile);
  EXPECT_EQ(Parse("-currentfile -file /a").inputKind, InputKind::File);
  // An object that the host does not know has neither name nor components.
  EXPECT_EQ(client::ComponentPaths(77), Strings());
  EXPECT_EQ(client::ComponentPaths(0), Strings());
}

TEST_F(Grammar, OpenFilesAreTheDocumentsOnScreen) {
  struct Entry {
    V_ObjectT object;
    int32_t type, shown;
    const char *name;
  };
  const Entry entries[] = {{11, V_TYPE_DOCUMENT, 1, "/a"},
                           {12, V_TYPE_BOOK, 1, "/b"},
                           {13, V_TYPE_DOCUMENT, 0, "/c"},
                           {14, V_TYPE_DOCUMENT, 1, ""},
                           {15, V_TYPE_DOCUMENT, 1, "/e"}};
  V_ObjectT before = V_SESSION;
  for (const Entry &entry : entries) {
    const int32_t next = before == V_SESSION ? int32_t{V_SP_FIRST_OPEN_DOCUMENT} : int32_t{V_OP_NEXT_OPEN_DOCUMENT};
    host.objects[{before, next}] = entry.object;
    host.ints[{entry.object, V_OP_TYPE}] = entry.type;
    host.ints[{entry.object, V_OP_SHOWN}] = entry.shown;
    host.strings[{entry.object, V_OP_FULL_NAME}] = entry.name;
    host.strings[{entry.object, V_OP_LABEL}] = "label";
    before = entry.object;
  }
  EXPECT_EQ(Parse("-allopenfiles").inputs, (Strings{"/a", "label", "/e"}));
  EXPECT_EQ(Parse("-allopenfiles").inputKind, InputKind::AllOpenFiles);
}

TEST_F(Grammar, FoldersAreListedWhereTheyAre) {
  const std::string a = Write("structure/in/a.xml");
  const std::string b = Write("structure/in/b.txt");
  for (const std::string &written : {"'" + Path("structure/in") + "'", std::string("$structdir/in"),
                                     std::string("'$STRUCTDIR\\in'"), kit::PathToUrl(Path("structure/in"))}) {
    const RunRequest request = Parse("-Folder " + written);
    Strings found = request.inputs;
    std::ranges::sort(found);
    EXPECT_EQ(found, (Strings{a, b})) << written;
    EXPECT_EQ(request.inputKind, InputKind::Folder);
  }
  const std::string below = Write("structure/in/deep/c.xml");
  EXPECT_EQ(Parse("-folder $structdir/in").inputs.size(), 2U);
  EXPECT_EQ(Parse("-FOLDERS $structdir/in").inputs.front(), below);

  RunRequest request;
  for (const std::string &given : {std::string("$structdir/none"), a, std::string()}) {
    EXPECT_EQ(client::ParseRunOptions("-file /x -folder '" + given + "' -usepi", request), RequestCheck::Refused);
    EXPECT_EQ(TakeLog(), "Folder " + given + " doesn't exist.\n");
    EXPECT_FALSE(request.usePI) << "nothing is read behind it";
  }
}

} // namespace
