// What the windows rest on and what needs no window: places named in log lines, the editor's command line, and changes
// to a configuration file that leave everything else as a person wrote it.
#include "host/configuration/configuration_edit.h"
#include "host/editor_command.h"
#include "host/log_place.h"
#include "tests/unit/host_fixture.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using host::LogPlace;

TEST(LogPlace, IsFoundInEveryFormOfMessage) {
  struct Sample {
    const char *line;
    const char *path;
    int32_t row, column;
  };
  const Sample samples[] = {
      {"Error at file /a b/c.xsl, line 12, char 3, Message: no, line 9 is fine", "/a b/c.xsl", 12, 3},
      {"Fatal Error at file file:///a%20b/c.xml, line 1, char 0, Message: x", "/a b/c.xml", 1, 0},
      {"/data/config.toml:4:7: unknown key", "/data/config.toml", 4, 7},
      {"cannot read /data/x.dita:31: bad", "/data/x.dita", 31, 0},
  };
  for (const Sample &sample : samples) {
    const auto place = host::FindLogPlace(sample.line);
    ASSERT_TRUE(place) << sample.line;
    EXPECT_EQ(place->path, sample.path);
    EXPECT_EQ(place->line, sample.row);
    EXPECT_EQ(place->column, sample.column);
  }
  for (const char *line : {"Error at file c.xsl, line 1, char 2, Message: relative", "Input: /a/b.xml", "12:30:45 done",
                           "Transformation Successful.", ""})
    EXPECT_FALSE(host::FindLogPlace(line)) << line;
}

TEST(LogPlace, TellsWhatWentWrongFromWhatIsOnlySaid) {
  for (const char *line :
       {"Transformation Aborted.", "Error at file /a.xml, line 3, char 4, Message: m",
        "Cannot save the file at following location: /out. Make sure folder exist.", "Folder /in doesn't exist.",
        "XSLT processor Old not found. Please check your XSLT processor preferences.", "File doesn't exist /a.xml.",
        "There aren't any files to be transformed.", "/a/b.xml:3:7: message"})
    EXPECT_EQ(host::ClassifyLogLine(line), host::LogKind::Error) << line;
  for (const char *line :
       {"", "There were 3 topics", "Folder of the week", "Transformation of /a.xml", "Output:/a b.html"})
    EXPECT_EQ(host::ClassifyLogLine(line), host::LogKind::Plain) << line;
  EXPECT_EQ(host::ClassifyLogLine("Transformation Successful."), host::LogKind::Success);
}

TEST(EditorCommand, PutsTheLineWhereTheEditorWantsIt) {
  const LogPlace place{"/a {line} b.xml", 7, 2, 0, 0};
  using Words = std::vector<std::string>;
  EXPECT_EQ(host::ComposeEditorCommand("ed --at {line},{column} {file}", place),
            (Words{"ed", "--at", "7,2", "/a {line} b.xml"}));
  EXPECT_EQ(host::ComposeEditorCommand("/usr/bin/code", place), (Words{"/usr/bin/code", "-g", "/a {line} b.xml:7:2"}));
  EXPECT_EQ(host::ComposeEditorCommand("unknown -x", place), (Words{"unknown", "-x", "/a {line} b.xml"}));
  EXPECT_FALSE(host::StartProgram({"there-is-no-such-program", "x"}));
}

constexpr const char *commented = R"(# At the top.
java_home = "/old"   # behind

# The one we like.
[[processor]]
name = "Saxon" # its name
class_path = "a.jar;b.jar"
class_name = "S"

[[processor]]
name = "Xalan"
class_name = "X"

# Last.
[[application]]
name = "DITA"
root = [
  "map", # maps
  "topic",
]
# The end.
)";

host::ConfigurationChange ReadChange(const std::string &path) {
  host::ConfigurationResult read = host::ReadConfiguration(path, {});
  EXPECT_TRUE(read.problems.empty());
  return {read.configuration, read.configuration, {0, 1}, {0}};
}

TEST(ConfigurationEdit, ChangesOnlyWhatChanged) {
  const test::Folder files;
  const std::string path = files.Write("c.toml", commented);
  host::ConfigurationChange change = ReadChange(path);
  EXPECT_EQ(host::EditConfiguration(commented, change).text, commented);

  change.after.javaHome = "/new \"x\"";
  change.after.editor = "ed";
  std::swap(change.after.processors[0], change.after.processors[1]);
  change.processorOrigins = {1, 0, -1};
  change.after.processors[1].name = "Saxon 12";
  change.after.processors.push_back({"Third", "/c.jar", "T"});
  change.after.applications[0].roots = {"book"};
  change.after.applications[0].files = {"*.b"};
  const host::EditedConfiguration edited = host::EditConfiguration(commented, change);
  ASSERT_EQ(edited.error, "");
  for (const char *kept :
       {"# At the top.", "# behind", "# The one we like.\n[[processor]]\nname = \"Saxon 12\" # its name",
        "class_path = \"a.jar;b.jar\"", "# Last.\n[[application]]", "# The end."})
    EXPECT_NE(edited.text.find(kept), std::string::npos) << kept << " in\n" << edited.text;

  const host::ConfigurationChange again = ReadChange(files.Write("c.toml", edited.text));
  EXPECT_EQ(again.after.javaHome, "/new \"x\"");
  EXPECT_EQ(again.after.editor, "ed");
  ASSERT_EQ(again.after.processors.size(), 3U);
  EXPECT_EQ(again.after.processors[0].name, "Xalan");
  EXPECT_EQ(again.after.processors[1].classPath, change.before.processors[0].classPath);
  EXPECT_EQ(again.after.processors[2].className, "T");
  EXPECT_EQ(again.after.applications[0].roots, std::vector<std::string>{"book"});
  EXPECT_EQ(again.after.applications[0].files, std::vector<std::string>{"*.b"});
}

TEST(ConfigurationEdit, RefusesATextThatIsNotTheOneThatWasRead) {
  const test::Folder files;
  host::ConfigurationChange change = ReadChange(files.Write("c.toml", commented));
  for (const char *text : {"", "[[processor]", "processor = [{name = \"a\", class_name = \"b\"}]"}) {
    const host::EditedConfiguration edited = host::EditConfiguration(text, change);
    EXPECT_NE(edited.error, "");
    EXPECT_EQ(edited.text, text);
  }
}

} // namespace
