// The configuration file: what it may hold, how faults are told, and which applications its rules find.
#include "host/applications.h"
#include "host/configuration/configuration.h"
#include "tests/unit/host_fixture.h"

#include <gtest/gtest.h>

namespace {

using Names = std::vector<std::string>;

const host::Installation installation = {"/opt/vlxslt/lib", "/opt/vlxslt/share/"};

TEST(Configuration, ReadsEveryKeyAndTakesPathsFromItsOwnFolder) {
  const test::Folder folder;
  folder.Write("conf/jars/b.jar", "");
  folder.Write("conf/jars/a.jar", "");
  folder.Write("conf/jars/readme.txt", "");
  const std::string file = folder.Write("conf/vlxslt.toml", R"(
product = "Publisher"
install_dir = "../home"
structure_dir = "structure/"
default_catalogue = '..\default.xml'
temp_dir = "/var/tmp/x"
catalogs = ["catalog.xml", "file:///etc/xml/catalog"]
java_home = "jdk"
java_options = ["-Xmx2g", "-Dx=y z"]
[[processor]]
name = "One"
class_path = "jars/*;/abs/c.jar;;classes"
class_name = "x.Factory"
[processor.attributes]
"http://x/text" = "a b"
"http://x/flag" = true
"http://x/count" = -3
"http://x/share" = 2.0
[[processor]]
name = "Bare"
class_name = "y.Factory"
extensions = true
[trust]
network = ["docs.example.org", "localhost:8080", "*"]
extensions = true
write = ["output", "other", "*"]
[outputs]
sync = false
[[application]]
name = "DITA"
catalogue = '$structdir\dita\Transformations.xml'
root = ["topic"]
public_id = ["-//OASIS//DTD DITA*"]
namespace = ["urn:x"]
file = ["*.dita"]
)");
  const host::ConfigurationResult read = host::ReadConfiguration(file, installation);
  EXPECT_EQ(read.problems, Names());
  const host::Configuration &made = read.configuration;
  EXPECT_EQ(made.product, "Publisher");
  EXPECT_EQ(made.installFolder, folder.Path("home/"));
  EXPECT_EQ(made.structureFolder, folder.Path("conf/structure"));
  EXPECT_EQ(made.defaultCatalogue, folder.Path("default.xml"));
  EXPECT_EQ(made.tempFolder, "/var/tmp/x");
  EXPECT_EQ(made.catalogs, (Names{folder.Path("conf/catalog.xml"), "file:///etc/xml/catalog"}));
  EXPECT_EQ(made.javaHome, folder.Path("conf/jdk"));
  EXPECT_EQ(made.javaOptions, (Names{"-Xmx2g", "-Dx=y z"}));
  ASSERT_EQ(made.processors.size(), 2U);
  EXPECT_EQ(made.processors[0].classPath, folder.Path("conf/jars/a.jar") + ";" + folder.Path("conf/jars/b.jar") +
                                              ";/abs/c.jar;" + folder.Path("conf/classes"));
  EXPECT_EQ(made.processors[1].classPath, "");
  const std::vector<host::AttributeSetting> attributes = {{"http://x/count", "integer", "-3"},
                                                          {"http://x/flag", "boolean", "true"},
                                                          {"http://x/share", "number", "2.0"},
                                                          {"http://x/text", "string", "a b"}};
  EXPECT_EQ(made.processors[0].attributes, attributes);
  EXPECT_TRUE(made.processors[1].attributes.empty());
  EXPECT_FALSE(made.processors[0].allowsExtensions);
  EXPECT_TRUE(made.processors[1].allowsExtensions);
  EXPECT_EQ(made.trustedHosts, (Names{"docs.example.org", "localhost:8080", "*"}));
  EXPECT_TRUE(made.allowsExtensions);
  EXPECT_EQ(made.writeFolders, (Names{"output", folder.Path("conf/other"), "*"}));
  EXPECT_FALSE(made.syncsOutputs);
  ASSERT_EQ(made.applications.size(), 1U);
  EXPECT_EQ(made.applications[0].catalogue, "$structdir\\dita\\Transformations.xml");
}

TEST(Configuration, TellsEveryFaultWithItsPlaceAndWhatWasMeant) {
  struct Case {
    const char *text;
    Names problems; // behind the file's name
  };
  const Case cases[] = {
      {"quite_different = 1\n", {":1:1: unknown key \"quite_different\""}},
      {"trust = true\n", {":1:9: \"trust\" must be written as [trust], not as true or false"}},
      {"[trust]\nnetwork = [\"http://a/\"]\nextensions = 1\nwrites = []\n",
       {":2:12: \"http://a/\" is no host; write NAME or NAME:PORT, or \"*\" for all",
        ":3:14: \"extensions\" must be true or false, not a number",
        ":4:1: unknown key \"writes\"; did you mean \"write\"?"}},
      {"java_options = \"-Xmx1g\"\n", {":1:16: \"java_options\" must be a list of texts, not text"}},
      {"catalogs = [\"a\", true]\n", {":1:18: \"catalogs\" must be text, not true or false"}},
      {"[processor]\nname = \"x\"\n", {":1:1: \"processor\" must be written as [[processor]], not as a table"}},
      {"[[processor]]\nclas_name = \"x\"\nname = \"y\"\n",
       {":1:1: [[processor]] needs the key \"class_name\"",
        ":2:1: unknown key \"clas_name\"; did you mean \"class_name\"?"}},
      {"[[processor]]\nname = \"x\"\nclass_name = \"y\"\nattributes = [1]\n",
       {":4:14: \"attributes\" must be a table, not a list"}},
      {"[[processor]]\nname = \"x\"\nclass_name = \"y\"\n[processor.attributes]\n\"a\" = []\nb.c = 1\n",
       {":5:7: the attribute \"a\" must be text, a number, true or false, not a list",
        ":6:1: the attribute \"b\" must be text, a number, true or false, not a table; a name with dots in it is "
        "written in quotes"}},
      {"[[application]]\nname = \"x\"\nroots = []\n", {":3:1: unknown key \"roots\"; did you mean \"root\"?"}},
  };
  const test::Folder folder;
  for (const Case &each : cases) {
    const std::string file = folder.Write("c.toml", each.text);
    Names expected;
    for (const std::string &problem : each.problems)
      expected.push_back(file + problem);
    EXPECT_EQ(host::ReadConfiguration(file, installation).problems, expected) << each.text;
  }
}

TEST(Configuration, HasDefaultsForAnInstallationWithoutOne) {
  const host::ConfigurationResult read = host::ReadConfiguration("", installation);
  EXPECT_EQ(read.problems, Names());
  EXPECT_EQ(read.configuration.product, "Vellis");
  EXPECT_EQ(read.configuration.installFolder, "/opt/vlxslt/share/");
  EXPECT_EQ(read.configuration.structureFolder, "/opt/vlxslt/share/structure");
}

TEST(Applications, AssociateAFileByAnyRuleThatMatches) {
  host::Configuration configuration;
  configuration.applications = {
      {.name = "Root", .roots = {"topic", "concept"}},
      {.name = "Public", .publicIds = {"-//OASIS//DTD DITA*"}},
      {.name = "Space", .namespaces = {"http://docbook.org/ns/*"}},
      {.name = "Name", .files = {"*.dita", "report-?.xml"}},
      {.name = "Nothing"},
  };
  struct Case {
    const char *name;
    const char *content;
    Names applications;
  };
  const Case cases[] = {
      {"a.xml", "<?xml version='1.0'?>\n<!-- c --><topic id='a'/>", {"Root"}},
      {"b.xml",
       "<!DOCTYPE concept PUBLIC \"-//OASIS//DTD DITA Concept//EN\" \"no.dtd\"><concept/>",
       {"Root", "Public"}},
      {"c.xml", "<d:book xmlns:d='http://docbook.org/ns/docbook'/>", {"Space"}},
      {"d.dita", "<topic>", {"Root", "Name"}},
      {"report-1.xml", "no XML at all", {"Name"}},
      {"report-12.xml", "<x/>", {}},
      {"e.xml", "<x:topic xmlns:x='urn:other'/>", {"Root"}},
      {"f.xml", "", {}},
      {"g.xml", "<!DOCTYPE x PUBLIC \"-//Other//EN\" \"\"><x/>", {}},
  };
  const test::Folder folder;
  for (const Case &each : cases)
    EXPECT_EQ(host::FindApplications(configuration, folder.Write(each.name, each.content)), each.applications)
        << each.name;
  EXPECT_EQ(host::FindApplications(configuration, folder.Path("missing.dita")), Names{"Name"});
}

} // namespace
