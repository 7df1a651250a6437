#include "host/configuration/configuration.h"

#include "host/configuration/configuration_keys.h"
#include "kit/names.h"
#include "kit/paths.h"
#include "kit/read_file.h"
#include "kit/text.h"

#include <toml++/toml.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <span>
#include <sstream>
#include <system_error>
#include <variant>

namespace host {

namespace {

size_t EditDistance(std::string_view left, std::string_view right) {
  std::vector<size_t> row(right.size() + 1);
  for (size_t at = 0; at < row.size(); ++at)
    row[at] = at;
  for (size_t line = 1; line <= left.size(); ++line) {
    size_t diagonal = std::exchange(row[0], line);
    for (size_t at = 1; at < row.size(); ++at) {
      const size_t replaced = diagonal + (left[line - 1] == right[at - 1] ? 0 : 1);
      diagonal = row[at];
      row[at] = std::min({replaced, row[at] + 1, row[at - 1] + 1});
    }
  }
  return row.back();
}

std::string NameType(const toml::node &node) {
  switch (node.type()) {
  case toml::node_type::string:
    return "text";
  case toml::node_type::integer:
  case toml::node_type::floating_point:
    return "a number";
  case toml::node_type::boolean:
    return "true or false";
  case toml::node_type::array:
    return "a list";
  case toml::node_type::table:
    return "a table";
  default:
    return "a date or time";
  }
}

bool BeginsWithVariable(std::string_view path) {
  return kit::StartsWithIgnoreCase(path, kit::structureVariable) ||
         kit::StartsWithIgnoreCase(path, kit::installVariable);
}

std::string UseSlashes(std::string path) {
  std::ranges::replace(path, '\\', '/');
  return path;
}

class ConfigurationReader {
public:
  ConfigurationReader(ConfigurationResult &into, std::string file)
      : result(into), path(std::move(file)), folder(kit::FolderOf(path)) {}

  void Read(const toml::table &root) {
    for (const auto &[key, node] : root) {
      if (key.str() == tableKeys[0])
        ReadTables(key.str(), node, processorKeys, result.configuration.processors);
      else if (key.str() == tableKeys[1])
        ReadTables(key.str(), node, applicationKeys, result.configuration.applications);
      else if (const auto group = std::ranges::find(keyGroups, key.str(), &KeyGroup::name); group != keyGroups.end())
        ReadGroup(*group, node);
      else
        ReadKey(key, node, configurationKeys, result.configuration, NamesOfTables());
    }
  }

  void Report(const toml::source_position &at, const std::string &what) {
    found.push_back({at, path + ":" + std::to_string(at.line) + ":" + std::to_string(at.column) + ": " + what});
  }

  // Tables come in the order of their keys; a person reads a file from its top.
  void ReportProblems() {
    std::ranges::stable_sort(found, {}, [](const Problem &each) { return std::pair(each.at.line, each.at.column); });
    for (Problem &each : found)
      result.problems.push_back(std::move(each.text));
  }

private:
  static std::vector<std::string_view> NamesOfTables() {
    std::vector<std::string_view> names(tableKeys.begin(), tableKeys.end());
    for (const KeyGroup &group : keyGroups)
      names.push_back(group.name);
    return names;
  }

  void ReadGroup(const KeyGroup &group, const toml::node &node) {
    const std::string name(group.name);
    if (const toml::table *table = node.as_table())
      for (const auto &[key, value] : *table)
        ReadKey(key, value, group.keys, result.configuration, {});
    else
      Report(node.source().begin, "\"" + name + "\" must be written as [" + name + "], not as " + NameType(node));
  }

  template <class Rules, class Record>
  void ReadTables(std::string_view key, const toml::node &node, const Rules &rules, std::vector<Record> &records) {
    const toml::array *tables = node.as_array();
    if (!tables || !std::ranges::all_of(*tables, [](const toml::node &each) { return each.is_table(); })) {
      const std::string name(key);
      Report(node.source().begin, "\"" + name + "\" must be written as [[" + name + "]], not as " + NameType(node));
      return;
    }
    for (const toml::node &each : *tables) {
      Record record;
      for (const auto &[field, value] : *each.as_table())
        ReadKey(field, value, rules, record, {});
      for (const auto &rule : rules)
        if (rule.presence == Presence::Required && !each.as_table()->contains(rule.key))
          Report(each.source().begin, "[[" + std::string(key) + "]] needs the key \"" + std::string(rule.key) + "\"");
      records.push_back(std::move(record));
    }
  }

  template <class Rules, class Record>
  void ReadKey(const toml::key &key, const toml::node &node, const Rules &rules, Record &record,
               std::span<const std::string_view> otherKeys) {
    const auto rule = std::ranges::find(rules, key.str(), [](const auto &each) { return each.key; });
    if (rule == rules.end()) {
      std::vector<std::string_view> known(otherKeys.begin(), otherKeys.end());
      for (const auto &each : rules)
        known.push_back(each.key);
      ReportUnknown(key, known);
    } else if (const auto *single = std::get_if<std::string Record::*>(&rule->field)) {
      if (const std::optional<std::string> text = ReadText(key, node))
        record.*(*single) = Understand(*text, rule->meaning);
    } else if (const auto *list = std::get_if<std::vector<std::string> Record::*>(&rule->field)) {
      record.*(*list) = ReadList(key, node, rule->meaning);
    } else if (const auto *flag = std::get_if<bool Record::*>(&rule->field)) {
      record.*(*flag) = ReadFlag(key, node, record.*(*flag));
    } else if (const auto *count = std::get_if<int32_t Record::*>(&rule->field)) {
      record.*(*count) = ReadCount(key, node, record.*(*count));
    } else {
      record.*std::get<std::vector<AttributeSetting> Record::*>(rule->field) = ReadAttributes(key, node);
    }
  }

  std::optional<std::string> ReadText(const toml::key &key, const toml::node &node) {
    if (const auto *text = node.as_string())
      return text->get();
    Report(node.source().begin, "\"" + std::string(key.str()) + "\" must be text, not " + NameType(node));
    return std::nullopt;
  }

  bool ReadFlag(const toml::key &key, const toml::node &node, bool otherwise) {
    if (const auto *flag = node.as_boolean())
      return flag->get();
    Report(node.source().begin, "\"" + std::string(key.str()) + "\" must be true or false, not " + NameType(node));
    return otherwise;
  }

  int32_t ReadCount(const toml::key &key, const toml::node &node, int32_t otherwise) {
    const auto *number = node.as_integer();
    if (number && number->get() >= 0 && number->get() <= maxJobs)
      return static_cast<int32_t>(number->get());
    Report(node.source().begin, "\"" + std::string(key.str()) + "\" must be a whole number from 0 to " +
                                    std::to_string(maxJobs) + (number ? "" : ", not " + NameType(node)));
    return otherwise;
  }

  std::vector<std::string> ReadList(const toml::key &key, const toml::node &node, Meaning meaning) {
    std::vector<std::string> items;
    if (const toml::array *list = node.as_array()) {
      for (const toml::node &each : *list)
        if (const std::optional<std::string> text = ReadText(key, each)) {
          if (meaning == Meaning::Host && !IsHostName(*text))
            Report(each.source().begin, "\"" + *text + "\" is no host; write NAME or NAME:PORT, or \"*\" for all");
          items.push_back(Understand(*text, meaning));
        }
    } else {
      Report(node.source().begin, "\"" + std::string(key.str()) + "\" must be a list of texts, not " + NameType(node));
    }
    return items;
  }

  std::vector<AttributeSetting> ReadAttributes(const toml::key &key, const toml::node &node) {
    std::vector<AttributeSetting> attributes;
    const toml::table *table = node.as_table();
    if (!table) {
      Report(node.source().begin, "\"" + std::string(key.str()) + "\" must be a table, not " + NameType(node));
      return attributes;
    }
    for (const auto &[name, value] : *table) {
      if (const auto *text = value.as_string())
        attributes.push_back({std::string(name.str()), "string", text->get()});
      else if (const auto *flag = value.as_boolean())
        attributes.push_back({std::string(name.str()), "boolean", flag->get() ? "true" : "false"});
      else if (value.is_number())
        attributes.push_back({std::string(name.str()), value.is_integer() ? "integer" : "number", FormatNumber(value)});
      else
        Report(value.source().begin, "the attribute \"" + std::string(name.str()) +
                                         "\" must be text, a number, true or false, not " + NameType(value) +
                                         (value.is_table() ? "; a name with dots in it is written in quotes" : ""));
    }
    return attributes;
  }

  static std::string FormatNumber(const toml::node &node) {
    if (const auto *integer = node.as_integer())
      return std::to_string(integer->get());
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), node.as_floating_point()->get());
    const std::string text(digits.data(), end.ptr);
    return text.find_first_of(".en") == std::string::npos ? text + ".0" : text;
  }

  void ReportUnknown(const toml::key &key, const std::vector<std::string_view> &known) {
    const auto distance = [&](std::string_view name) { return EditDistance(key.str(), name); };
    const std::string_view nearest = *std::ranges::min_element(known, {}, distance);
    std::string what = "unknown key \"" + std::string(key.str()) + "\"";
    if (distance(nearest) <= std::max<size_t>(2, nearest.size() / 3))
      what += "; did you mean \"" + std::string(nearest) + "\"?";
    Report(key.source().begin, what);
  }

  std::string Understand(const std::string &text, Meaning meaning) const {
    if (text.empty() || meaning == Meaning::Text || meaning == Meaning::Host)
      return text;
    if (meaning == Meaning::ClassPath)
      return ReadClassPath(text);
    if (meaning == Meaning::StoredPath && (BeginsWithVariable(text) || kit::IsUrl(text)))
      return text;
    if (meaning == Meaning::WriteFolder && (text == kit::writeBesideOutput || text == "*"))
      return text;
    return MakeAbsolute(text);
  }

  std::string MakeAbsolute(const std::string &text) const {
    const std::string plain = UseSlashes(kit::UrlToPath(text));
    return kit::AbsolutePath(kit::IsAbsolutePath(plain) ? plain : kit::JoinPath(folder, plain));
  }

  std::string ReadClassPath(const std::string &text) const {
    std::string joined;
    std::istringstream entries(text);
    for (std::string entry; std::getline(entries, entry, ';');) {
      if (entry.empty())
        continue;
      for (const std::string &each : ExpandEntry(MakeAbsolute(entry)))
        joined.append(joined.empty() ? "" : ";").append(each);
    }
    return joined;
  }

  // "folder/*" means every archive in the folder, as it does on a Java command line.
  static std::vector<std::string> ExpandEntry(const std::string &entry) {
    if (!entry.ends_with("/*"))
      return {entry};
    std::vector<std::string> archives;
    std::error_code error;
    for (const auto &file : std::filesystem::directory_iterator(kit::FolderOf(entry), error))
      if (file.path().extension() == ".jar")
        archives.push_back(file.path().string());
    std::ranges::sort(archives);
    return archives;
  }

  struct Problem {
    toml::source_position at;
    std::string text;
  };

  ConfigurationResult &result;
  std::vector<Problem> found;
  std::string path;
  std::string folder;
};

// Fills what the file leaves open, and brings folders into the form that clients get.
void Complete(Configuration &configuration, const Installation &installation) {
  if (configuration.installFolder.empty())
    configuration.installFolder = installation.shareFolder;
  if (!configuration.installFolder.ends_with('/'))
    configuration.installFolder += '/';
  if (configuration.structureFolder.empty())
    configuration.structureFolder = configuration.installFolder + "structure";
  while (configuration.structureFolder.size() > 1 && configuration.structureFolder.ends_with('/'))
    configuration.structureFolder.pop_back();
}

} // namespace

bool IsHostName(std::string_view text) { return !text.empty() && text.find_first_of("/\\@?# \t") == text.npos; }

std::string OwnConfigurationPath() {
  const std::string folder = kit::PersonalFolder("XDG_CONFIG_HOME", ".config");
  return folder.empty() ? folder : kit::JoinPath(folder, "vlxslt/vlxslt.toml");
}

std::string FindConfigurationFile(const std::string &named, const Installation &installation) {
  if (!named.empty())
    return named;
  if (const char *path = std::getenv("VLXSLT_CONFIG"); path && *path)
    return path;
  if (std::string own = OwnConfigurationPath(); kit::Exists(own))
    return own;
  const std::string installed = installation.DefaultConfigurationPath();
  return kit::Exists(installed) ? installed : std::string();
}

ConfigurationResult ReadConfiguration(const std::string &path, const Installation &installation) {
  ConfigurationResult result;
  if (!path.empty()) {
    const std::string absolute = kit::AbsolutePath(path);
    const kit::FileContent content = kit::ReadFile(absolute);
    if (!content.error.empty()) {
      result.problems.push_back("the configuration file cannot be read: " + content.error);
      return result;
    }
    ConfigurationReader reader(result, absolute);
    const toml::parse_result parsed = toml::parse(content.bytes);
    if (!parsed)
      reader.Report(parsed.error().source().begin, std::string(parsed.error().description()));
    else
      reader.Read(parsed.table());
    reader.ReportProblems();
    result.configuration.source = absolute;
    result.configuration.isInstalledDefault = absolute == kit::AbsolutePath(installation.DefaultConfigurationPath());
  }
  Complete(result.configuration, installation);
  return result;
}

} // namespace host
