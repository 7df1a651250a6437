// Small text helpers that both sides of the kit need. ASCII letter case only: names of requests and options are ASCII.
#ifndef KIT_TEXT_H
#define KIT_TEXT_H

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

namespace kit {

[[nodiscard]] bool EqualsIgnoreCase(std::string_view left, std::string_view right);
[[nodiscard]] bool StartsWithIgnoreCase(std::string_view text, std::string_view prefix);
[[nodiscard]] std::string LowerCase(std::string_view text);

// What a text buffer of the kit holds without its NUL: tokens of requests and texts of the string table end there.
inline constexpr size_t maxTextSize = 1023;

// Puts the values in place of %0, %1, …; a placeholder without a value stays, and values are not searched again.
[[nodiscard]] std::string FillPlaceholders(std::string_view pattern, std::initializer_list<std::string_view> values);

// The tokenizer of request strings. Leading blanks are skipped; a token in double or single quotes runs to the same
// quote, any other one to the next blank. At most `limit` bytes of a token are kept, never half a character.
class Tokenizer {
public:
  explicit Tokenizer(std::string_view text, size_t limit = maxTextSize) : rest(text), maxToken(limit) {}
  // False at the end of the text. A quoted token may be empty.
  [[nodiscard]] bool Next(std::string &token);

private:
  std::string_view rest;
  size_t maxToken;
};

// Makes one line of a request that was written on several: a line end between tokens becomes a blank, one inside a
// quoted token stays.
void JoinLines(std::string &request);

// The longest prefix of UTF-8 text that fits into `limit` bytes without cutting a character.
[[nodiscard]] std::string_view Truncate(std::string_view text, size_t limit);

} // namespace kit

#endif
