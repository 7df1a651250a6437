// Any bytes as a configuration. What reads without problems can be changed: afterwards it reads as what was wanted, and
// no other line has changed.
#include "host/configuration/configuration.h"
#include "host/configuration/configuration_edit.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/unit/folder.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <set>
#include <string>
#include <vector>

namespace {

using fuzz::Require;
using host::ApplicationSetting;
using host::Configuration;
using host::ConfigurationChange;
using host::ProcessorSetting;

bool IsSame(const ProcessorSetting &left, const ProcessorSetting &right) {
  return left.name == right.name && left.classPath == right.classPath && left.className == right.className &&
         left.attributes == right.attributes && left.allowsExtensions == right.allowsExtensions;
}

bool IsSame(const ApplicationSetting &left, const ApplicationSetting &right) {
  return left.name == right.name && left.catalogue == right.catalogue && left.roots == right.roots &&
         left.publicIds == right.publicIds && left.namespaces == right.namespaces && left.files == right.files;
}

bool IsSame(const Configuration &left, const Configuration &right) {
  const auto same = [](const auto &one, const auto &other) { return IsSame(one, other); };
  return left.product == right.product && left.installFolder == right.installFolder &&
         left.structureFolder == right.structureFolder && left.defaultCatalogue == right.defaultCatalogue &&
         left.tempFolder == right.tempFolder && left.catalogs == right.catalogs && left.javaHome == right.javaHome &&
         left.javaOptions == right.javaOptions && left.editor == right.editor &&
         left.trustedHosts == right.trustedHosts && left.allowsExtensions == right.allowsExtensions &&
         left.writeFolders == right.writeFolders && left.syncsOutputs == right.syncsOutputs &&
         std::ranges::equal(left.processors, right.processors, same) &&
         std::ranges::equal(left.applications, right.applications, same);
}

std::multiset<std::string> FilledLines(std::string_view text) {
  static constexpr std::string_view mark = "\xEF\xBB\xBF";
  std::multiset<std::string> lines;
  for (const std::string_view line : fuzz::Split(text.substr(text.starts_with(mark) ? mark.size() : 0), '\n'))
    if (!line.empty())
      lines.emplace(line);
  return lines;
}

class Editor {
public:
  Editor(const test::Folder &where, std::string content, Configuration read)
      : folder(where), text(std::move(content)), before(std::move(read)) {}

  [[nodiscard]] ConfigurationChange NoChange() const {
    ConfigurationChange change{before, before, std::vector<int>(before.processors.size()),
                               std::vector<int>(before.applications.size())};
    std::iota(change.processorOrigins.begin(), change.processorOrigins.end(), 0);
    std::iota(change.applicationOrigins.begin(), change.applicationOrigins.end(), 0);
    return change;
  }

  // How many of the lines that were there are not there any more.
  size_t Apply(const ConfigurationChange &change) const {
    const host::EditedConfiguration edited = host::EditConfiguration(text, change);
    if (!edited.error.empty()) {
      Require(edited.text == text, "what cannot be changed stays");
      return 0;
    }
    const auto read = host::ReadConfiguration(folder.Write("vlxslt.toml", edited.text), {"/none", "/none/"});
    Require(read.problems.empty(), "a changed configuration can be read");
    Require(IsSame(read.configuration, change.after), "a changed configuration is what was wanted");
    const auto old = FilledLines(text);
    const auto now = FilledLines(edited.text);
    std::vector<std::string> lost;
    std::ranges::set_difference(old, now, std::back_inserter(lost));
    return lost.size();
  }

private:
  const test::Folder &folder;
  std::string text;
  Configuration before;
};

void Edit(const Editor &editor) {
  Require(editor.Apply(editor.NoChange()) == 0, "no change loses no line");

  ConfigurationChange change = editor.NoChange();
  change.after.editor += "it's \"x\\\t";
  change.after.javaOptions.push_back("-D\x01=ü");
  (void)editor.Apply(change);

  change = editor.NoChange();
  change.after.processors.push_back({"new", "/a.jar", "the.Class", {{"http://x/y.z", "integer", "3"}}});
  change.processorOrigins.push_back(-1);
  change.after.applications.insert(change.after.applications.begin(), {"new", "/T.xml", {"root"}});
  change.applicationOrigins.insert(change.applicationOrigins.begin(), -1);
  Require(editor.Apply(change) == 0, "an addition loses no line");

  change = editor.NoChange();
  std::ranges::reverse(change.after.processors);
  std::ranges::reverse(change.processorOrigins);
  std::ranges::reverse(change.after.applications);
  std::ranges::reverse(change.applicationOrigins);
  Require(editor.Apply(change) == 0, "another order loses no line");

  change = editor.NoChange();
  for (ProcessorSetting &each : change.after.processors) {
    each.name += "2";
    each.attributes.push_back({"http://x/new", "boolean", "true"});
    std::ranges::sort(each.attributes, {}, &host::AttributeSetting::name);
  }
  for (ApplicationSetting &each : change.after.applications)
    each.files.push_back("*.x");
  (void)editor.Apply(change);

  change = editor.NoChange();
  if (!change.after.processors.empty()) {
    change.after.processors.erase(change.after.processors.begin());
    change.processorOrigins.erase(change.processorOrigins.begin());
  }
  (void)editor.Apply(change);
}

} // namespace

void fuzz::RunInput(std::string_view input) {
  static const test::Folder folder;
  const std::string path = folder.Write("vlxslt.toml", input);
  const auto read = host::ReadConfiguration(path, {"/none", "/none/"});
  for (const std::string &problem : read.problems)
    Require(problem.starts_with(path + ":"), "a problem has its place");
  if (!read.problems.empty())
    return;
  Edit(Editor(folder, std::string(input), read.configuration));
  const auto whole = folder.Write("vlxslt.toml", host::WriteConfiguration(read.configuration));
  const auto again = host::ReadConfiguration(whole, {"/none", "/none/"});
  Require(again.problems.empty() && IsSame(again.configuration, read.configuration), "a whole file reads the same");
}
