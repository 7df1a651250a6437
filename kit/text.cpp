#include "kit/text.h"

#include <algorithm>

namespace kit {

namespace {

char Lower(char letter) { return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter; }

} // namespace

bool EqualsIgnoreCase(std::string_view left, std::string_view right) {
  return std::ranges::equal(left, right, {}, Lower, Lower);
}

bool StartsWithIgnoreCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() && EqualsIgnoreCase(text.substr(0, prefix.size()), prefix);
}

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), Lower);
  return lower;
}

std::string FillPlaceholders(std::string_view pattern, std::initializer_list<std::string_view> values) {
  std::string filled;
  for (size_t at = 0; at < pattern.size(); ++at) {
    const bool digit =
        pattern[at] == '%' && at + 1 < pattern.size() && pattern[at + 1] >= '0' && pattern[at + 1] <= '9';
    const size_t index = digit ? static_cast<size_t>(pattern[at + 1] - '0') : values.size();
    if (index < values.size()) {
      filled += values.begin()[index];
      ++at;
    } else {
      filled += pattern[at];
    }
  }
  return filled;
}

bool Tokenizer::Next(std::string &token) {
  const size_t start = rest.find_first_not_of(' ');
  if (start == std::string_view::npos) {
    rest = {};
    return false;
  }
  rest.remove_prefix(start);
  const bool quoted = rest.front() == '"' || rest.front() == '\'';
  const char end = quoted ? rest.front() : ' ';
  if (quoted)
    rest.remove_prefix(1);
  const size_t length = std::min(rest.find(end), rest.size());
  token = Truncate(rest.substr(0, length), maxToken);
  rest.remove_prefix(std::min(length + 1, rest.size()));
  return true;
}

void JoinLines(std::string &request) {
  char quote = 0;
  bool isTokenStart = true;
  for (char &letter : request) {
    if (quote != 0) {
      quote = letter == quote ? char{0} : quote;
      continue;
    }
    if (letter == '\n' || letter == '\r')
      letter = ' ';
    if (isTokenStart && (letter == '"' || letter == '\''))
      quote = letter;
    isTokenStart = letter == ' ';
  }
}

std::string_view Truncate(std::string_view text, size_t limit) {
  if (text.size() <= limit)
    return text;
  size_t end = limit;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
    --end;
  return text.substr(0, end);
}

} // namespace kit
