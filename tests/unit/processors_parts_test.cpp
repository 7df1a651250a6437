// What needs no Java: the log, diagnostic lines, requests for entities, the processor list.
#include "processors/entity_resolver.h"
#include "processors/processor_list.h"
#include "report/transformation_log.h"
#include "report/xslt_error_handler.h"
#include "tests/unit/fake_host.h"
#include "tests/unit/fake_processor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace {

using Strings = std::vector<std::string>;
using processors::VLXSLTEntityResolverC;
using report::XSLTErrorHandler;

class ProcessorParts : public testing::Test {
protected:
  ProcessorParts() { report::ResetLog(false); }
  ~ProcessorParts() override { EXPECT_EQ(host.LiveBlocks(), 0U); }

  void LoadProcessors(const std::vector<Strings> &rows) {
    host.stringTables[{V_SESSION, V_SP_XSLT_PROCESSORS}] = rows;
    processors::LoadProcessors(processor);
  }
  static std::string TakeLog() {
    std::string text = report::LogText();
    report::ResetLog(false);
    return text;
  }
  Strings TakeRequests() {
    Strings texts;
    for (const auto &[client, request] : std::exchange(host.requests, {})) {
      EXPECT_EQ(client, "XmlUtilities");
      texts.push_back(request);
    }
    return texts;
  }

  FakeHost host;
  FakeProcessor processor;
};

TEST_F(ProcessorParts, StartAndEndSectionsLeaveOutWhatIsNotGiven) {
  struct Row {
    std::string input, xsl, output, processor, text;
  };
  for (const Row &row : {
           Row{"/in.xml", "/s.xsl", "/out.xml", "Saxon",
               "\n\nXSL Transformation Log\nInput: /in.xml\nXSL:/s.xsl\nOutput:/out.xml\n\n\n"
               "XSL Processor Messages (Processor: Saxon)\n"},
           Row{"/in.xml", "", "", "",
               "\n\nXSL Transformation Log\nInput: /in.xml\n"
               "XSL: Using PI mentioned in Input File.\n\n\n"},
           Row{"", "/s.xsl", "", "X",
               "\n\nXSL Transformation Log\nXSL:/s.xsl\n\n\n"
               "XSL Processor Messages (Processor: X)\n"},
           Row{"/100%1 %0", "%2", "", "%0",
               "\n\nXSL Transformation Log\nInput: /100%1 %0\nXSL:%2\n\n\n"
               "XSL Processor Messages (Processor: %0)\n"},
       }) {
    report::WriteStartSection(row.input, row.xsl, row.output, row.processor);
    EXPECT_EQ(TakeLog(), row.text);
  }
  report::WriteEndSection(true);
  EXPECT_EQ(TakeLog(), "\n\nTransformation Successful.\r\n\n");
  report::WriteEndSection(false);
  EXPECT_EQ(TakeLog(), "\n\nTransformation Aborted.\r\n\n");
}

// The heading of the processor's messages comes from a buffer of 1023 characters, and is cut between two of them.
TEST_F(ProcessorParts, AVeryLongProcessorNameIsCutBetweenCharacters) {
  std::string name;
  for (int index = 0; index < 600; ++index)
    name += "ü";
  report::WriteStartSection("", "/s.xsl", "", name);
  const std::string log = TakeLog();
  const size_t heading = log.find("XSL Processor Messages");
  ASSERT_NE(heading, std::string::npos);
  const std::string line = log.substr(heading, log.size() - heading - 1);
  EXPECT_TRUE(line.size() == 1023 || line.size() == 1022) << line.size();
  EXPECT_TRUE(line.ends_with("ü"));
}

TEST_F(ProcessorParts, TheConsoleShowsTheLinesOfTheLogInTheirOrder) {
  report::ResetLog(true);
  EXPECT_EQ((host.ints[{V_SESSION, V_SP_LOG_ECHO}]), 1);
  EXPECT_TRUE(report::HostEcho());
  report::WriteStartSection("/in.xml", "/s.xsl", "", "P");
  report::AppendLine("said");
  report::AppendLine("");
  report::WriteEndSection(true);
  EXPECT_EQ(host.console,
            (Strings{"\n", "XSL Transformation Log", "Input: /in.xml", "XSL:/s.xsl", "\n",
                     "XSL Processor Messages (Processor: P)", "said", "\n", "Transformation Successful.\r\n"}));
  const std::string echoed = report::LogText();

  // The same text without an echo; a reset empties it, even one that changes nothing.
  host.console.clear();
  report::ResetLog(false);
  EXPECT_EQ(report::LogText(), "");
  EXPECT_FALSE(report::HostEcho());
  report::WriteStartSection("/in.xml", "/s.xsl", "", "P");
  report::AppendLine("said");
  report::WriteEndSection(true);
  EXPECT_EQ(report::LogText(), echoed);
  EXPECT_EQ(host.console, Strings());
  report::ResetLog(false);
  EXPECT_EQ(report::LogText(), "");
}

TEST_F(ProcessorParts, DiagnosticsNameFilesAsPeopleKnowThem) {
  host.netFiles = {"dctm://store/a.xml", "dctm://store/new.xml", "dctm://store/blank.xml"};
  host.netCache = {{"dctm://store/a.xml", "/cache/a.xml"}, {"dctm://store/blank.xml", ""}, {"/local.xml", "/wrong"}};
  const std::pair<const char *, std::string> files[] = {
      {"file:///a%20b/%C3%BC.xml", "/a b/ü.xml"},
      {"FILE:/x.xml", "/x.xml"},
      {"/plain%20path.xml", "/plain%20path.xml"},
      {"/local.xml", "/local.xml"},
      {"http://host/a%20b.xml", "http://host/a%20b.xml"},
      {"dctm://store/a.xml", "/cache/a.xml"},
      {"dctm://store/new.xml", "dctm://store/new.xml"},
      {"dctm://store/blank.xml", "dctm://store/blank.xml"},
      {"", ""},
      {nullptr, ""},
  };
  XSLTErrorHandler &handler = XSLTErrorHandler::GetInst();
  for (const auto &[systemId, shown] : files) {
    handler.ReportWarn("odd", "-//P//EN", systemId, 3, 7);
    EXPECT_EQ(TakeLog(), "Warning at file " + shown + ", line 3, char 7, Message: odd\n");
  }
  handler.ReportError("100%0 %3", nullptr, "/%1.xml", -1, 0);
  EXPECT_EQ(TakeLog(), "Error at file /%1.xml, line -1, char 0, Message: 100%0 %3\n");
  handler.ReportFatalError(nullptr, nullptr, "/a", 2147483647, -2147483647);
  EXPECT_EQ(TakeLog(), "Fatal Error at file /a, line 2147483647, char -2147483647, Message: \n");
  handler.ReportMessage("just text");
  handler.ReportMessage("");
  handler.ReportMessage(nullptr);
  EXPECT_EQ(TakeLog(), "just text\n");
}

TEST_F(ProcessorParts, EntitiesAreAskedForInTheseWords) {
  VLXSLTEntityResolverC &resolver = VLXSLTEntityResolverC::GetInstance();
  resolver.Start("/a b.xml");
  resolver.Start(nullptr);
  resolver.End();
  resolver.Terminate();
  (void)resolver.ResolveEntity("-//P//EN", "file:///base.xml", "a.dtd");
  (void)resolver.ResolveEntity(nullptr, nullptr, nullptr);
  EXPECT_EQ(TakeRequests(),
            (Strings{"EntityResolver start -basefile \"/a b.xml\"", "EntityResolver start -basefile \"\"",
                     "EntityResolver end", "EntityResolver terminate",
                     "EntityResolver resolveentity -publicid \"-//P//EN\" -baseuri \"file:///base.xml\" -systemid "
                     "\"a.dtd\"",
                     "EntityResolver resolveentity -publicid \"\" -baseuri \"\" -systemid \"\""}));
  const std::string longName(5000, 'x');
  (void)resolver.ResolveEntity(longName.c_str(), nullptr, "s");
  EXPECT_NE(TakeRequests()[0].find(longName + "\" -baseuri"), std::string::npos);
}

TEST_F(ProcessorParts, OnlyASingleStringAnswersForAnEntity) {
  const auto answer = [this](const std::function<void(kit::TypedValues &)> &fill) {
    host.clients["XmlUtilities"] = [fill](const std::string &) {
      kit::TypedValues reply;
      fill(reply);
      return reply;
    };
    const kit::HostString found = VLXSLTEntityResolverC::GetInstance().ResolveEntity("p", "b", "s");
    return found.Get() ? "<" + found.Text() + ">" : std::string("nothing");
  };
  EXPECT_EQ(answer([](kit::TypedValues &reply) { reply.AddString("/found.dtd"); }), "</found.dtd>");
  EXPECT_EQ(answer([](kit::TypedValues &) {}), "nothing");
  EXPECT_EQ(answer([](kit::TypedValues &reply) { reply.AddInteger(1); }), "nothing");
  EXPECT_EQ(answer([](kit::TypedValues &reply) { reply.AddStrings({"/found.dtd"}); }), "nothing");
  EXPECT_EQ(answer([](kit::TypedValues &reply) {
              reply.AddString("/one");
              reply.AddString("/two");
            }),
            "nothing");
  host.clients.clear();
  EXPECT_EQ(VLXSLTEntityResolverC::GetInstance().ResolveEntity("p", "b", "s").Get(), nullptr);
}

TEST_F(ProcessorParts, TheClassPathBeginsWithTheDefaultProcessor) {
  struct Row {
    std::vector<Strings> processors;
    std::string defaultName, classPath;
  };
  for (const Row &row : {
           Row{{}, "", ".;"},
           Row{{{"A", "a.jar", "x.A"}, {"B", "b.jar", "x.B"}}, "A", ".;a.jar;b.jar;"},
           Row{{{"A", "a.jar", "x.A"}, {"B", "a.jar", "x.B"}, {"C", "c.jar", ""}}, "A", ".;a.jar;c.jar;"},
           Row{{{"A", "a.jar"}, {"B", "b.jar"}, {"C", "b.jar"}}, "A", ".;a.jar;b.jar;b.jar;"},
           Row{{{"A"}, {"B", "b.jar", "x.B"}}, "A", ".;;b.jar;"},
           Row{{{"A", "a.jar;a2.jar", "x.A"}, {"B", "A.jar", "x.B"}}, "A", ".;a.jar;a2.jar;A.jar;"},
       }) {
    LoadProcessors(row.processors);
    EXPECT_EQ(processors::DefaultProcessorName(), row.defaultName);
    EXPECT_EQ(processor.classPath, row.classPath);
  }
}

TEST_F(ProcessorParts, NamesLeadToTheFirstClassAndTheLastLabel) {
  LoadProcessors(
      {{"Saxon", "s.jar", "x.First"}, {"Xalan", "x.jar", "x.Xalan"}, {"Saxon", "t.jar", "x.Second", "more"}});
  ASSERT_NE(processors::FindProcessorClass("Saxon"), nullptr);
  EXPECT_EQ(*processors::FindProcessorClass("Saxon"), "x.First");
  EXPECT_EQ(processors::Processors().at(2).position, 3);
  for (const char *unknown : {"saxon", "Saxo", "Saxon ", ""}) {
    EXPECT_EQ(processors::FindProcessorClass(unknown), nullptr) << unknown;
    EXPECT_FALSE(processors::CheckProcessor(unknown));
    EXPECT_EQ(TakeLog(),
              "XSLT processor " + std::string(unknown) + " not found. Please check your XSLT processor preferences.\n");
  }
  EXPECT_TRUE(processors::CheckProcessor("Xalan"));
  EXPECT_EQ(TakeLog(), "");

  struct Row {
    std::string current;
    Strings labels;
    int32_t selected;
  };
  const Strings known = {"XSLT Processors", "Saxon", "Xalan", "Saxon"};
  for (const Row &row : {Row{"", known, -1}, Row{"Xalan", known, 2}, Row{"Saxon", known, 3},
                         Row{"gone", {"XSLT Processors", "gone", "Saxon", "Xalan", "Saxon"}, 1},
                         Row{"xalan", {"XSLT Processors", "xalan", "Saxon", "Xalan", "Saxon"}, 1}}) {
    const processors::ProcessorChoice choice = processors::MakeProcessorChoice(row.current);
    EXPECT_EQ(choice.labels, row.labels) << row.current;
    EXPECT_EQ(choice.selected, row.selected) << row.current;
  }
}

// The preferences are a list in which other kinds of values may stand between the processors.
TEST_F(ProcessorParts, OtherPreferencesShiftNothing) {
  V_HostT table = host.Table();
  table.getTypedVals = [](void *, V_ObjectT, int32_t) {
    kit::TypedValues values;
    values.AddInteger(7);
    values.AddStrings({"A", "a.jar", "x.A"});
    values.AddString("B");
    values.AddStrings({"C", "c.jar", "x.C"});
    values.AddStrings({});
    return values.Release();
  };
  ASSERT_EQ(V_AttachHost(&table), 1);
  processors::LoadProcessors(processor);
  ASSERT_EQ(V_AttachHost(&host.Table()), 1);
  const auto &entries = processors::Processors();
  ASSERT_EQ(entries.size(), 3U);
  EXPECT_EQ(entries[1].name, "C");
  EXPECT_EQ(entries[1].className, "x.C");
  EXPECT_EQ(entries[1].position, 2);
  EXPECT_EQ(entries[2].name, "");
  // Without a processor in front there is no default; the one without a name then answers to it.
  EXPECT_EQ(processors::DefaultProcessorName(), "");
}

} // namespace
