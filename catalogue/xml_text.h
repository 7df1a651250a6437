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
[[nodiscard]] std::string Trim(std::string_view text);

} // namespace catalogue

#endif
