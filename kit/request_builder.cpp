#include "kit/request_builder.h"

#include "kit/text.h"

namespace kit {

namespace {

// Empty when a request can carry the value.
std::string FindObstacle(std::string_view value) {
  if (value.size() > kit::maxTextSize)
    return "it is longer than " + std::to_string(kit::maxTextSize) + " bytes";
  const bool hasBoth = value.find('"') != std::string_view::npos && value.find('\'') != std::string_view::npos;
  return hasBoth ? "it holds both kinds of quotes" : "";
}

} // namespace

std::string QuoteValue(std::string_view value) {
  const char quote = value.find('"') == std::string_view::npos ? '"' : '\'';
  return quote + std::string(value) + quote;
}

void RequestBuilder::Add(std::string_view option, std::initializer_list<std::string_view> values) {
  classic.append(" ").append(option);
  words.emplace_back(option);
  for (const std::string_view value : values) {
    if (const std::string found = FindObstacle(value); !found.empty() && obstacle.empty())
      obstacle =
          "a request cannot carry the value of " + std::string(option) + ", " + found + ": " + std::string(value);
    classic.append(" ").append(QuoteValue(value));
    words.emplace_back(value);
  }
}

void RequestBuilder::AddIfGiven(std::string_view option, std::string_view value) {
  if (!value.empty())
    Add(option, {value});
}

std::string RequestBuilder::Text() const {
  if (grammar == Grammar::Classic || obstacle.empty())
    return name + classic;
  return name + " " + std::string(jsonOption) + " " + FormatJsonWords(words);
}

} // namespace kit
