// Configurations in every layout that people write, changed at random: what is read afterwards is what was wanted, and
// no comment is lost. Seeded, so that a failure comes again.
#include "host/configuration/configuration_edit.h"
#include "tests/unit/folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

using host::ApplicationSetting;
using host::Configuration;
using host::ConfigurationChange;
using host::ProcessorSetting;
using Strings = std::vector<std::string>;

// What a comparison reads; two configurations are the same when these are.
std::string Describe(const Configuration &all) {
  std::string text;
  const auto add = [&text](const std::string &value) { text += "<" + value + ">\n"; };
  const auto addAll = [&](const Strings &values) {
    text += std::to_string(values.size()) + ":";
    std::ranges::for_each(values, add);
  };
  for (const std::string *value : {&all.product, &all.defaultCatalogue, &all.javaHome, &all.editor})
    add(*value);
  addAll(all.catalogs);
  addAll(all.javaOptions);
  addAll(all.trustedHosts);
  addAll(all.writeFolders);
  add(std::string(all.allowsExtensions ? "extensions" : "") + (all.syncsOutputs ? " sync" : ""));
  for (const ProcessorSetting &each : all.processors) {
    addAll({each.name, each.classPath, each.className, each.allowsExtensions ? "extensions" : ""});
    for (const host::AttributeSetting &attribute : each.attributes)
      addAll({attribute.name, attribute.type, attribute.value});
  }
  for (const ApplicationSetting &each : all.applications) {
    addAll({each.name, each.catalogue});
    for (const Strings *list : {&each.roots, &each.publicIds, &each.namespaces, &each.files})
      addAll(*list);
  }
  return text;
}

class Editing : public testing::Test {
protected:
  int Below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }
  bool Chance() { return Below(2) == 0; }

  std::string Word() {
    static const Strings words = {"",       "plain", "two words", "qu\"ote", "it's",      "back\\slash",
                                  "tab\t.", "üñ中𝄞", "# no c",    "[[x]]",   "a = \"b\"", "line\nfeed"};
    return words[static_cast<size_t>(Below(static_cast<int>(words.size())))];
  }
  std::string Path() { return "/p " + std::to_string(Below(90)) + "/ü#\"'" + std::to_string(Below(90)); }
  template <class Make> Strings Some(Make make) {
    Strings made;
    for (int count = Below(4); count > 0; --count)
      made.push_back(make());
    return made;
  }

  ProcessorSetting MakeProcessor() {
    ProcessorSetting made{Word(), Path() + ";" + Path(), Word()};
    if (Chance())
      made.attributes = {
          {"a flag", "boolean", "true"}, {"http://x/number", "number", "1.5"}, {"text", "string", Word()}};
    made.allowsExtensions = Chance();
    return made;
  }
  ApplicationSetting MakeApplication() {
    const auto word = [this] { return Word(); };
    return {Word(), Path(), Some(word), Some(word), Some(word), Some(word)};
  }

  // A value in one of the forms that it can be written in.
  std::string Literal(const std::string &text) {
    const bool isPlain = text.find_first_of("'\n\t") == std::string::npos;
    if (isPlain && Chance())
      return "'" + text + "'";
    std::string escaped;
    for (const char letter : text)
      escaped += letter == '"' || letter == '\\' ? std::string("\\") + letter
                 : letter == '\n'                ? "\\n"
                 : letter == '\t'                ? "\\t"
                                                 : std::string(1, letter);
    return Chance() ? "\"" + escaped + "\"" : "\"\"\"" + std::string(Chance() ? "\n" : "") + escaped + "\"\"\"";
  }
  std::string Literal(const Strings &items) {
    const bool isTall = Chance();
    std::string text = "[";
    for (const std::string &item : items)
      text += (isTall ? "\n  " : " ") + Literal(item) + (isTall ? ", " + Comment() : ", ");
    return text + (isTall ? "\n]" : "]");
  }
  // On one line.
  std::string Quoted(const std::vector<host::AttributeSetting> &attributes) {
    std::string literal = Literal(attributes.back().value);
    while (literal.find('\n') != std::string::npos)
      literal = Literal(attributes.back().value);
    return literal;
  }
  std::string Comment() {
    comments.push_back("#c" + std::to_string(comments.size()) + ".ü\"[[");
    return comments.back();
  }
  template <class Value> void Write(std::string &text, const std::string &key, const Value &value) {
    if (Chance())
      text += Comment() + "\n";
    text += (Chance() ? "" : "  ") + key + (Chance() ? " = " : "=") + Literal(value);
    text += Chance() ? "  " + Comment() + "\n" : "\n";
    if (Below(4) == 0)
      text += "\n";
  }

  // The configuration as text, in some layout; keys may be missing where that means the same.
  std::string Compose(const Configuration &all) {
    std::string text;
    // Now and then the first line is one that will be changed.
    if (all.product != "Vellis")
      Write(text, "product", all.product);
    const auto unlessEmpty = [&](const std::string &key, const auto &value) {
      if (!value.empty() || Chance())
        Write(text, key, value);
    };
    unlessEmpty("default_catalogue", all.defaultCatalogue);
    unlessEmpty("java_home", all.javaHome);
    unlessEmpty("editor", all.editor);
    unlessEmpty("catalogs", all.catalogs);
    unlessEmpty("java_options", all.javaOptions);
    const int place = Below(3);
    text += place == 0 ? ComposeGroups(all) : "";
    for (const ProcessorSetting &each : all.processors) {
      text += (Chance() ? "\n" + Comment() + "\n" : "") + std::string("[[processor]]\n");
      Write(text, "name", each.name);
      unlessEmpty("class_path", each.classPath);
      if (each.allowsExtensions)
        text += "extensions = true " + Comment() + "\n";
      const bool isInline = Chance();
      if (isInline && !each.attributes.empty())
        text += "attributes = {\"a flag\" = true, 'http://x/number' = 1.5, text = " + Quoted(each.attributes) + "}\n";
      Write(text, "class_name", each.className);
      if (!isInline && !each.attributes.empty()) {
        text += "[processor.attributes] " + Comment() + "\n\"http://x/number\" = 1.5\n'a flag' = true\n";
        Write(text, "text", each.attributes.back().value);
      }
    }
    text += place == 1 ? ComposeGroups(all) : "";
    for (const ApplicationSetting &each : all.applications) {
      text += "[[application]] " + Comment() + "\n";
      Write(text, "name", each.name);
      unlessEmpty("catalogue", each.catalogue);
      unlessEmpty("root", each.roots);
      unlessEmpty("public_id", each.publicIds);
      unlessEmpty("namespace", each.namespaces);
      unlessEmpty("file", each.files);
    }
    return text + (place == 2 ? ComposeGroups(all) : "");
  }

  // The tables that no edit touches, which must stay where others come and go.
  std::string ComposeGroups(const Configuration &all) {
    std::string text =
        "[outputs]\nsync = " + std::string(all.syncsOutputs ? "true" : "false") + "\n" + Comment() + "\n[trust]\n";
    Write(text, "write", all.writeFolders);
    Write(text, "network", all.trustedHosts);
    return text + "extensions = " + (all.allowsExtensions ? "true\n" : "false\n");
  }

  Configuration Read(const std::string &text) const {
    const host::ConfigurationResult read = host::ReadConfiguration(files.Write("c.toml", text), {});
    EXPECT_EQ(read.problems, Strings()) << text;
    return read.configuration;
  }

  // Some fields anew, some records gone, moved or added.
  template <class Record, class Make, class Change>
  void Shuffle(std::vector<Record> &records, std::vector<int> &origins, Make make, Change change) {
    std::vector<Record> shuffled;
    for (size_t at = 0; at < records.size(); ++at) {
      if (Below(5) == 0)
        continue;
      const size_t place = static_cast<size_t>(Below(static_cast<int>(shuffled.size()) + 1));
      if (Chance())
        change(records[at]);
      shuffled.insert(shuffled.begin() + static_cast<std::ptrdiff_t>(place), records[at]);
      origins.insert(origins.begin() + static_cast<std::ptrdiff_t>(place), static_cast<int>(at));
    }
    if (Chance()) {
      shuffled.push_back(make());
      origins.push_back(-1);
    }
    records = std::move(shuffled);
  }

  test::Folder files;
  std::mt19937 random{20240611};
  Strings comments;
};

TEST_F(Editing, GivesWhatWasWantedInEveryLayout) {
  for (int round = 0; round < 400; ++round) {
    comments.clear();
    Configuration all;
    all.product = Chance() ? "Vellis" : Word();
    all.javaHome = Chance() ? Path() : "";
    all.defaultCatalogue = Chance() ? Path() : "";
    all.editor = Word();
    all.syncsOutputs = Chance();
    all.allowsExtensions = Chance();
    all.trustedHosts = {"host:" + std::to_string(Below(9)), "*"};
    all.writeFolders = Some([this] { return Path(); });
    all.javaOptions = Some([this] { return Word(); });
    all.catalogs = Some([this] { return Path(); });
    for (int count = Below(4); count > 0; --count)
      all.processors.push_back(MakeProcessor());
    for (int count = Below(3); count > 0; --count)
      all.applications.push_back(MakeApplication());
    std::string text = Compose(all);
    if (Below(4) == 0)
      text.insert(0, "\xEF\xBB\xBF");

    ConfigurationChange change{Read(text), {}, {}, {}};
    ASSERT_EQ(Describe(change.before), Describe(all)) << text;
    change.after = change.before;
    const bool dropsNothing = Chance();
    if (Chance())
      change.after.javaHome = Path();
    if (Chance())
      change.after.editor = Word();
    if (Chance())
      change.after.javaOptions = Some([this] { return Word(); });
    if (dropsNothing) {
      for (size_t at = 0; at < all.processors.size(); ++at)
        change.processorOrigins.push_back(static_cast<int>(at));
      for (size_t at = 0; at < all.applications.size(); ++at)
        change.applicationOrigins.push_back(static_cast<int>(at));
    } else {
      Shuffle(
          change.after.processors, change.processorOrigins, [this] { return MakeProcessor(); },
          [this](ProcessorSetting &each) { (Chance() ? each.name : each.className) = Word(); });
      Shuffle(
          change.after.applications, change.applicationOrigins, [this] { return MakeApplication(); },
          [this](ApplicationSetting &each) { each.roots = Some([this] { return Word(); }); });
    }

    const host::EditedConfiguration edited = host::EditConfiguration(text, change);
    ASSERT_EQ(edited.error, "");
    ASSERT_EQ(Describe(Read(edited.text)), Describe(change.after)) << "from\n" << text << "\nto\n" << edited.text;
    if (dropsNothing && change.after.javaOptions == change.before.javaOptions) {
      for (const std::string &comment : comments)
        EXPECT_NE(edited.text.find(comment), std::string::npos) << comment << "\nfrom\n" << text;
    }
    // A second edit that wants nothing changes nothing.
    ConfigurationChange nothing{change.after, change.after, {}, {}};
    for (size_t at = 0; at < change.after.processors.size(); ++at)
      nothing.processorOrigins.push_back(static_cast<int>(at));
    for (size_t at = 0; at < change.after.applications.size(); ++at)
      nothing.applicationOrigins.push_back(static_cast<int>(at));
    EXPECT_EQ(host::EditConfiguration(edited.text, nothing).text, edited.text);

    EXPECT_EQ(Describe(Read(host::WriteConfiguration(change.after))), Describe(change.after));
    if (HasFailure())
      return;
  }
}

// Comments belong to the record behind them, wherever it goes.
TEST_F(Editing, MovesCommentsWithTheirRecords) {
  const std::string head = "# At the top.\njava_home = \"/old\"   # behind\n\n";
  const std::string first = "# The one we like.\n[[processor]]\nname = \"A\" # its name\nclass_name = \"a\"\n";
  const std::string second = "[[processor]]\nname = \"B\"\nclass_name = \"b\"\n\n# The end.\n";
  const std::string text = head + first + "\n" + second;
  ConfigurationChange change{Read(text), Read(text), {1, 0}, {}};
  std::swap(change.after.processors[0], change.after.processors[1]);
  EXPECT_EQ(host::EditConfiguration(text, change).text, head + second + "\n" + first);
  for (const char *other : {"", "[[processor]", "processor = [{name = \"a\", class_name = \"b\"}]"}) {
    const host::EditedConfiguration edited = host::EditConfiguration(other, change);
    EXPECT_NE(edited.error, "") << "it is not the text that was read";
    EXPECT_EQ(edited.text, other);
  }
}

} // namespace
