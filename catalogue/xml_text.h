// Text at the boundary of the XML library: UTF-8 here, UTF-16 there.
#ifndef CATALOGUE_XML_TEXT_H
#define CATALOGUE_XML_TEXT_H

#include "kit/utf16.h"

#include <string>
#include <string_view>

namespace catalogue {

// Null reads as empty.
[[nodiscard]] inline std::string ToUtf8(const char16_t *text) { return text ? kit::ToUtf8(text) : std::string(); }
// Empty when the text is not UTF-8.
[[nodiscard]] inline std::u16string ToUtf16(std::string_view text) {
  return kit::ToUtf16Strict(text).value_or(std::u16string());
}
// Without line feeds, tabs, carriage returns and blanks at both ends.
[[nodiscard]] inline std::string Trim(std::string_view text) {
  static constexpr std::string_view blanks = "\n\t\r ";
  const size_t first = text.find_first_not_of(blanks);
  return std::string(first == std::string_view::npos ? std::string_view()
                                                     : text.substr(first, text.find_last_not_of(blanks) - first + 1));
}

} // namespace catalogue

#endif
