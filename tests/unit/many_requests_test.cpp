// The real client in the real host, asked over and over: what crosses between them must all be given back. Under
// AddressSanitizer the leak check at the end has the last word; elsewhere the heap must stop growing.
#include "host/session.h"
#include "tests/unit/host_fixture.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <malloc.h>

#include <string>
#include <vector>

namespace {

constexpr const char *catalogueText =
    "<Transformations><Transformation><Name>T</Name><Input><XSLPath>s.xsl</XSLPath></Input>"
    "<Processor>None</Processor><Parameters><Parameter name='a' expression='1'/></Parameters>"
    "<Output><OutputLocation><Prompt/></OutputLocation><OpenOutput in=''/></Output>"
    "</Transformation></Transformations>";

TEST(ManyRequests, GiveBackWhatTheyTook) {
  const test::Folder folder;
  const std::string catalogue = folder.Write("Transformations.xml", catalogueText);
  const std::string input = folder.Write("a.xml", "<doc/>");
  const std::string map = folder.Write("m.ditamap", "<map><topicref href='a.dita'/><topicref href='b.dita'/></map>");
  host::Configuration configuration;
  configuration.installFolder = VLXSLT_SHARE "/";
  configuration.defaultCatalogue = catalogue;
  configuration.processors = {{"P", "p.jar", "the.Class"}};
  test::SilentFront front;
  host::Session session(configuration, {VLXSLT_CLIENTS, VLXSLT_SHARE "/"}, front);
  std::string problem;
  ASSERT_TRUE(session.OpenFile(map, host::OpenAs::ActiveDocument, problem)) << problem;

  const std::string file = " -trfile \"" + catalogue + "\"";
  const std::vector<std::string> requests = {
      "XSLTGetDitamapComponents",
      "XSLTGetTrScenario" + file,
      "XSLTGetTrScenario" + file + " -trname T",
      "XSLTGetTrScenarioFile -appname <Defaults>",
      "XSLTDeleteTrScenario" + file + " -trname Nothing",
      "XSLTRunTrScenario -file \"" + input + "\" -xslfilepath s.xsl",
      "XSLTRunTrScenario -currentfilewithchildren -trname T" + file,
      "XSLTRunTrScenario -file \"" + input + "\" -outputfilepath o -trname T" + file + " -sparam a b",
      "VlxsltListTransformations" + file,
      "VlxsltEditTransformation" + file + " -trname T -output nowhere",
      "VlxsltStylesheetParams -xslfilepath \"" + input + "\"",
      "XSLTChooseXSLDlg ",
      "XSLTChooseTranDlg ",
      "no such request",
  };
  const auto ask = [&](int rounds) {
    for (int round = 0; round < rounds; ++round)
      for (const std::string &request : requests)
        (void)session.Send("XSLT", request);
  };
  ask(10);
  const size_t before = mallinfo2().uordblks;
  ask(90);
  const size_t after = mallinfo2().uordblks;
  // The host itself keeps what was asked and shown, some hundred bytes a request.
  EXPECT_LT(after, before + (size_t{1} << 20)) << "grew by " << after - before;
}

// The library stays in memory; what it says after its session ended must not reach a session.
TEST(ManyRequests, OfAnEndedSessionAreNotHeard) {
  const host::Configuration configuration;
  test::SilentFront first;
  test::SilentFront second;
  const std::string broken = "VlxsltEditTransformation -trname T -trfile /none.xml";
  const auto serve = [&](test::SilentFront &front) {
    host::Session session(configuration, {VLXSLT_CLIENTS, VLXSLT_SHARE "/"}, front);
    EXPECT_EQ(session.Send("XSLT", broken).values.Integer(0), 0);
    EXPECT_FALSE(front.console.empty());
    front.console.clear();
  };
  serve(first);
  void *library = dlopen(VLXSLT_CLIENTS "/XSLT.so", RTLD_NOW | RTLD_NOLOAD);
  ASSERT_NE(library, nullptr);
  const auto notify = reinterpret_cast<decltype(&V_ClientNotify)>(dlsym(library, "V_ClientNotify"));
  ASSERT_NE(notify, nullptr);
  notify(V_NOTIFY_CALL_CLIENT, V_SESSION, broken.c_str(), 0);
  serve(second);
  notify(V_NOTIFY_CALL_CLIENT, V_SESSION, broken.c_str(), 0);
  EXPECT_TRUE(first.console.empty());
  EXPECT_TRUE(second.console.empty());
  dlclose(library);
}

} // namespace
