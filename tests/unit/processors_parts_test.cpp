// What needs no Java: the log, diagnostic lines, requests for entities, the processor list.
#include "processors/entity_resolver.h"
#include "processors/processor_list.h"
#include "tests/unit/fake_processor.h"
#include "tests/unit/log_fixture.h"

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace {

using Strings = std::vector<std::string>;
using processors::VLXSLTEntityResolverC;

class ProcessorParts : public LogTest {
protected:
  void LoadProcessors(const std::vector<Strings> &rows) {
    host.stringTables[{V_SESSION, V_SP_XSLT_PROCESSORS}] = rows;
    processors::LoadProcessors(processor);
  }
  Strings TakeRequests() {
    Strings texts;
    for (const auto &[client, request] : std::exchange(host.requests, {})) {
      EXPECT_EQ(client, "XmlUtilities");
      texts.push_back(request);
    }
    return texts;
  }

  FakeProcessor processor;
};

TEST_F(ProcessorParts, EntitiesAreAskedForInTheseWords) {
  VLXSLTEntityResolverC &resolver = VLXSLTEntityResolverC::GetInstance();
  resolver.Start("/a b.xml");
  resolver.Start(nullptr);
  resolver.End();
  resolver.Terminate();
  (void)resolver.ResolveEntity("-//P//EN", "file:///base.xml", "a.dtd");
  (void)resolver.ResolveEntity(nullptr, nullptr, nullptr);
  EXPECT_EQ(
      TakeRequests(),
      (Strings{"EntityResolver start -basefile \"/a b.xml\"", "EntityResolver start -basefile \"\"",
               "EntityResolver end", "EntityResolver terminate",
               R"(EntityResolver resolveentity -publicid "-//P//EN" -baseuri "file:///base.xml" -systemid "a.dtd")",
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
