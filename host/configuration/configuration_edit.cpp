#include "host/configuration/configuration_edit.h"

#include "host/configuration/configuration_keys.h"

#include <toml++/toml.h>

#include <algorithm>
#include <iomanip>
#include <iterator>
#include <set>
#include <sstream>
#include <string_view>
#include <utility>

namespace host {

namespace {

// As the rest of such files is written: in double quotes.
std::string Format(const std::string &text) {
  std::ostringstream stream;
  stream << '"';
  for (const char letter : text) {
    if (letter == '"' || letter == '\\')
      stream << '\\' << letter;
    else if (static_cast<unsigned char>(letter) < 0x20 || letter == 0x7F)
      stream << "\\u" << std::hex << std::setw(4) << std::setfill('0') << static_cast<int>(letter);
    else
      stream << letter;
  }
  stream << '"';
  return stream.str();
}

std::string Format(const std::vector<std::string> &items) {
  std::string text = "[";
  for (const std::string &item : items)
    text.append(text.size() > 1 ? ", " : "").append(Format(item));
  return text + "]";
}

std::string Format(bool flag) { return flag ? "true" : "false"; }

std::string Format(int32_t number) { return std::to_string(number); }

bool IsEmpty(bool flag) { return !flag; }
bool IsEmpty(int32_t number) { return number == 0; }
template <class Value> bool IsEmpty(const Value &value) { return value.empty(); }

// On one line, so that it can follow a key.
std::string Format(const std::vector<AttributeSetting> &attributes) {
  std::string text = "{";
  for (const AttributeSetting &each : attributes)
    text.append(text.size() > 1 ? ", " : " ")
        .append(Format(each.name) + " = " + (each.type == "string" ? Format(each.value) : each.value));
  return text + " }";
}

// One assignment that is to stand in a section.
struct Assignment {
  std::string key;
  std::string value;
};

template <class Record> std::string FormatField(const Record &record, const KeyRule<Record> &rule) {
  return std::visit([&](auto field) { return Format(record.*field); }, rule.field);
}

template <class Record, class Rules>
std::vector<Assignment> ListChanges(const Record &before, const Record &after, const Rules &rules) {
  std::vector<Assignment> changes;
  for (const KeyRule<Record> &rule : rules)
    if (std::visit([&](auto field) { return before.*field != after.*field; }, rule.field))
      changes.push_back({std::string(rule.key), FormatField(after, rule)});
  return changes;
}

// The assignments of a record that is new to the file.
template <class Record, class Rules> std::vector<Assignment> ListAll(const Record &record, const Rules &rules) {
  std::vector<Assignment> all;
  for (const KeyRule<Record> &rule : rules)
    if (rule.presence != Presence::Optional ||
        !std::visit([&](auto field) { return IsEmpty(record.*field); }, rule.field))
      all.push_back({std::string(rule.key), FormatField(record, rule)});
  return all;
}

// A run of whole lines: what stands before the first header, or a header with the comments right above it and all that
// follows it.
struct Section {
  std::string kind; // "processor", "application", the name of another table, or empty
  size_t firstLine = 0;
  std::vector<std::string> lines;
};

std::vector<std::string> SplitLines(const std::string &text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);)
    lines.push_back(line);
  return lines;
}

std::string KindOf(const toml::table &root, size_t line, std::string_view kind) {
  if (const toml::array *tables = root[kind].as_array())
    for (const toml::node &each : *tables)
      if (each.source().begin.line == line)
        return std::string(kind);
  if (const toml::table *table = root[kind].as_table(); table && !table->is_inline())
    if (table->source().begin.line == line)
      return std::string(kind);
  return {};
}

// Of all tables that begin a section.
std::vector<std::string_view> ListKinds() {
  std::vector<std::string_view> kinds(tableKeys.begin(), tableKeys.end());
  std::ranges::transform(keyGroups, std::back_inserter(kinds), &KeyGroup::name);
  return kinds;
}

// Lines of a table's own values, from 1; a line of a long text may look like a comment or a header.
std::set<size_t> FindValueLines(const toml::table &table) {
  std::set<size_t> lines;
  for (const auto &[key, node] : table)
    if (const toml::table *inner = node.as_table(); (!inner || inner->is_inline()) && !node.is_array_of_tables())
      for (size_t line = node.source().begin.line; line <= node.source().end.line; ++line)
        lines.insert(line);
  return lines;
}

// Those of the tables inside it too.
std::set<size_t> FindAllValueLines(const toml::table &table) {
  std::set<size_t> lines = FindValueLines(table);
  for (const auto &[key, node] : table)
    if (const toml::table *inner = node.as_table())
      lines.merge(FindAllValueLines(*inner));
  return lines;
}

bool IsComment(const std::string &line) {
  const size_t first = line.find_first_not_of(" \t");
  return first != std::string::npos && line[first] == '#';
}

std::vector<Section> SplitSections(const std::string &text, const toml::table &root) {
  const std::vector<std::string> lines = SplitLines(text);
  std::set<size_t> valueLines = FindValueLines(root);
  for (const std::string_view kind : ListKinds()) {
    if (const toml::array *tables = root[kind].as_array())
      for (const toml::node &each : *tables)
        if (const toml::table *table = each.as_table())
          valueLines.merge(FindAllValueLines(*table));
    if (const toml::table *table = root[kind].as_table())
      valueLines.merge(FindAllValueLines(*table));
  }
  std::vector<Section> sections(1);
  for (size_t at = 0; at < lines.size(); ++at) {
    std::string kind;
    for (const std::string_view each : ListKinds())
      if (kind.empty())
        kind = KindOf(root, at + 1, each);
    if (!kind.empty()) {
      Section next{kind, at, {}};
      std::vector<std::string> &before = sections.back().lines;
      while (!before.empty() && IsComment(before.back()) && !valueLines.contains(next.firstLine)) {
        next.lines.insert(next.lines.begin(), before.back());
        before.pop_back();
        --next.firstLine;
      }
      sections.push_back(std::move(next));
    }
    sections.back().lines.push_back(lines[at]);
  }
  return sections;
}

// What is under a header of its own may come anywhere later in the file.
bool StandsInside(const Section &section, const toml::table &table) {
  for (const auto &[key, node] : table) {
    const size_t line = node.source().begin.line;
    const toml::table *inner = node.as_table();
    if (line <= section.firstLine || line > section.firstLine + section.lines.size() ||
        (inner && !StandsInside(section, *inner)))
      return false;
  }
  return true;
}

// Whether there is one section for each of `count` tables, with all of the table in it.
bool HasSections(const std::vector<Section> &sections, const toml::table &root, std::string_view kind, size_t count) {
  size_t index = 0;
  for (const Section &section : sections)
    if (section.kind == kind && !StandsInside(section, *root[kind].as_array()->get_as<toml::table>(index++)))
      return false;
  return index == count;
}

// Columns count characters, strings count bytes.
size_t ByteOfColumn(const std::string &line, size_t column) {
  size_t at = 0;
  for (size_t seen = 1; at < line.size() && seen < column; ++seen)
    do
      ++at;
    while (at < line.size() && (static_cast<unsigned char>(line[at]) & 0xC0U) == 0x80U);
  return at;
}

// A table under a header of its own, or of dotted keys, is not one place in the text.
bool CanReplace(const toml::table &table, const std::vector<Assignment> &changes) {
  return std::ranges::all_of(changes, [&](const Assignment &change) {
    const toml::table *inner = table[change.key].as_table();
    return !inner || inner->is_inline();
  });
}

bool CanReplaceAttributes(const toml::table &root, const ConfigurationChange &change) {
  for (size_t index = 0; index < change.after.processors.size(); ++index)
    if (const int origin = change.processorOrigins[index]; origin >= 0) {
      const auto from = static_cast<size_t>(origin);
      if (!CanReplace(*root[tableKeys[0]].as_array()->get_as<toml::table>(from),
                      ListChanges(change.before.processors[from], change.after.processors[index], processorKeys)))
        return false;
    }
  return true;
}

void ReplaceValue(Section &section, const toml::source_region &where, const std::string &value) {
  const size_t first = where.begin.line - 1 - section.firstLine;
  const size_t last = where.end.line - 1 - section.firstLine;
  const std::string head = section.lines[first].substr(0, ByteOfColumn(section.lines[first], where.begin.column));
  const std::string tail = section.lines[last].substr(ByteOfColumn(section.lines[last], where.end.column));
  // Lines are only emptied: the positions of later values must stay true.
  for (size_t at = first + 1; at <= last; ++at)
    section.lines[at] = "\v";
  section.lines[first] = head + value + tail;
}

// Behind the section's last value, so that nothing that still has to be found moves.
void AddValues(Section &section, const toml::table &table, const std::vector<Assignment> &added) {
  const std::set<size_t> lines = FindValueLines(table);
  // Without any value: behind the header, or at the top of the file.
  const size_t place =
      lines.empty() ? (section.kind.empty() ? 0 : section.lines.size()) : *lines.rbegin() - section.firstLine;
  std::vector<std::string> text(added.size());
  std::ranges::transform(added, text.begin(), [](const Assignment &each) { return each.key + " = " + each.value; });
  section.lines.insert(section.lines.begin() + static_cast<std::ptrdiff_t>(place), text.begin(), text.end());
}

void Apply(Section &section, const toml::table &table, const std::vector<Assignment> &changes) {
  for (const Assignment &change : changes)
    if (const toml::node *node = table.get(change.key))
      ReplaceValue(section, node->source(), change.value);
  std::vector<Assignment> added;
  std::ranges::copy_if(changes, std::back_inserter(added),
                       [&](const Assignment &change) { return !table.contains(change.key); });
  AddValues(section, table, added);
  std::erase(section.lines, "\v");
}

Section MakeSection(const std::string &kind, const std::string &header, const std::vector<Assignment> &values) {
  Section section{kind, 0, {header}};
  for (const Assignment &value : values)
    section.lines.push_back(value.key + " = " + value.value);
  section.lines.emplace_back();
  return section;
}

// The sections of one kind in their new order, at the place of the first one.
template <class Record, class Rules>
std::vector<Section> ArrangeSections(std::vector<Section> sections, const toml::table &root, const std::string &kind,
                                     const std::vector<Record> &before, const std::vector<Record> &after,
                                     const std::vector<int> &origins, const Rules &rules) {
  std::vector<Section> old;
  std::vector<Section> others;
  size_t place = sections.size();
  for (Section &each : sections) {
    if (each.kind == kind)
      place = std::min(place, others.size());
    (each.kind == kind ? old : others).push_back(std::move(each));
  }
  std::vector<Section> arranged;
  for (size_t index = 0; index < after.size(); ++index) {
    if (const int origin = origins[index]; origin >= 0) {
      const auto from = static_cast<size_t>(origin);
      Apply(old[from], *root[kind].as_array()->get_as<toml::table>(from),
            ListChanges(before[from], after[index], rules));
      arranged.push_back(std::move(old[from]));
    } else {
      arranged.push_back(MakeSection(kind, "[[" + kind + "]]", ListAll(after[index], rules)));
    }
  }
  place = std::min(place, others.size());
  others.insert(others.begin() + static_cast<std::ptrdiff_t>(place), std::make_move_iterator(arranged.begin()),
                std::make_move_iterator(arranged.end()));
  return others;
}

std::string Join(const std::vector<Section> &sections) {
  std::string text;
  for (const Section &section : sections) {
    // A section that was the last one may lack the blank line that now must follow it.
    if (!section.kind.empty() && !text.empty() && !text.ends_with("\n\n"))
      text += '\n';
    for (const std::string &line : section.lines)
      text.append(line).append("\n");
  }
  while (text.ends_with("\n\n"))
    text.pop_back();
  return text;
}

} // namespace

EditedConfiguration EditConfiguration(const std::string &text, const ConfigurationChange &change) {
  // The parser does not count a byte order mark in the columns of the first line.
  static constexpr std::string_view mark = "\xEF\xBB\xBF";
  if (text.starts_with(mark)) {
    EditedConfiguration edited = EditConfiguration(text.substr(mark.size()), change);
    edited.text.insert(0, mark);
    return edited;
  }
  const toml::parse_result parsed = toml::parse(text);
  if (!parsed)
    return {text, std::string(parsed.error().description())};
  const toml::table &root = parsed.table();
  std::vector<Section> sections = SplitSections(text, root);
  if (!HasSections(sections, root, tableKeys[0], change.before.processors.size()) ||
      !HasSections(sections, root, tableKeys[1], change.before.applications.size()))
    return {text, "the file changed meanwhile, or holds its tables in a form that only a person can edit"};
  if (!CanReplaceAttributes(root, change))
    return {text, "attributes under a header of their own can only be changed by a person"};
  Apply(sections.front(), root, ListChanges(change.before, change.after, configurationKeys));
  sections = ArrangeSections(std::move(sections), root, "processor", change.before.processors, change.after.processors,
                             change.processorOrigins, processorKeys);
  sections = ArrangeSections(std::move(sections), root, "application", change.before.applications,
                             change.after.applications, change.applicationOrigins, applicationKeys);
  return {Join(sections), {}};
}

std::string WriteConfiguration(const Configuration &configuration) {
  std::vector<Section> sections(1);
  for (const Assignment &each : ListAll(configuration, configurationKeys))
    sections.front().lines.push_back(each.key + " = " + each.value);
  for (const ProcessorSetting &each : configuration.processors)
    sections.push_back(MakeSection("processor", "[[processor]]", ListAll(each, processorKeys)));
  for (const ApplicationSetting &each : configuration.applications)
    sections.push_back(MakeSection("application", "[[application]]", ListAll(each, applicationKeys)));
  for (const KeyGroup &group : keyGroups) {
    const std::string name(group.name);
    sections.push_back(MakeSection(name, "[" + name + "]", ListAll(configuration, group.keys)));
  }
  return Join(sections);
}

} // namespace host
