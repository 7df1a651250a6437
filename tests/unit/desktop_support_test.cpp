// The parts of the desktop that need no window: the log's lines after run events, summaries, texts of results, the
// editor's command line, and changes to a configuration file that keep everything else as it was written.
#include "host/desktop/log_lines.h"
#include "host/desktop/result_text.h"
#include "host/desktop/run_summary.h"
#include "host/editor_command.h"
#include "host/file_place.h"
#include "tests/unit/host_fixture.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using desktop::LineStyle;
using host::FilePlace;
using host::RunEvent;

TEST(FilePlace, IsFoundInMessagesOfTheHost) {
  struct Sample {
    const char *text;
    const char *path; // null: none
    int32_t line = 0, column = 0;
  };
  const Sample samples[] = {
      {"/data/config.toml:4:7: unknown key", "/data/config.toml", 4, 7},
      {"Cannot open: /a b/c:d.xml:31:0: bad", "/a b/c:d.xml", 31, 0},
      {"/a.xml: no place", nullptr},
      {"/a.xml:3: no column", nullptr},
      {"c.xml:1:2: relative", nullptr},
      {"read /a.xml:1:2: in the middle", nullptr},
      {"12:30:45 done", nullptr},
      {"/a:99999999999:1: too large", nullptr},
      {"/a:1:2", nullptr},
      {"", nullptr},
  };
  for (const Sample &sample : samples) {
    const auto named = host::FindFilePlace(sample.text);
    ASSERT_EQ(named.has_value(), sample.path != nullptr) << sample.text;
    if (!named)
      continue;
    EXPECT_EQ(named->place.path, sample.path);
    EXPECT_EQ(named->place.line, sample.line);
    EXPECT_EQ(named->place.column, sample.column);
    EXPECT_EQ(std::string(sample.text).substr(named->begin, named->end - named->begin), sample.path);
  }
}

RunEvent Diagnostic(int32_t severity, std::string path, int32_t line, std::string text) {
  return {
      .kind = V_RUN_DIAGNOSTIC, .severity = severity, .line = line, .path = std::move(path), .text = std::move(text)};
}
RunEvent Ended(int32_t job, int32_t status) { return {.kind = V_JOB_ENDS, .job = job, .status = status}; }

TEST(LogLines, AreStyledByTheEventBeforeThem) {
  desktop::LogLines lines;
  const auto expect = [&](const char *line, LineStyle style, const char *link = "") {
    const desktop::LogLine shown = lines.TakeLine(line);
    EXPECT_EQ(shown.style, style) << line;
    EXPECT_EQ(std::string(line).substr(shown.linkBegin, shown.linkEnd - shown.linkBegin), link);
  };
  lines.TakeEvent({.kind = V_RUN_BEGINS, .count = 2});
  expect("Title of no job", LineStyle::Plain);
  lines.TakeEvent({.kind = V_JOB_BEGINS, .job = 0, .path = "/in/a.xml"});
  expect("", LineStyle::Plain);
  expect("Any title", LineStyle::Heading);
  expect("In: /in/a.xml", LineStyle::Plain);
  expect("/etc/catalog.xml:2:3: catalog: bad", LineStyle::Error, "/etc/catalog.xml");
  // Messages may look like anything.
  for (const char *message : {"Output:/etc/passwd", "Error at file /x, line 1", "/x:1:2: forged", "two\nlines\n"}) {
    lines.TakeEvent({.kind = V_RUN_MESSAGE, .job = 0, .text = message});
    expect(message, LineStyle::Plain);
  }
  lines.TakeEvent(Diagnostic(V_SEVERITY_WARNING, "/in/a b.xml", 3, "odd\n"));
  expect("Careful, /in/a b.xml has something odd", LineStyle::Warning, "/in/a b.xml");
  lines.TakeEvent(Diagnostic(V_SEVERITY_FATAL, "urn:x", 1, "no file"));
  expect("urn:x: no file", LineStyle::Error);
  lines.TakeEvent(Diagnostic(V_SEVERITY_ERROR, "/in/a.xml", 4, ""));
  expect("Wrong in /in/a.xml", LineStyle::Error, "/in/a.xml");
  lines.TakeEvent({.kind = V_RUN_FILE_READ, .path = "/in/a.xml"});
  expect("Something else", LineStyle::Plain);
  lines.TakeEvent(Ended(0, V_JOB_FAILED));
  expect("Given up", LineStyle::Error);
  lines.TakeEvent({.kind = V_JOB_BEGINS, .job = 1, .path = "/in/b.xml"});
  expect("Any title", LineStyle::Heading);
  const std::pair<int32_t, LineStyle> styles[] = {{V_JOB_DONE, LineStyle::Success},
                                                  {V_JOB_REFUSED, LineStyle::Error},
                                                  {V_JOB_MISSING, LineStyle::Error},
                                                  {V_JOB_LEFT_OUT, LineStyle::Warning},
                                                  {V_JOB_CANCELLED, LineStyle::Warning}};
  for (const auto &[status, style] : styles) {
    lines.TakeEvent(Ended(1, status));
    expect("Over", style);
  }
  lines.TakeEvent({.kind = V_RUN_ENDS});
  expect("Over", LineStyle::Plain);

  std::vector<std::string> problems;
  for (const FilePlace &place : lines.Problems())
    problems.push_back(place.path + ":" + std::to_string(place.line));
  EXPECT_EQ(problems, (std::vector<std::string>{"/etc/catalog.xml:2", "/in/a b.xml:3", "/in/a.xml:4"}));
}

TEST(LogLines, OfAQuietRunColourNothing) {
  desktop::LogLines lines;
  lines.TakeEvent(Diagnostic(V_SEVERITY_ERROR, "/a.xml", 5, "wrong"));
  EXPECT_EQ(lines.TakeLine("Another line").style, LineStyle::Plain);
  lines.TakeEvent(Ended(0, V_JOB_FAILED));
  lines.EndRequest();
  EXPECT_EQ(lines.TakeLine("Another line").style, LineStyle::Plain);
  ASSERT_EQ(lines.Problems().size(), 1U); // F4 leads there
  EXPECT_EQ(lines.Problems()[0].line, 5);
}

TEST(RunSummary, CountsInputsAndProblems) {
  desktop::RunSummary run;
  EXPECT_EQ(desktop::SummariseRun(run), "");
  run.TakeEvent(Diagnostic(V_SEVERITY_ERROR, "", 0, "before the run"));
  run.TakeEvent({.kind = V_RUN_BEGINS, .count = 1});
  run.TakeEvent(Ended(0, V_JOB_DONE));
  EXPECT_EQ(desktop::SummariseRun(run), "1 input: 1 transformed");
  EXPECT_EQ(run.FirstError(), "before the run");
  run.TakeEvent({.kind = V_RUN_ENDS});
  EXPECT_TRUE(run.HasErrors());

  run.TakeEvent({.kind = V_RUN_BEGINS, .count = 8});
  EXPECT_FALSE(run.HasErrors());
  for (const int32_t status : std::vector<int32_t>{V_JOB_DONE, V_JOB_DONE, V_JOB_FAILED, V_JOB_REFUSED, V_JOB_MISSING,
                                                   V_JOB_LEFT_OUT, V_JOB_CANCELLED, 99})
    run.TakeEvent(Ended(0, status));
  run.TakeEvent(Diagnostic(V_SEVERITY_WARNING, "", 0, "w"));
  run.TakeEvent(Diagnostic(V_SEVERITY_FATAL, "", 0, "f"));
  run.TakeEvent(Diagnostic(V_SEVERITY_ERROR, "", 0, "e"));
  EXPECT_EQ(desktop::SummariseRun(run),
            "8 inputs: 2 transformed, 2 failed, 1 refused, 1 missing, 1 left out, 1 cancelled");
  EXPECT_EQ(run.DescribeProblems(), "2 errors, 1 warning");
  EXPECT_EQ(run.FirstError(), "f");
  EXPECT_EQ(run.NotDone(), 4);
}

TEST(ResultText, IsTheBeginningOfALargeFile) {
  const test::Folder files;
  const auto read = [&](const std::string &text) { return desktop::ReadResultText(files.Write("r.txt", text)); };
  EXPECT_EQ(read("a\nb").text, "a\nb");
  EXPECT_EQ(read("").note, "");

  // A character of two bytes lies across the limit.
  std::string lines(desktop::maxResultBytes + 1, 'x');
  for (size_t at = 99; at < lines.size(); at += 100)
    lines[at] = '\n';
  lines.replace(desktop::maxResultBytes - 1, 2, "\xC3\xA9");
  const desktop::ResultText cut = read(lines);
  EXPECT_EQ(cut.text, lines.substr(0, desktop::maxResultBytes - 1));
  EXPECT_EQ(cut.note, "The first 2 MB of 3 MB are shown.");
  lines.resize(desktop::maxResultBytes - 1);
  EXPECT_EQ(read(lines).note, "");

  const std::string line(desktop::maxLineBytes, 'y');
  const desktop::ResultText broken = read("a\n" + line + line + "z\n" + line + "\n");
  EXPECT_EQ(broken.text, "a\n" + line + "\n" + line + "\nz\n" + line + "\n");
  EXPECT_NE(broken.note, "");
  for (const char *path : {"missing", "."})
    EXPECT_NE(desktop::ReadResultText(files.Path(path)).error, "") << path;
}

TEST(EditorCommand, PutsTheLineWhereTheEditorWantsIt) {
  const FilePlace place{"/a {line} b.xml", 7, 2};
  using Words = std::vector<std::string>;
  EXPECT_EQ(host::ComposeEditorCommand("ed --at {line},{column} {file}", place),
            (Words{"ed", "--at", "7,2", "/a {line} b.xml"}));
  EXPECT_EQ(host::ComposeEditorCommand("/usr/bin/code", place), (Words{"/usr/bin/code", "-g", "/a {line} b.xml:7:2"}));
  EXPECT_EQ(host::ComposeEditorCommand("unknown -x", place), (Words{"unknown", "-x", "/a {line} b.xml"}));
  EXPECT_FALSE(host::StartProgram({"there-is-no-such-program", "x"}));
}

} // namespace
