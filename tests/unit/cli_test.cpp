// What the command line makes of its words before a request is sent: inputs, places for results, requests.
#include "host/cli/run_inputs.h"
#include "kit/request_builder.h"
#include "kit/text.h"
#include "tests/unit/folder.h"

#include <gtest/gtest.h>

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
  EXPECT_EQ(error, "there is no file or folder " + folder.Path("none.xml"));
  for (const char *name : {"in/pipe.xml", "in/dangling.xml", "in/a.xml/below"})
    EXPECT_EQ(Find({.inputs = {name}}), Strings{"error"}) << name;
  EXPECT_EQ(Find({.inputs = {"in/sub"}, .patterns = {"*.dita"}}), Strings{"error"});
  EXPECT_NE(error.find("--recursive"), std::string::npos);
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

TEST_F(Inputs, ConflictsSeeThroughLinks) {
  fs::create_directory_symlink("in", folder.Path("same"));
  std::vector<RunInput> pairs;
  for (const auto &[path, output] : {std::pair{"in/a.xml", "o/1"},
                                     {"in/b.xml", "o/../o/1"},
                                     {"in/note.txt", ""},
                                     {"in/sub/c.xml", "same/sub/c.xml"},
                                     {"in/sub/deep/d.xml", "same/a.xml"}})
    pairs.push_back({folder.Path(path), "", *output ? folder.Path(output) : ""});
  const Strings conflicts = cli::FindConflicts(pairs);
  EXPECT_EQ(conflicts, (Strings{"", "same output as " + folder.Path("in/a.xml"), "", "is its own input", ""}));
}

TEST_F(Inputs, OfAMapBringTheirComponents) {
  const std::string map = folder.Write("m/main.ditamap", "<map><topicref href='t.dita'/><topicref href='../x.dita'/>"
                                                         "<topicref href='gone.dita'/></map>");
  folder.Write("m/t.dita", "<topic/>");
  folder.Write("x.dita", "<topic/>");
  EXPECT_EQ(Find({.inputs = {"m/main.ditamap"}, .output = "o/"}), Strings{"m/main.ditamap -> o/main.ditamap"});
  EXPECT_EQ(Find({.inputs = {"m/main.ditamap"}, .takesComponents = true, .output = "o/", .extension = "html"}),
            (Strings{"m/main.ditamap -> o/m/main.html", "m/t.dita -> o/m/t.html", "x.dita -> o/x.html",
                     "m/gone.dita -> o/m/gone.html"}))
      << "below the folder that holds them all";
  folder.Write("m/bad.ditamap", "<map><topicref href='t.dita'/>");
  EXPECT_EQ(Find({.inputs = {"m/bad.ditamap"}, .takesComponents = true}).size(), 2U);
  EXPECT_EQ(warnings.size(), 1U);
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
    kit::Tokenizer tokenizer(request.Text());
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
