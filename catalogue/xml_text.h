// Text at the boundary of the XML library: UTF-8 here, UTF-16 there.
#ifndef CATALOGUE_XML_TEXT_H
#define CATALOGUE_XML_TEXT_H

#include <optional>
#include <string>
#include <string_view>

namespace catalogue {

// Null reads as empty.
[[nodiscard]] std::string ToUtf8(const char16_t *text);
// Nothing when the text is not UTF-8.
[[nodiscard]] std::optional<std::u16string> ToUtf16(std::string_view text);
// Without line feeds, tabs, carriage returns and blanks at both ends.
[[nodiscard]] std::string Trim(std::string_view text);

} // namespace catalogue

#endif
