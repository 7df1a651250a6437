// What the host writes down about a run: events in, lines and SARIF out, and back again.
#include "host/record/read_run_record.h"
#include "host/record/run_record_file.h"
#include "host/record/run_recorder.h"
#include "host/record/sarif_file.h"
#include "tests/unit/folder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <functional>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

using host::RunEvent;
using Json = nlohmann::ordered_json;
using Strings = std::vector<std::string>;

RunEvent Begins(int32_t job, const std::string &path, const std::string &processor) {
  return {.kind = V_JOB_BEGINS, .job = job, .path = path, .processor = processor};
}
RunEvent Ends(int32_t job, int32_t status, const std::string &path = {}) {
  return {.kind = V_JOB_ENDS, .job = job, .status = status, .path = path};
}
RunEvent Output(int32_t job, int32_t kind, const std::string &path) {
  return {.kind = V_RUN_OUTPUT, .job = job, .outputKind = kind, .path = path};
}
RunEvent Diagnostic(int32_t job, int32_t severity, const std::string &text, const std::string &path = {},
                    int32_t line = -1, int32_t column = -1, const std::string &code = {}) {
  return {.kind = V_RUN_DIAGNOSTIC,
          .job = job,
          .severity = severity,
          .line = line,
          .column = column,
          .path = path,
          .code = code,
          .text = text};
}

// A run as a client reports it, of five jobs that end in five ways; a sixth is never begun.
std::vector<RunEvent> MakeRun() {
  RunEvent first = Begins(0, "/p/a b.xml", "Saxon");
  first.stylesheet = "/p/s.xsl";
  return {
      Diagnostic(3, V_SEVERITY_ERROR, "no file"),
      Diagnostic(-1, V_SEVERITY_WARNING, "of no job", "", 0),
      {.kind = V_RUN_BEGINS, .count = 6},
      first,
      Diagnostic(0, V_SEVERITY_WARNING, "a \"warning\"\nof two lines", "/p/s.xsl", 3, 7),
      {.kind = V_RUN_MESSAGE, .job = 0, .text = "Input: \r\n{\"type\":\"end\"}"},
      {.kind = V_RUN_FILE_READ, .job = 0, .path = "/p/i.xsl"},
      Output(0, V_OUTPUT_PRINCIPAL, "/p/a.html"),
      Output(0, V_OUTPUT_SECONDARY, "/p/toc.html"),
      Ends(0, V_JOB_DONE),
      Begins(1, "/p/\xff.xml", "Xalan"),
      Diagnostic(1, V_SEVERITY_FATAL, "b\xff", "file:///p/%C3%BC.xml", 12, -1, "XTDE0030"),
      Ends(1, V_JOB_FAILED),
      Begins(2, "/p/c.xml", "Saxon"),
      Output(2, V_OUTPUT_OPENED, "/k/c.html"),
      Output(2, V_OUTPUT_LAUNCHED, "/k/d.html"),
      Ends(2, V_JOB_REFUSED),
      Begins(3, "/p/d.xml", "Saxon"),
      Ends(3, V_JOB_MISSING),
      Ends(4, V_JOB_LEFT_OUT, "/p/e.xml"),
      {.kind = V_RUN_ENDS},
  };
}

constexpr const char *request = R"(XSLTRunTrScenario -usepi -file "/p/a b.xml" -outputfilepath "/p/a.html")";

class RunRecords : public testing::Test {
protected:
  // Everything but the files' own faults.
  void Play(const std::vector<RunEvent> &events, int32_t expectedCount = 6) {
    const auto note = [this](const std::string &error) { failures.push_back(error); };
    host::RunRecordFile record(folder.Path("r.jsonl"), request, expectedCount, note);
    host::SarifFile sarif(folder.Path("r.sarif"), "1.2", note);
    beginnings = {record.Error(), sarif.Error()};
    host::RunRecorder recorder({&record, &sarif});
    for (const RunEvent &event : events)
      recorder.OnRunEvent(event);
    recorder.Finish();
    tally = recorder.Tally();
    sarif.End(1);
    record.End(tally, 1);
  }

  // The lines, times replaced.
  [[nodiscard]] Strings Lines() const {
    Strings lines;
    std::istringstream text(folder.Read("r.jsonl"));
    for (std::string line; std::getline(text, line);) {
      Json object = Json::parse(line);
      if (object.contains("started"))
        object["started"] = std::string(object["started"]).size() == 20 ? "T" : "?";
      if (object.contains("milliseconds"))
        object["milliseconds"] = object["milliseconds"] >= 0 ? 0 : -1;
      lines.push_back(object.dump());
    }
    return lines;
  }

  test::Folder folder;
  Strings failures;
  Strings beginnings;
  host::RunTally tally;
};

TEST_F(RunRecords, SayWhatTheRunDid) {
  Play(MakeRun());
  EXPECT_EQ(failures, Strings());
  // With what cannot be written as UTF-8.
  const std::string failed =
      "{\"type\":\"job\",\"job\":1,\"input\":\"/p/\uFFFD.xml\",\"stylesheet\":null,\"processor\":\"Xalan\",\"status\":"
      "\"failed\",\"milliseconds\":0,\"outputs\":[],\"diagnostics\":[{\"severity\":\"fatal\",\"file\":"
      "\"file:///p/%C3%BC.xml\",\"line\":12,\"column\":null,\"code\":\"XTDE0030\",\"text\":\"b\uFFFD\"}]}";
  const Strings expected = {
      R"({"type":"run","version":1,"started":"T","count":6,"request":"XSLTRunTrScenario -usepi -file \"/p/a b.xml\" -outputfilepath \"/p/a.html\""})",
      R"({"type":"job","job":0,"input":"/p/a b.xml","stylesheet":"/p/s.xsl","processor":"Saxon","status":"done","milliseconds":0,"outputs":[{"path":"/p/a.html","kind":"principal"},{"path":"/p/toc.html","kind":"secondary"}],"diagnostics":[{"severity":"warning","file":"/p/s.xsl","line":3,"column":7,"text":"a \"warning\"\nof two lines"}]})",
      failed,
      R"({"type":"job","job":2,"input":"/p/c.xml","stylesheet":null,"processor":"Saxon","status":"refused","milliseconds":0,"outputs":[{"path":"/k/c.html","kind":"opened"},{"path":"/k/d.html","kind":"launched"}],"diagnostics":[]})",
      R"({"type":"job","job":3,"input":"/p/d.xml","stylesheet":null,"processor":"Saxon","status":"missing","milliseconds":0,"outputs":[],"diagnostics":[{"severity":"error","file":null,"line":null,"column":null,"text":"no file"}]})",
      R"({"type":"job","job":4,"input":"/p/e.xml","stylesheet":null,"processor":"","status":"left-out","milliseconds":0,"outputs":[],"diagnostics":[]})",
      R"({"type":"end","done":1,"failed":1,"refused":1,"missing":1,"left-out":1,"cancelled":0,"exit":1,"diagnostics":[{"severity":"warning","file":null,"line":null,"column":null,"text":"of no job"}]})"};
  EXPECT_EQ(Lines(), expected);
  EXPECT_EQ(tally.count, 6);
  EXPECT_EQ(tally.names.at(V_JOB_FAILED), Strings{"/p/\xff.xml"});
  EXPECT_EQ(tally.names.at(V_JOB_DONE), Strings());
}

// Jobs may be done and the run not be: what they wrote could not be synced, for instance.
TEST(Tally, KnowsThatARunFailedAfterItsJobs) {
  for (const auto &[severity, isLate, hasFailed] : {std::tuple{V_SEVERITY_ERROR, true, true},
                                                    {V_SEVERITY_WARNING, true, false},
                                                    {V_SEVERITY_ERROR, false, false}}) {
    host::RunRecorder recorder;
    recorder.OnRunEvent({.kind = V_RUN_BEGINS, .count = 1});
    if (isLate) {
      recorder.OnRunEvent(Begins(0, "/p/a.xml", "Saxon"));
      recorder.OnRunEvent(Ends(0, V_JOB_DONE));
    }
    recorder.OnRunEvent(Diagnostic(-1, severity, "of the run"));
    EXPECT_EQ(recorder.Tally().hasFailed, hasFailed);
  }
}

TEST_F(RunRecords, AreReadHoweverTheyWereCut) {
  Play(MakeRun());
  const std::string whole = folder.Read("r.jsonl");
  size_t lastJobs = 0;
  for (size_t length = 0; length <= whole.size(); ++length) {
    const std::string path = folder.Write("cut.jsonl", whole.substr(0, length));
    host::RunRecord record;
    std::string error;
    const bool isRead = host::ReadRunRecord(path, record, error);
    const auto lines =
        static_cast<size_t>(std::count(whole.begin(), whole.begin() + static_cast<int64_t>(length), '\n'));
    ASSERT_EQ(isRead, lines > 0) << length;
    ASSERT_EQ(error, lines > 0 ? "" : path + ":1: this is no record of a run");
    ASSERT_EQ(record.jobs.size(), std::min<size_t>(lines > 0 ? lines - 1 : 0, 5)) << length;
    ASSERT_EQ(record.exitCode.has_value(), length == whole.size());
    lastJobs = record.jobs.size();
  }
  EXPECT_EQ(lastJobs, 5U);
  host::RunRecord record;
  std::string error;
  ASSERT_TRUE(host::ReadRunRecord(folder.Path("r.jsonl"), record, error)) << error;
  EXPECT_EQ(record.request, request);
  EXPECT_EQ(record.count, 6);
  EXPECT_EQ(record.exitCode, 1);
  EXPECT_EQ(record.jobs[0].input, "/p/a b.xml");
  EXPECT_EQ(record.jobs[4].status, V_JOB_LEFT_OUT);
}

TEST_F(RunRecords, OfSomethingElseAreRefusedWithTheLine) {
  const std::string run = R"({"type":"run","version":1,"started":"T","count":1,"request":"X"})";
  const std::string job = R"({"type":"job","job":0,"input":"/a","status":"done"})";
  const std::pair<Strings, size_t> wrong[] = {
      {{"<x/>"}, 1},
      {{job}, 1},
      {{"[1]"}, 1},
      {{R"({"type":"run","count":1,"request":"X"})"}, 1},
      {{R"({"type":"run","version":2,"count":1,"request":"X"})"}, 1},
      {{R"({"type":"run","version":1,"count":"1","request":"X"})"}, 1},
      {{run, run}, 2},
      {{run, job, R"({"type":"job","job":1,"inp)", job}, 3},
      {{run, ""}, 2},
      {{run, R"({"type":"job","job":0,"input":"/a","status":"perhaps"})"}, 2},
      {{run, R"({"type":"job","job":0,"status":"done"})"}, 2},
      {{run, R"({"type":"end"})"}, 2},
      {{run, R"({"type":"other"})"}, 2},
  };
  for (const auto &[lines, line] : wrong) {
    std::string text;
    for (const std::string &each : lines)
      text += each + "\n";
    const std::string path = folder.Write("wrong.jsonl", text);
    host::RunRecord record;
    std::string error;
    EXPECT_FALSE(host::ReadRunRecord(path, record, error)) << text;
    EXPECT_TRUE(error.starts_with(path + ":" + std::to_string(line) + ": ")) << error;
  }
  host::RunRecord record;
  std::string error;
  EXPECT_FALSE(host::ReadRunRecord(folder.Path("none"), record, error));
  EXPECT_NE(error.find(folder.Path("none")), std::string::npos);
}

// The old record is worth something until the new one has its first line.
TEST_F(RunRecords, TakeTheirPlaceWhenTheRunBegins) {
  folder.Write("r.jsonl", "old");
  host::RunRecordFile record(folder.Path("r.jsonl"), request, 2, [](const std::string &) { FAIL(); });
  EXPECT_EQ(folder.Read("r.jsonl"), "old");
  record.BeginRun(3);
  EXPECT_EQ(Lines().size(), 1U);
  EXPECT_NE(Lines()[0].find("\"count\":3"), std::string::npos) << "not the number that was expected";
  record.TakeJob({.job = 7, .input = "/x"});
  EXPECT_EQ(Lines().size(), 2U) << "the moment the job ends";

  // A request that was refused never became a run.
  const std::string before = folder.Read("r.jsonl");
  Play({{.kind = V_RUN_DIAGNOSTIC, .job = 2, .severity = V_SEVERITY_ERROR, .text = "refused"}});
  EXPECT_EQ(folder.Read("r.jsonl"), before);
  EXPECT_NE(folder.Read("r.sarif").find("refused"), std::string::npos);
  EXPECT_EQ(folder.Names(), (Strings{"r.jsonl", "r.sarif"})) << "nothing beside them";
}

// A disk that is full in the middle of a line, by a limit on the size of files.
TEST_F(RunRecords, OnAFullDiskKeepWholeLines) {
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  Play(MakeRun());
  const std::string whole = folder.Read("r.jsonl");
  ASSERT_EQ(failures, Strings());
  std::signal(SIGXFSZ, SIG_IGN);
  // Within each line behind the first one in turn.
  for (size_t end = whole.find('\n') + 1; end < whole.size(); end = whole.find('\n', end) + 1) {
    failures.clear();
    const rlimit limit{end + 10, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
    std::vector<RunEvent> events = MakeRun();
    const auto note = [this](const std::string &error) { failures.push_back(error); };
    host::RunRecordFile record(folder.Path("r.jsonl"), request, 6, note);
    host::RunRecorder recorder({&record});
    for (const RunEvent &event : events)
      recorder.OnRunEvent(event);
    record.End(recorder.Tally(), 1);
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(failures.size(), 1U) << "once";
    EXPECT_TRUE(failures.at(0).starts_with(folder.Path("r.jsonl") + ": "));
    const std::string text = folder.Read("r.jsonl");
    EXPECT_TRUE(text.ends_with('\n'));
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'),
              std::count(whole.begin(), whole.begin() + static_cast<int64_t>(end), '\n'));
  }
  std::signal(SIGXFSZ, SIG_DFL);
}

// Whether it is valid SARIF, the schema says; see tests/test_run_record.py.
TEST_F(RunRecords, AsSarifPointAtPlaces) {
  Play(MakeRun());
  const Json run = Json::parse(folder.Read("r.sarif")).at("runs").at(0);
  const Json &results = run.at("results");
  ASSERT_EQ(results.size(), 4U);
  const auto find = [&](const std::string &text) {
    return *std::ranges::find_if(results, [&](const Json &each) { return each.at("message").at("text") == text; });
  };
  EXPECT_EQ(find("of no job").dump(), R"({"level":"warning","message":{"text":"of no job"},"locations":[]})");
  EXPECT_EQ(
      find("a \"warning\"\nof two lines").at("locations").dump(),
      R"([{"physicalLocation":{"artifactLocation":{"uri":"file:///p/s.xsl"},"region":{"startLine":3,"startColumn":7}}}])");
  EXPECT_EQ(find("b\uFFFD").at("level"), "error");
  EXPECT_EQ(find("b\uFFFD").at("locations")[0].at("physicalLocation").dump(),
            R"({"artifactLocation":{"uri":"file:///p/%C3%BC.xml"},"region":{"startLine":12}})");
  EXPECT_EQ(find("no file").at("locations")[0].at("physicalLocation").dump(),
            R"({"artifactLocation":{"uri":"file:///p/d.xml"}})")
      << "the input, where there is no other file";
}

} // namespace
