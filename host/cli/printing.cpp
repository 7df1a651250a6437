#include "host/cli/printing.h"

#include "host/record/json_text.h"
#include "kit/values.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <span>
#include <utility>

namespace cli {

namespace {

using host::Json;

std::span<const V_TypedValT> Values(const V_TypedValsT &values) { return {values.val, values.len}; }

void AppendLine(std::string &text, int depth, std::string_view line) {
  text.append(static_cast<size_t>(depth) * 2, ' ').append(line);
  if (!line.ends_with('\n'))
    text += '\n';
}

void AppendReply(std::string &text, const V_TypedValsT &reply, int depth) {
  for (const V_TypedValT &value : Values(reply)) {
    switch (value.kind) {
    case V_KIND_INTEGER:
      AppendLine(text, depth, std::to_string(value.u.integer));
      break;
    case V_KIND_STRING:
      AppendLine(text, depth, value.u.string ? value.u.string : "");
      break;
    case V_KIND_STRINGS:
      for (const std::string &item : kit::ReadStrings(value.u.strings))
        AppendLine(text, depth, item);
      break;
    case V_KIND_TYPED_VALUES:
      AppendReply(text, value.u.values, depth + 1);
      break;
    default:
      break;
    }
  }
}

Json ToJson(const V_TypedValsT &reply) {
  Json list = Json::array();
  for (const V_TypedValT &value : Values(reply)) {
    Json content;
    if (value.kind == V_KIND_INTEGER)
      content = value.u.integer;
    else if (value.kind == V_KIND_STRING)
      content = value.u.string ? value.u.string : "";
    else if (value.kind == V_KIND_STRINGS)
      content = kit::ReadStrings(value.u.strings);
    else if (value.kind == V_KIND_TYPED_VALUES)
      content = ToJson(value.u.values);
    list.push_back({{"kind", value.kind}, {"value", std::move(content)}});
  }
  return list;
}

std::string EscapeField(std::string_view field) {
  static constexpr std::array<std::pair<char, std::string_view>, 4> escapes = {
      {{'\\', "\\\\"}, {'\t', "\\t"}, {'\n', "\\n"}, {'\r', "\\r"}}};
  std::string escaped;
  for (const char letter : field) {
    const auto found = std::ranges::find(escapes, letter, &std::pair<char, std::string_view>::first);
    if (found == escapes.end())
      escaped += letter;
    else
      escaped += found->second;
  }
  return escaped;
}

} // namespace

std::string FormatReply(const V_TypedValsT &reply) {
  std::string text;
  AppendReply(text, reply, 0);
  return text;
}

std::string FormatJson(const V_TypedValsT &reply, const host::SessionRecord &record) {
  Json asked = Json::array();
  for (const host::AskedQuestion &question : record.asked)
    asked.push_back({{"kind", question.kind}, {"text", question.text}, {"answer", question.answer}});
  Json object;
  object["reply"] = ToJson(reply);
  object["opened"] = record.opened;
  object["launched"] = record.launched;
  object["asked"] = std::move(asked);
  object["console"] = record.console;
  return host::ToJsonText(object) + "\n";
}

std::string FormatFields(const std::vector<std::string> &fields) {
  std::string line;
  for (const std::string &field : fields)
    line.append(line.empty() && &field == &fields.front() ? "" : "\t").append(EscapeField(field));
  return line + "\n";
}

bool Print(const std::string &text) {
  const bool isWritten = std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
  if (!isWritten)
    std::perror("vlxslt: cannot write to standard output");
  return isWritten;
}

} // namespace cli
