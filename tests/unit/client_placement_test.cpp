// Where results go: the four policies, names in the temporary folder, what may be overwritten, and what is done with
// finished outputs.
#include "client/output_placement.h"
#include "client/run_files.h"
#include "kit/paths.h"
#include "tests/unit/client_fixture.h"

#include <filesystem>
#include <sys/stat.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

using catalogue::OutputLocationKind;
using catalogue::TransformationOutput;
using client::ChosenOutput;
using client::PlannedJob;
using Strings = std::vector<std::string>;

using Placement = ClientParts;

TransformationOutput Policy(OutputLocationKind kind, const std::string &folder = {}, const std::string &suffix = {}) {
  TransformationOutput policy;
  policy.outputLocation = kind;
  policy.dirPath = folder;
  policy.suffix = suffix;
  return policy;
}

// Where the policy puts the result of an input, and the files that are written for it.
ChosenOutput Place(const TransformationOutput &policy, const std::string &input) {
  PlannedJob job;
  job.input = input;
  client::PlaceByPolicy(policy, job);
  return client::ChooseOutput(job);
}

TEST_F(Placement, ASuffixGoesBetweenNameAndExtension) {
  struct Row {
    const char *input, *suffix, *output;
  };
  for (const Row &row : {Row{"/d/report.xml", "_new", "/d/report_new.xml"}, Row{"/d/a.b.dita", "-x", "/d/a.b-x.dita"},
                         Row{"/d/plain", "_new", "/d/plain_new"}, Row{"/d.x/plain", "_new", "/d.x/plain_new"},
                         Row{"/d/.hidden", "_new", "/d/.hidden_new"}, Row{"/a.xml", " (ü)", "/a (ü).xml"},
                         Row{"/d/report.xml", "", "/d/report.xml"}}) {
    const ChosenOutput plan = Place(Policy(OutputLocationKind::SameLocationAsSource, "", row.suffix), row.input);
    EXPECT_EQ(plan.output, row.output);
    EXPECT_EQ(kit::FolderOf(plan.temporary), Path("temp")) << "it replaces the output only when it is whole";
    EXPECT_EQ(plan.Written(), plan.temporary);
  }
  EXPECT_EQ(Place(Policy(OutputLocationKind::SameLocationAsSource), "").output, "");
}

TEST_F(Placement, AFolderIsTakenFromTheInputOrAVariable) {
  struct Row {
    std::string folder, output;
  };
  for (const Row &row : {Row{"/out", "/out/in.xml"}, Row{"/out/", "/out/in.xml"}, Row{"html", "/docs/html/in.xml"},
                         Row{"../x", "/docs/../x/in.xml"}, Row{"$StructDir/o", Path("structure/o/in.xml")},
                         Row{"$VLHOMEo", install + "o/in.xml"}, Row{"sub\\deep", "/docs/sub/deep/in.xml"},
                         Row{"file:///a%20b", "/a b/in.xml"}, Row{"", ""}}) {
    const ChosenOutput plan = Place(Policy(OutputLocationKind::DirPath, row.folder), "/docs/in.xml");
    EXPECT_EQ(plan.output, row.output) << row.folder;
    EXPECT_EQ(plan.temporary.empty(), row.output.empty()) << row.folder;
  }
  EXPECT_EQ(Place(Policy(OutputLocationKind::DirPath, "/out"), "").output, "");
}

TEST_F(Placement, NetworkOutputsAreWrittenWhereTheyAre) {
  host.netFiles = {"dctm://store/in.xml", "dctm://store/in_x.xml"};
  const ChosenOutput plan = Place(Policy(OutputLocationKind::SameLocationAsSource, "", "_x"), "dctm://store/in.xml");
  EXPECT_EQ(plan.output, "dctm://store/in_x.xml");
  EXPECT_EQ(plan.temporary, "");
  EXPECT_EQ(plan.Written(), plan.output);
  EXPECT_TRUE(client::CheckOutput(plan.output).isAccepted);
  EXPECT_TRUE(host.asked.empty());
}

TEST_F(Placement, APersonIsAskedWhenThereIsAnInput) {
  EXPECT_EQ(Place(Policy(OutputLocationKind::Prompt), "").output, "");
  EXPECT_TRUE(host.asked.empty());
  host.choices = {"/chosen/x.xml"};
  EXPECT_EQ(Place(Policy(OutputLocationKind::Prompt), "/docs/in.xml").temporary, "");
  EXPECT_EQ(TakeAsked(), (std::vector<FakeHost::Asked>{
                             {V_CHOOSE_SAVE, "Save Output File\nXML (*.xml)|*.xml|All Files (*.*)|*.*|"}}));
}

TEST_F(Placement, TemporaryNamesAreUnusedOnes) {
  const Strings expected = {"in-out.xml", "in-out0.xml", "in-out1.xml", "in-out2.xml"};
  for (const std::string &name : expected) {
    EXPECT_EQ(client::TemporaryOutput("/docs/in.xml"), Path("temp/" + name));
    EXPECT_EQ(fs::status(Path("temp/" + name)).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  }
  fs::remove(Path("temp/in-out0.xml"));
  fs::create_symlink("nowhere", Path("temp/in-out0.xml"));
  EXPECT_EQ(client::TemporaryOutput("/docs/in.xml"), Path("temp/in-out3.xml")) << "a link may lead anywhere";
  fs::remove(Path("temp/in-out0.xml"));
  EXPECT_EQ(client::TemporaryOutput("/other/in.xml"), Path("temp/in-out0.xml"));
  EXPECT_EQ(client::TemporaryOutput("/docs/in.dita"), Path("temp/in-out.dita"));
  for (const char *name : {"plain-out", "plain-out0"})
    EXPECT_EQ(client::TemporaryOutput("/docs/plain"), Path("temp/" + std::string(name)));
  // Nothing is saved, or the value means nothing here: both are a temporary file, not one that replaces another.
  for (const auto kind : {OutputLocationKind::DoNotSave, static_cast<OutputLocationKind>(99)}) {
    fs::remove(Path("temp/in-out.dita"));
    const ChosenOutput plan = Place(Policy(kind), "/docs/in.dita");
    EXPECT_EQ(plan.output, Path("temp/in-out.dita"));
    EXPECT_EQ(plan.temporary, "");
  }
}

TEST_F(Placement, ChecksComeInTheirOrderAndSayWhy) {
  const std::string file = Write("out/file.xml", "old");
  fs::create_directories(Path("out/folder.xml"));
  ASSERT_EQ(mkfifo(Path("out/pipe").c_str(), 0600), 0);
  fs::create_symlink("nowhere/x", Path("out/dangling"));
  const auto noFolder = [](const std::string &name) {
    return "Cannot save the file at following location: " + name + ". Make sure folder exist.";
  };
  const auto readOnly = [](const std::string &name) {
    return "Cannot overwrite existing file: " + name + ". Make sure the file is not read-only. ";
  };
  struct Row {
    std::string output;
    bool isAsked;
    bool result;
    std::string problem;
  };
  for (const Row &row :
       {Row{"", false, false, ""}, Row{Path("none/a.xml"), false, false, noFolder(Path("none"))},
        Row{file + "/below", false, false, noFolder(file)}, Row{Path("out/new.xml"), false, true, ""},
        Row{file, true, true, ""}, Row{Path("out/folder.xml"), true, false, readOnly(Path("out/folder.xml"))},
        Row{Path("out/pipe"), true, false, readOnly(Path("out/pipe"))}}) {
    const client::OutputCheck check = client::CheckOutput(row.output);
    EXPECT_EQ(check.isAccepted, row.result) << row.output;
    EXPECT_EQ(check.problem ? check.problem->text : "", row.problem);
    EXPECT_EQ(TakeAsked().size(), row.isAsked ? 1U : 0U) << row.output;
  }
  host.answers = {V_ANSWER_DECLINE};
  const client::OutputCheck declined = client::CheckOutput(file);
  EXPECT_FALSE(declined.isAccepted);
  EXPECT_FALSE(declined.problem) << "a Cancel says enough";
  EXPECT_EQ(Read(file), "old");
  EXPECT_EQ(folder.Names("out").size(), 2U) << "looking leaves nothing behind";
}

std::string Replace(const std::string &temporary, const std::string &output) {
  return client::ReplaceOutput(temporary, output, kit::Durability::DataAndName);
}

TEST_F(Placement, ReplacingIsWholeOrNotAtAll) {
  const std::string target = Write("out/target.xml", "old");
  EXPECT_EQ(Replace(Write("temp/t", "new"), target), "");
  EXPECT_EQ(Read(target), "new");
  EXPECT_FALSE(fs::exists(Path("temp/t"))) << "it has taken its place";

  EXPECT_NE(Replace(Path("temp/gone"), target).find(Path("temp/gone")), std::string::npos);
  fs::permissions(target, fs::perms::owner_read);
  const std::string result = Write("temp/t", "newer");
  EXPECT_NE(Replace(result, target).find(target), std::string::npos);
  EXPECT_EQ(Read(target), "new");
  EXPECT_EQ(Read(result), "newer") << "the caller may still want it";
  EXPECT_EQ(folder.Names("out").size(), 1U);
}

// Two outputs that go at the end, unless something keeps them.
class Files : public ClientParts {
protected:
  Files() {
    for (const std::string name : {"temp/one", "temp/two"}) {
      files.OpenAtEnd(Write(name));
      files.DeleteAtEnd(Path(name));
    }
    files.DeleteAtEnd("");
    files.DeleteAtEnd(Path("temp/never made"));
  }

  client::RunFiles files;
};

TEST_F(Files, ThatTheHostHoldsMayGo) {
  files.OpenListedInHost(true);
  EXPECT_EQ(host.opened, (Strings{Path("temp/one"), Path("temp/two")}));
  files.DeleteListed();
  EXPECT_EQ(folder.Names("temp"), Strings());
}

TEST_F(Files, ThatCouldNotBeOpenedStay) {
  host.opensDocuments = false;
  files.OpenListedInHost(true);
  files.DeleteListed();
  EXPECT_EQ(folder.Names("temp").size(), 2U);
}

TEST_F(Files, BehindACancelStay) {
  host.isCancelled = [this] { return !host.opened.empty(); };
  files.OpenListedInHost(false);
  EXPECT_EQ(host.opened, Strings{Path("temp/one")});
  files.DeleteListed();
  EXPECT_EQ(folder.Names("temp"), Strings{"two"});
}

TEST_F(Files, OfTheDefaultProgramStay) {
  host.isCancelled = [this] { return !host.launched.empty(); };
  files.LaunchListed();
  EXPECT_EQ(host.launched, Strings{Path("temp/one")});
  files.DeleteListed();
  EXPECT_EQ(folder.Names("temp").size(), 2U) << "the program reads them later, and what was cancelled is not lost";
}

} // namespace
