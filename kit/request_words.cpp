#include "kit/request_words.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace kit {

namespace {

using Json = nlohmann::json;

// What stands behind the JSON option; nothing when the options do not begin with it.
bool TakeJson(std::string_view options, std::string_view &array) {
  const size_t start = options.find_first_not_of(' ');
  if (start == std::string_view::npos || !StartsWithIgnoreCase(options.substr(start), jsonOption))
    return false;
  array = options.substr(start + jsonOption.size());
  return array.empty() || array.front() == ' ';
}

// A zero byte would end the text on its way to the host.
bool IsWord(const Json &value) {
  return value.is_string() && value.get_ref<const std::string &>().find('\0') == std::string::npos;
}

} // namespace

RequestWords::RequestWords(std::string_view options, Grammar grammar) : classic(options) {
  std::string_view array;
  if (grammar == Grammar::Classic || !TakeJson(options, array))
    return;
  classic = Tokenizer({});
  try {
    const Json parsed = Json::parse(array);
    if (!parsed.is_array() || !std::ranges::all_of(parsed, IsWord))
      problem = "it is no array of strings";
    else
      words = parsed.get<std::vector<std::string>>();
  } catch (const Json::exception &fault) {
    problem = fault.what();
  }
}

bool RequestWords::Next(std::string &word) {
  if (next == words.size())
    return classic.Next(word);
  word = words[next++];
  return true;
}

std::string FormatJsonWords(const std::vector<std::string> &words) {
  return Json(words).dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace kit
