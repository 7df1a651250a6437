// The transformation log and the events that a host gets: two renderings of what happens during a run.
#include "report/run_event.h"
#include "report/xslt_error_handler.h"
#include "tests/unit/log_fixture.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using Strings = std::vector<std::string>;
using report::JobStatus;
using report::XSLTErrorHandler;

class Report : public LogTest {
protected:
  static void Begin(const report::StartSection &section) {
    report::Report(report::JobBegins{0, "/in.xml", "/s.xsl", "P", "", section});
  }
  static void End(JobStatus status) { report::Report(report::JobEnds{status, true}); }
};

// The heading of the processor's messages comes from a buffer of 1023 characters, and is cut between two of them.
TEST_F(Report, AVeryLongProcessorNameIsCutBetweenCharacters) {
  std::string name;
  for (int index = 0; index < 600; ++index)
    name += "ü";
  Begin({"", "/s.xsl", "", name});
  const std::string log = TakeLog();
  const size_t heading = log.find("XSL Processor Messages");
  ASSERT_NE(heading, std::string::npos);
  const std::string line = log.substr(heading, log.size() - heading - 1);
  EXPECT_TRUE(line.size() == 1023 || line.size() == 1022) << line.size();
  EXPECT_TRUE(line.ends_with("ü"));
}

TEST_F(Report, DiagnosticsNameFilesAsPeopleKnowThem) {
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

TEST_F(Report, TheHostHearsOfEverythingBeforeTheConsoleShowsIt) {
  report::ResetLog(true);
  report::ReportForJob(1, {report::Severity::Error, "save it first"});
  report::Report(report::RunBegins{2});
  report::Report(report::JobBegins{0, "/in.xml", "", "Saxon", "/out.xml"});
  report::Report(report::Diagnostic{report::Severity::Warning, "odd", report::Place{"/s.xsl", 3, 7}, "XTDE0030"});
  report::Report(report::Message{"Input: /etc/passwd\nTransformation Successful."});
  report::Report(report::FileRead{"/s.xsl"});
  report::Report(report::OutputWritten{"/out.xml", report::OutputKind::Principal});
  report::Report(report::JobEnds{JobStatus::Done, true});
  report::Report(report::JobBegins{1, "/b.xml", "/s.xsl", "Saxon"});
  report::Report(report::JobEnds{JobStatus::Refused});
  report::Report(report::RunEnds{});
  EXPECT_EQ(host.runEvents, (Strings{
                                "diagnostic of 1: severity 2 at - -1:-1 [-] save it first",
                                "run of 2",
                                "job 0: /in.xml with - by Saxon to /out.xml",
                                "diagnostic of 0: severity 1 at /s.xsl 3:7 [XTDE0030] odd",
                                "message of 0: Input: /etc/passwd\nTransformation Successful.",
                                "read for 0: /s.xsl",
                                "output of 0: /out.xml kind 1",
                                "job 0 ends: 0",
                                "job 1: /b.xml with /s.xsl by Saxon to -",
                                "job 1 ends: 2",
                                "run ends",
                            }));
  EXPECT_EQ(host.consoleAtEvent, (std::vector<size_t>{0, 1, 1, 1, 2, 3, 3, 3, 5, 5, 5}))
      << "lines on the console when each event came";
}

// A host whose table ends before the events works as before.
TEST_F(Report, AnOlderHostHearsNothing) {
  V_HostT older = host.Table();
  older.size = offsetof(V_HostT, reportRunEvent);
  ASSERT_EQ(V_AttachHost(&older), 1);
  report::Report(report::RunBegins{1});
  Begin({"/in.xml", "/s.xsl", "", "P"});
  End(JobStatus::Done);
  EXPECT_TRUE(host.runEvents.empty());
  EXPECT_NE(TakeLog().find("Transformation Successful.\r\n"), std::string::npos);
  ASSERT_EQ(V_AttachHost(&host.Table()), 1);
}

} // namespace
