// Run requests from the text to the files, with a host and processors that the test controls.
#include "client/dispatch.h"
#include "kit/paths.h"
#include "processors/processor_list.h"
#include "tests/unit/fake_host.h"
#include "tests/unit/fake_processor.h"
#include "tests/unit/folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr V_ObjectT document = 10;
constexpr V_ObjectT otherDocument = 11;
constexpr V_ObjectT book = 20;

struct Reply {
  int32_t status = 0;
  std::string log;
};

class ClientTest : public testing::Test {
protected:
  void SetUp() override {
    fs::create_directories(root + "/temp");
    fs::create_directories(root + "/out");
    fs::create_directories(root + "/install/vlinit/XSLT");
    fs::copy_file(VLXSLT_SCHEMA, root + "/install/vlinit/XSLT/Transformations.xsd");
    MakeHost();
    xsl = Write("style.xsl", "X");
    first = Write("a.xml", "one");
    second = Write("b.xml", "two");
  }

  void MakeHost() {
    host = std::make_unique<FakeHost>();
    host->strings[{V_SESSION, V_SP_TEMP_DIR}] = root + "/temp";
    host->strings[{V_SESSION, V_SP_INSTALL_DIR}] = root + "/install/";
    host->strings[{V_SESSION, V_SP_STRUCTURE_DIR}] = root;
    host->ints[{V_SESSION, V_SP_XSL_START_SECTION}] = 1;
    host->stringTables[{V_SESSION, V_SP_XSLT_PROCESSORS}] = {{"Saxon", "s.jar", "the.Class"}};
    host->clients["VlDispatcher"] = [this](const std::string &request) {
      kit::TypedValues reply;
      if (request.starts_with("GetAppsForFile"))
        reply.AddStrings({request.find("a.xml") != std::string::npos ? "DITA" : "Other"});
      else if (request.find("\"DITA\"") != std::string::npos)
        reply.AddString(root + "/catalogue.xml");
      return reply;
    };
    processor.classes = {"the.Class"};
    processors::LoadProcessors(processor);
  }

  std::string Write(const std::string &name, const std::string &text) const { return folder.Write(name, text); }

  // One transformation "T" with the given output element.
  void WriteCatalogue(const std::string &output, const std::string &open = "") {
    Write("catalogue.xml", "<Transformations><Transformation><Name>T</Name><Input><XSLPath>" + xsl +
                               "</XSLPath></Input><Processor>Saxon</Processor><Parameters>"
                               "<Parameter name='p' expression='1'/></Parameters><Output><OutputLocation>" +
                               output + "</OutputLocation><OpenOutput in='" + open +
                               "'/></Output></Transformation></Transformations>");
  }

  void Activate(V_ObjectT object, int32_t property, const std::string &path, bool isMap = false) {
    host->objects[{V_SESSION, property}] = object;
    host->strings[{object, V_OP_FULL_NAME}] = path;
    host->ints[{object, V_OP_TYPE}] = property == V_SP_ACTIVE_BOOK ? V_TYPE_BOOK : V_TYPE_DOCUMENT;
    host->ints[{object, V_OP_IS_DITA_MAP}] = isMap;
  }

  Reply Run(const std::string &options) {
    const kit::TypedValues values = client::DispatchRequest("XSLTRunTrScenario " + options, processor);
    EXPECT_EQ(values.Size(), 2U);
    return {values.Integer(0).value_or(999), values.String(1).value_or("no text")};
  }

  static std::string Quote(const std::string &text) { return "\"" + text + "\""; }
  [[nodiscard]] std::string WithXsl() const { return " -xslfilepath " + Quote(xsl); }
  [[nodiscard]] std::string FileTo(const std::string &input, const std::string &output) const {
    return " -file " + Quote(input) + " -outputfilepath " + Quote(root + "/out/" + output);
  }

  test::Folder folder;
  const std::string &root = folder.Root();
  std::string xsl, first, second;
  std::unique_ptr<FakeHost> host;
  FakeProcessor processor;
};

TEST_F(ClientTest, RefusesWhatCannotRunAndSaysWhy) {
  const std::string countMessage =
      "Invalid Command: Number of output files specified should exactly match with number of input files.\n";
  const std::string nothingMessage =
      "Invalid Command: You should either provide application name and transformation name or XSL file.\n";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", "Invalid Command.\n"},
      {"-unknown words here", "Invalid Command.\n"},
      {"-currentfile" + WithXsl(), "There is no active document for running XSL/Transformation.\n"},
      {"-currentfilewithchildren" + WithXsl(), "There is no active document for running XSL/Transformation.\n"},
      {"-allopenfiles" + WithXsl(), "There aren't any files to be transformed.\n"},
      {"-folder " + Quote(root + "/temp") + WithXsl(), "There aren't any files to be transformed.\n"},
      {"-folder /no/such/folder" + WithXsl(), "Folder /no/such/folder doesn't exist.\n"},
      {"-file " + Quote(first) + WithXsl(), countMessage},
      {FileTo(first, "a") + " -outputfilepath b" + WithXsl(), countMessage},
      {"-folder " + Quote(root + "/install/vlinit/XSLT") + " -outputfilepath b" + WithXsl(), countMessage},
      {FileTo("/no/such.xml", "a") + WithXsl(), "File doesn't exist /no/such.xml.\n"},
      {FileTo(first, "a"), nothingMessage},
      {FileTo(first, "a") + " -trname T", nothingMessage},
      {FileTo(first, "a") + " -appname DITA", nothingMessage},
      {FileTo(first, "a") + " -appname Nope -trname T",
       "Cannot find the transformation named \"T\" for application \"Nope\".\n"},
      {FileTo(first, "a") + " -usepi -appname DITA -processor saxon",
       "XSLT processor saxon not found. Please check your XSLT processor preferences.\n"},
      {FileTo(first, "a") + WithXsl() + " -sparam name ''", "Invalid stylesheet params list.\n"},
      {FileTo(first, "a") + WithXsl() + " -sparam", "Invalid stylesheet params list.\n"},
  };
  for (const auto &[options, message] : cases) {
    const Reply reply = Run(options);
    EXPECT_EQ(reply.status, -43) << options;
    EXPECT_EQ(reply.log, message) << options;
  }
  EXPECT_TRUE(processor.jobs.empty());
}

TEST_F(ClientTest, ChecksTheActiveDocumentBeforeTheBook) {
  const std::string bookPath = Write("book.xml", "<book/>");
  Activate(book, V_SP_ACTIVE_BOOK, bookPath);
  host->components[book] = {first, "", "/gone.xml", second};
  EXPECT_EQ(Run("-currentfile" + WithXsl()).log, "You cannot apply XSL/Transformation on a book file. \n");

  const Reply children = Run("-currentfilewithchildren -dontprintstartlog -dontprintendlog" + WithXsl());
  EXPECT_EQ(children.status, 0);
  EXPECT_EQ(children.log, "File doesn't exist /gone.xml.\n");
  EXPECT_EQ(processor.jobs.size(), 3U);

  Activate(document, V_SP_ACTIVE_DOCUMENT, first);
  EXPECT_EQ(Run("-currentfilewithchildren" + WithXsl()).log,
            "There is no active Book or DitaMap for running XSL/Transformation.\n");
  EXPECT_EQ(Run("-currentfile" + WithXsl()).status, 0);
  EXPECT_EQ(processor.jobs.back().input, first);

  host->ints[{document, V_OP_IS_DITA_MAP}] = 1;
  EXPECT_EQ(Run("-currentfilewithchildren" + WithXsl()).status, 0);
}

TEST_F(ClientTest, TakesOpenDocumentsThatAreShownAndSaved) {
  host->objects[{V_SESSION, V_SP_FIRST_OPEN_DOCUMENT}] = document;
  host->objects[{document, V_OP_NEXT_OPEN_DOCUMENT}] = otherDocument;
  host->objects[{otherDocument, V_OP_NEXT_OPEN_DOCUMENT}] = book;
  for (const auto &[object, path] : {std::pair{document, first}, {otherDocument, second}, {book, xsl}}) {
    host->strings[{object, V_OP_FULL_NAME}] = path;
    host->ints[{object, V_OP_TYPE}] = object == book ? V_TYPE_BOOK : V_TYPE_DOCUMENT;
    host->ints[{object, V_OP_SHOWN}] = 1;
  }
  EXPECT_EQ(Run("-AllOpenFiles" + WithXsl()).status, 0);
  EXPECT_EQ(processor.jobs.size(), 2U);

  host->ints[{otherDocument, V_OP_SHOWN}] = 0;
  host->ints[{document, V_OP_MODIFIED}] = 1;
  const Reply unsaved = Run("-allopenfiles" + WithXsl());
  EXPECT_EQ(unsaved.status, -43);
  EXPECT_EQ(unsaved.log, "Please save your document \"" + first + "\" before running XSL/Transformation.\n");
}

TEST_F(ClientTest, LogsARunOfABareStylesheetToTheByte) {
  processor.failing = {second};
  const Reply reply = Run(FileTo(first, "a.out") + FileTo(second, "b.out") + WithXsl() + " -sparam p 'a b' -sparam q");
  EXPECT_EQ(reply.status, 1);
  const auto section = [&](const std::string &input, const std::string &result) {
    return "\n\nXSL Transformation Log\nInput: " + input + "\nXSL:" + xsl +
           "\n\n\nXSL Processor Messages (Processor: Saxon)\n\n\n" + result + "\r\n\n";
  };
  EXPECT_EQ(reply.log, section(first, "Transformation Successful.") + section(second, "Transformation Aborted."));
  EXPECT_EQ(folder.Read("out/a.out"), "Xone");
  EXPECT_EQ(processor.jobs[0].parameters, (std::vector<std::string>{"p", "a b", "q", ""}));
  EXPECT_EQ(host->console.front(), "\n");
  EXPECT_EQ(std::ranges::count(host->console, "\n"), 6);
  EXPECT_EQ(host->usage, (std::vector<std::string>{"Scope_File", "XSLTRun_XSL"}));
}

TEST_F(ClientTest, KeepsQuietWhenAskedAndRestoresTheEcho) {
  host->ints[{V_SESSION, V_SP_LOG_ECHO}] = 1;
  const Reply reply = Run("-folder /nowhere" + WithXsl() + " -DONTUSEVLCONSOLE");
  EXPECT_EQ(reply.log, "Folder /nowhere doesn't exist.\n");
  EXPECT_TRUE(host->console.empty());
  EXPECT_EQ((host->ints[{V_SESSION, V_SP_LOG_ECHO}]), 1);
}

TEST_F(ClientTest, StartSectionsFollowTheHostsSettings) {
  const std::string options = FileTo(first, "a") + WithXsl() + " -dontprintendlog";
  host->ints[{V_SESSION, V_SP_XSL_START_SECTION}] = 0;
  EXPECT_EQ(Run(options).log, "");
  host->ints[{V_SESSION, V_SP_XSL_OBJECT_START_SECTION}] = 1;
  host->objects[{V_SESSION, V_SP_XSL_SECTION_OBJECT}] = document;
  EXPECT_EQ(Run(options).log, "");
  host->ints[{document, V_OP_XSL_START_SECTION}] = 1;
  host->strings[{document, V_OP_NAME}] = "Chapter";
  EXPECT_EQ(Run(options).log, "\n\nXSL Transformation Log\nInput: Chapter\nXSL:" + xsl + "\nOutput:" + first +
                                  "\n\n\nXSL Processor Messages (Processor: Saxon)\n");
}

TEST_F(ClientTest, FollowsEveryOutputPolicy) {
  WriteCatalogue("<SameLocationAsSource suffix='_new'/>");
  const std::string run = FileTo(first, "ignored") + " -trname T -trfile " + Quote(root + "/catalogue.xml");
  EXPECT_EQ(Run(run).status, 0);
  EXPECT_EQ(folder.Read("a_new.xml"), "Xone");

  WriteCatalogue("<DirPath>$structdir/out</DirPath>", "DefaultProgram");
  const Reply dirPath = Run(run);
  EXPECT_EQ(folder.Read("out/a.xml"), "Xone");
  EXPECT_NE(dirPath.log.find("\nOutput:" + root + "/out/a.xml\n"), std::string::npos) << dirPath.log;
  EXPECT_EQ(host->launched, (std::vector<std::string>{root + "/out/a.xml"}));

  WriteCatalogue("<Prompt/>", "Vellis");
  host->choices = {root + "/out/chosen.xml"};
  EXPECT_EQ(Run(run).status, 0);
  EXPECT_EQ(host->opened, (std::vector<std::string>{root + "/out/chosen.xml"}));
  EXPECT_EQ(host->asked.back(),
            (FakeHost::Asked{V_CHOOSE_SAVE, "Save Output File\nXML (*.xml)|*.xml|All Files (*.*)|*.*|"}));
  const Reply dismissed = Run(run);
  EXPECT_EQ(dismissed.status, 1);
  EXPECT_EQ(dismissed.log, "");

  WriteCatalogue("<SameLocationAsSource/>");
  EXPECT_EQ(Run(run).status, 0);
  EXPECT_EQ(test::ReadAll(first), "Xone");
  EXPECT_EQ(folder.Names("temp"), std::vector<std::string>());
  EXPECT_EQ(processor.jobs.back().parameters, (std::vector<std::string>{"p", "1"}));
}

TEST_F(ClientTest, TemporaryOutputsAreDeletedUnlessStillNeeded) {
  const std::string run = FileTo(first, "ignored") + " -trname T -trfile " + Quote(root + "/catalogue.xml");
  Write("temp/a-out.xml", "taken");
  WriteCatalogue("<DoNotSave/>", "Vellis");
  EXPECT_EQ(Run(run).status, 0);
  EXPECT_EQ(host->opened, (std::vector<std::string>{root + "/temp/a-out0.xml"}));
  EXPECT_EQ(folder.Names("temp"), (std::vector<std::string>{"a-out.xml"}));

  host->opensDocuments = false;
  EXPECT_EQ(Run(run).status, 0);
  EXPECT_EQ(folder.Names("temp"), (std::vector<std::string>{"a-out.xml", "a-out0.xml"}));

  WriteCatalogue("<DoNotSave/>", "DefaultProgram");
  EXPECT_EQ(Run(run).status, 0);
  EXPECT_EQ(folder.Names("temp"), (std::vector<std::string>{"a-out.xml", "a-out0.xml", "a-out1.xml"}));
}

TEST_F(ClientTest, AsksBeforeItOverwritesAndKeepsReadOnlyFiles) {
  Write("out/a", "old");
  const std::string run = FileTo(first, "a") + WithXsl() + " -dontprintstartlog -dontprintendlog";
  host->answers = {V_ANSWER_DECLINE};
  const Reply declined = Run(run);
  EXPECT_EQ(declined.status, 1);
  EXPECT_EQ(declined.log, "");
  EXPECT_EQ(host->asked.back(),
            (FakeHost::Asked{V_ALERT_OK_CANCEL, "OK to overwrite existing file " + root + "/out/a?"}));
  EXPECT_EQ(folder.Read("out/a"), "old");

  fs::permissions(root + "/out/a", fs::perms::owner_read);
  EXPECT_EQ(Run(run).log,
            "Cannot overwrite existing file: " + root + "/out/a. Make sure the file is not read-only. \n");
  fs::permissions(root + "/out/a", fs::perms::owner_all);
  EXPECT_EQ(Run(run).status, 0);
  EXPECT_EQ(folder.Read("out/a"), "Xone");

  EXPECT_EQ(Run(FileTo(first, "none/a") + WithXsl()).log,
            "Cannot save the file at following location: " + root + "/out/none. Make sure folder exist.\n");
  fs::permissions(root + "/out", fs::perms::owner_read | fs::perms::owner_exec);
  EXPECT_EQ(Run(FileTo(first, "b") + WithXsl()).log,
            "Cannot save the file at following location: " + root + "/out. Make sure you have write permissions.\n");
  fs::permissions(root + "/out", fs::perms::owner_all);
}

TEST_F(ClientTest, FiltersByApplicationAndStopsOnCancel) {
  WriteCatalogue("<DirPath>$STRUCTDIR/out</DirPath>");
  const std::string both = FileTo(second, "x") + FileTo(first, "y") + " -trname T -appname ";
  EXPECT_EQ(Run(both + "DITA").status, 0);
  EXPECT_EQ(folder.Names("out"), (std::vector<std::string>{"a.xml"}));
  EXPECT_EQ(Run(FileTo(second, "x") + " -trname T -appname DITA").status, 1);

  int inputsLeft = 1;
  host->isCancelled = [&] { return inputsLeft-- <= 0; };
  const Reply cancelled = Run(FileTo(first, "c1") + FileTo(second, "c2") + WithXsl());
  EXPECT_EQ(cancelled.status, 0);
  EXPECT_EQ(folder.Names("out"), (std::vector<std::string>{"a.xml", "c1"}));
}

TEST_F(ClientTest, OtherRequests) {
  EXPECT_EQ(client::DispatchRequest("XSLTRunTrScenario", processor).Size(), 0U);
  EXPECT_EQ(client::DispatchRequest("", processor).Size(), 0U);
  EXPECT_EQ(client::DispatchRequest("xsltgettrscenariofile -other x", processor).Size(), 0U);
  EXPECT_EQ(client::DispatchRequest("XSLTGetTrScenarioFile -appname DITA", processor).String(0),
            root + "/catalogue.xml");
  EXPECT_EQ(host->requests.back().second, "XSLTGetTrScenarioFile  -appname \"DITA\"");

  WriteCatalogue("<Prompt/>");
  const std::string file = " -trfile " + Quote(root + "/catalogue.xml");
  EXPECT_EQ(client::DispatchRequest("XSLTGetTrScenario" + file + " -TRNAME T", processor).Size(), 1U);
  EXPECT_EQ(client::DispatchRequest("XSLTGetTrScenario" + file + " -trname t", processor).Size(), 0U);
  EXPECT_EQ(client::DispatchRequest("XSLTGetTrScenario -trname T", processor).Size(), 0U);
  EXPECT_EQ(client::DispatchRequest("XSLTDeleteTrScenario" + file, processor).Size(), 0U);
  EXPECT_EQ(client::DispatchRequest("XSLTDeleteTrScenario" + file + " -trname T", processor).Integer(0), 1);
  EXPECT_EQ(client::DispatchRequest("XSLTGetTrScenario" + file, processor).Size(), 0U);

  EXPECT_EQ(client::DispatchRequest("XSLTGetDitamapComponents", processor).Size(), 0U);
  Activate(document, V_SP_ACTIVE_DOCUMENT, first, true);
  Activate(book, V_SP_ACTIVE_BOOK, xsl);
  host->components[document] = {second};
  EXPECT_EQ(client::DispatchRequest("XSLTGetDitamapComponents -file 0", processor).Strings(0),
            (std::vector<std::string>{xsl}));
  EXPECT_EQ(client::DispatchRequest("XSLTGetDitamapComponents -file 10", processor).Strings(0),
            (std::vector<std::string>{first, second}));
}

// Whatever host call fails, the input is the old or the new one, nothing is left behind and no memory is lost.
TEST_F(ClientTest, AnyFailingHostCallLosesNothing) {
  WriteCatalogue("<SameLocationAsSource/>");
  const std::string run = FileTo(first, "x") + " -trname T -trfile " + Quote(root + "/catalogue.xml");
  size_t failures = 0;
  for (bool again = true; again;) {
    MakeHost();
    Write("a.xml", "one");
    host->FailCall(++failures);
    (void)client::DispatchRequest("XSLTRunTrScenario " + run, processor);
    again = host->HasFailed();
    EXPECT_EQ(host->LiveBlocks(), 0U) << failures;
    const std::string text = test::ReadAll(first);
    EXPECT_TRUE(text == "one" || text == "Xone") << failures << ": " << text;
    EXPECT_EQ(folder.Names("temp"), std::vector<std::string>()) << failures;
  }
  EXPECT_GT(failures, 10U);
}

} // namespace
