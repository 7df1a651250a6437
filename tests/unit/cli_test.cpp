// What the command line makes of its words before a request is sent: inputs, places for results, records, requests,
// and how it shows plans and counts.
#include "host/cli/dry_run.h"
#include "host/cli/retry.h"
#include "host/cli/run_inputs.h"
#include "host/cli/run_report.h"
#include "host/cli/split_parameter.h"
#include "kit/request_builder.h"
#include "kit/text.h"
#include "tests/unit/fake_host.h"
#include "tests/unit/folder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <random>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

using cli::RunInput;
using cli::RunOptions;
using Strings = std::vector<std::string>;

class Inputs : public testing::Test {
protected:
  void SetUp() override {
    for (const char *name : {"in/b.xml", "in/a.xml", "in/.hidden.xml", "in/note.txt", "in/sub/c.xml",
                             "in/sub/deep/d.xml", "in/.git/e.xml", "in/out/old.xml"})
      folder.Write(name, "<x/>");
    fs::create_directory_symlink("..", folder.Path("in/sub/back"));
    fs::create_symlink("gone", folder.Path("in/dangling.xml"));
    mkfifo(folder.Path("in/pipe.xml").c_str(), 0600);
  }

  // The inputs below the test's folder, and their outputs when there are any.
  Strings Find(RunOptions options) {
    inputs.clear();
    warnings.clear();
    error.clear();
    for (std::string &input : options.inputs)
      input = folder.Path(input);
    if (!options.output.empty())
      options.output = folder.Path(options.output);
    if (!cli::FindInputs(options, inputs, warnings, error) ||
        (!options.output.empty() && !cli::PlaceOutputs(options, inputs, error)))
      return {"error"};
    Strings found;
    for (const RunInput &input : inputs)
      found.push_back(folder.Shorten({input.path})[0] +
                      (input.output.empty() ? "" : " -> " + folder.Shorten({input.output})[0]));
    return found;
  }

  test::Folder folder;
  std::vector<RunInput> inputs;
  Strings warnings;
  std::string error;
};

TEST_F(Inputs, OfFoldersAreTheirVisibleFilesByName) {
  EXPECT_EQ(Find({.inputs = {"in"}}), (Strings{"in/a.xml", "in/b.xml", "in/note.txt"}));
  EXPECT_EQ(Find({.inputs = {"in/"}, .patterns = {"*.xml"}}), (Strings{"in/a.xml", "in/b.xml"}));
  EXPECT_EQ(Find({.inputs = {"in"}, .patterns = {"a*", "*.txt"}}), (Strings{"in/a.xml", "in/note.txt"}));
  EXPECT_EQ(Find({.inputs = {"in"}, .patterns = {"?.xml"}, .isRecursive = true}),
            (Strings{"in/a.xml", "in/b.xml", "in/sub/c.xml", "in/sub/deep/d.xml"}));
  // What is named is taken, whatever the patterns, and once.
  EXPECT_EQ(Find({.inputs = {"in/note.txt", "in", "in/a.xml", "in/./b.xml"}, .patterns = {"*.xml"}}),
            (Strings{"in/note.txt", "in/a.xml", "in/b.xml"}));
  // Results of the last run are no inputs of the next.
  EXPECT_EQ(Find({.inputs = {"in"}, .patterns = {"*.xml"}, .isRecursive = true, .output = "in/out"}),
            (Strings{"in/a.xml -> in/out/a.xml", "in/b.xml -> in/out/b.xml", "in/sub/c.xml -> in/out/sub/c.xml",
                     "in/sub/deep/d.xml -> in/out/sub/deep/d.xml"}));
}

TEST_F(Inputs, ThatAreNotThereAreNamed) {
  EXPECT_EQ(Find({.inputs = {"in/a.xml", "none.xml"}}), Strings{"error"});
  for (const char *name : {"in/pipe.xml", "in/dangling.xml", "in/a.xml/below"})
    EXPECT_EQ(Find({.inputs = {name}}), Strings{"error"}) << name;
  EXPECT_EQ(Find({}), Strings{"error"});
  EXPECT_NE(error, "");
}

TEST_F(Inputs, GoWhereTheOutputSays) {
  EXPECT_EQ(Find({.inputs = {"in/a.xml"}, .output = "x.html"}), Strings{"in/a.xml -> x.html"});
  EXPECT_EQ(Find({.inputs = {"in/a.xml"}, .output = "new/"}), Strings{"in/a.xml -> new/a.xml"});
  EXPECT_EQ(Find({.inputs = {"in/a.xml"}, .output = "in/sub", .extension = "html"}),
            Strings{"in/a.xml -> in/sub/a.html"});
  EXPECT_EQ(Find({.inputs = {"in/a.xml", "in/note.txt"}, .output = "new/", .extension = ".tar.gz"}),
            (Strings{"in/a.xml -> new/a.tar.gz", "in/note.txt -> new/note.tar.gz"}));
  folder.Write("in/plain", "");
  EXPECT_EQ(Find({.inputs = {"in/plain"}, .output = "new/", .extension = "html"}),
            Strings{"in/plain -> new/plain.html"});
  for (const RunOptions &wrong : {RunOptions{.inputs = {"in/a.xml", "in/b.xml"}, .output = "x.html"},
                                  RunOptions{.inputs = {"in/sub"}, .output = "x.html"},
                                  RunOptions{.inputs = {"in/a.xml"}, .output = "x.html", .extension = "htm"}}) {
    EXPECT_EQ(Find(wrong), Strings{"error"});
    EXPECT_NE(error, "");
  }
}

TEST_F(Inputs, OfAMapBringTheirComponents) {
  const std::string map = folder.Write("m/main.ditamap", "<map><topicref href='t.dita'/><topicref href='../x.dita'/>"
                                                         "<topicref href='gone.dita'/></map>");
  folder.Write("m/t.dita", "<topic/>");
  folder.Write("x.dita", "<topic/>");
  EXPECT_EQ(Find({.inputs = {"m/main.ditamap"}, .takesComponents = true, .output = "o/", .extension = "html"}),
            (Strings{"m/main.ditamap -> o/m/main.html", "m/t.dita -> o/m/t.html", "x.dita -> o/x.html",
                     "m/gone.dita -> o/m/gone.html"}))
      << "below the folder that holds them all";
  folder.Write("m/bad.ditamap", "<map><topicref href='t.dita'/>");
  EXPECT_EQ(Find({.inputs = {"m/bad.ditamap"}, .takesComponents = true}).size(), 2U);
  EXPECT_EQ(warnings.size(), 1U);
}

// ---- Retries

class Retries : public testing::Test {
protected:
  // The request that is left of a record with that request; or the error.
  std::string Compose(const std::string &request, const std::string &jobs) {
    const std::string path = folder.Write(
        "r.jsonl",
        nlohmann::json{{"type", "run"}, {"version", 1}, {"count", 3}, {"request", request}}.dump() + "\n" + jobs);
    cli::RunRequest composed;
    std::string error;
    const bool isComposed = cli::ComposeRetry(path, composed, error);
    EXPECT_EQ(isComposed, error.empty());
    count = composed.inputCount;
    return isComposed ? composed.Text() : error;
  }

  static std::string Job(const std::string &input, const std::string &status) {
    return nlohmann::json{{"type", "job"}, {"job", 0}, {"input", input}, {"status", status}}.dump() + "\n";
  }

  test::Folder folder;
  int32_t count = -1;
};

TEST_F(Retries, LeaveOutWhatIsDone) {
  const std::string head =
      R"(XSLTRunTrScenario -xslfilepath '/s "1".xsl' -sparam "-file" "x" -xinclude -initialtemplate "main" )"
      R"(-initialmode "{urn:x}m" -distinctoutputs)";
  const std::string a = R"( -file "/a" -outputfilepath "/o/a")";
  const std::string b = R"( -file "/b c" -outputfilepath "/a")";
  const std::string c = R"( -file "/c" -outputfilepath "/o/c")";
  EXPECT_EQ(Compose(head + a + b + c, ""), head + a + b + c) << "killed before the first";
  EXPECT_EQ(Compose(head + a + b + c, Job("/a", "done") + Job("/b c", "failed")), head + b + c);
  EXPECT_EQ(count, 2);
  const std::string both = head + a + c;
  const std::string rest = head + a;
  for (const char *status : {"failed", "refused", "missing", "cancelled"})
    EXPECT_EQ(Compose(both, Job("/c", "done").append(Job("/a", status))), rest) << status;
  EXPECT_EQ(Compose(head + a + c, Job("/a", "left-out") + Job("/c", "done")), head);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(Compose(head + a + c, Job("/c", "done") + R"({"type":"job","job":1,"input":"/a","status":"done"})"),
            head + a)
      << "a torn line does not count";
}

TEST_F(Retries, RefuseRequestsThatMeanOtherFilesByNow) {
  for (const char *request :
       {"XSLTRunTrScenario -usepi -folder \"/a\"", "XSLTRunTrScenario -usepi -currentfile", "XSLTRunTrScenario -usepi",
        "XSLTGetTrScenario -trfile \"/t\"", "XSLTRunTrScenario -usepi -file \"/a\"",
        "XSLTRunTrScenario -usepi -file \"/a\" -outputfilepath \"/b\" -whatever", "VlxsltPlanRun -file \"/a\"",
        "XSLTRunTrScenario -usepi -file \"/\uFFFD\" -outputfilepath \"/b\""})
    EXPECT_TRUE(Compose(request, "").starts_with(folder.Path("r.jsonl:1: its request "))) << Compose(request, "");
}

// ---- Parameters

TEST(Parameters, DrawAHintWhenTextComesOutAsAnotherNumber) {
  const std::pair<const char *, const char *> values[] = {
      {"2020-01-01", "2018"}, {"978-3-16-148410-0", "-147451"}, {"007", "7"},   {"1.10", "1.1"},
      {"2.0", "2"},           {"1.5-2.25+3", "2.25"},           {"-3-4", "-7"}, {"0.1-0.10", "0"}};
  for (const auto &[value, result] : values)
    EXPECT_EQ(cli::HintAtNumber("u=" + std::string(value)), "-p u=" + std::string(value) +
                                                                " is an expression with the value " + result +
                                                                "; as text it is -p \"u='" + value + "'\"");
  for (const char *meant : {"", "2", "-2", "1.5", "2 - 1", "'2020-01-01'", "a-1", "12:30", "1/2", "1.2.3", "2*3", "1-",
                            "-", "1.", "99999999999999999999-1", "true()"})
    EXPECT_EQ(cli::HintAtNumber("u=" + std::string(meant)), "") << meant;
}

// ---- Plans and counts

TEST(Plans, AreShownAsTablesAndAsObjects) {
  FakeHost host;
  kit::TypedValues reply;
  reply.AddInteger(0);
  reply.AddString("log");
  kit::TypedValues asked;
  asked.AddInteger(1);
  for (const char *text : {"/p/b.xml", "", "X"})
    asked.AddString(text);
  asked.AddStrings({"title", "'\xff'"});
  asked.AddString("");
  asked.AddStrings({"place"});
  asked.AddInteger(V_JOB_FAILED);
  asked.AddStrings({"processor not configured", "more"});
  reply.AddValues(std::move(asked));
  kit::TypedValues cut;
  cut.AddInteger(2);
  cut.AddString("/p/c.xml");
  reply.AddValues(std::move(cut));
  const std::vector<cli::PlannedJob> jobs = cli::ReadPlan(reply);
  ASSERT_EQ(jobs.size(), 2U);
  EXPECT_EQ(cli::FormatPlannedJob(jobs[0]),
            "/p/b.xml\t(the input's own)\tX\t(asked for)\tprocessor not configured, more\n");
  EXPECT_NE(cli::FormatPlannedJobAsJson(jobs[0]).find("[[\"title\",\"'\uFFFD'\"]]"), std::string::npos);
  EXPECT_EQ(jobs[1].status, V_JOB_FAILED) << "what is not said to be fine is not";
}

TEST(Summaries, NameTheFirstOfEachStatus) {
  host::RunRecorder recorder;
  const auto end = [&](const std::string &input, int32_t status) {
    recorder.OnRunEvent({.kind = V_JOB_ENDS, .job = 0, .status = status, .path = input});
  };
  recorder.OnRunEvent({.kind = V_RUN_BEGINS, .count = 25});
  end("/good", V_JOB_DONE);
  end("/cancelled", V_JOB_CANCELLED);
  std::string names;
  for (int index = 0; index < 22; ++index) {
    end("/" + std::to_string(index), V_JOB_FAILED);
    names += index < 20 ? "\n    /" + std::to_string(index) : "";
  }
  EXPECT_EQ(cli::FormatSummary(recorder.Tally()), "25 inputs: 1 transformed, 22 failed, 1 cancelled\n  failed:" +
                                                      names + "\n    and 2 more\n  cancelled:\n    /cancelled");
}

// What a request carries comes out of it again; what it cannot carry is never sent.
TEST(Requests, CarryValuesWhole) {
  static const Strings pieces = {"a", "\"", "'", " ", "\t", "-file", "%s", "\\", "ü", "中", "$HOME", "\n"};
  std::mt19937 random{11};
  int refused = 0;
  for (int round = 0; round < 2000; ++round) {
    Strings values(2);
    for (std::string &value : values)
      for (size_t count = random() % 6; count > 0; --count)
        value += pieces[random() % pieces.size()];
    kit::RequestBuilder request("Name");
    request.Add("-option", {values[0], values[1]});
    request.Add("-flag");
    request.AddIfGiven("-absent", "");
    bool hasBoth = false;
    for (const std::string &value : values)
      hasBoth |= value.find('"') != std::string::npos && value.find('\'') != std::string::npos;
    EXPECT_EQ(request.Problem().empty(), !hasBoth);
    refused += hasBoth ? 1 : 0;
    if (hasBoth)
      continue;
    Strings tokens;
    const std::string text = request.Text();
    kit::Tokenizer tokenizer(text);
    for (std::string token; tokenizer.Next(token);)
      tokens.push_back(token);
    EXPECT_EQ(tokens, (Strings{"Name", "-option", values[0], values[1], "-flag"}));
  }
  EXPECT_GT(refused, 50);
  kit::RequestBuilder tooLong("Name");
  tooLong.Add("-o", {std::string(1023, 'x')});
  EXPECT_EQ(tooLong.Problem(), "");
  tooLong.Add("-o", {std::string(1024, 'x')});
  EXPECT_NE(tooLong.Problem(), "");
}

} // namespace
