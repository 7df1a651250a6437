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
  text.append(" ").append(option);
  for (const std::string_view value : values) {
    if (const std::string obstacle = FindObstacle(value); !obstacle.empty() && problem.empty())
      problem =
          "a request cannot carry the value of " + std::string(option) + ", " + obstacle + ": " + std::string(value);
    text.append(" ").append(QuoteValue(value));
  }
}

void RequestBuilder::AddIfGiven(std::string_view option, std::string_view value) {
  if (!value.empty())
    Add(option, {value});
}

} // namespace kit
