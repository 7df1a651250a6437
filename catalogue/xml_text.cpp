#include "catalogue/xml_text.h"

#include <unicode/ustring.h>

namespace catalogue {

std::string ToUtf8(const char16_t *text) {
  if (!text)
    return {};
  const std::u16string_view from(text);
  // A UTF-16 unit takes three bytes at most; a lone surrogate becomes a replacement character of three.
  std::string to(from.size() * 3, '\0');
  int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strToUTF8WithSub(to.data(), static_cast<int32_t>(to.size()), &length, from.data(),
                     static_cast<int32_t>(from.size()), 0xFFFD, nullptr, &status);
  to.resize(U_SUCCESS(status) ? static_cast<size_t>(length) : 0);
  return to;
}

std::optional<std::u16string> ToUtf16(std::string_view text) {
  std::u16string to(text.size(), u'\0');
  int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8(to.data(), static_cast<int32_t>(to.size()), &length, text.data(), static_cast<int32_t>(text.size()),
                &status);
  if (U_FAILURE(status))
    return std::nullopt;
  to.resize(static_cast<size_t>(length));
  return to;
}

std::string Trim(std::string_view text) {
  static constexpr std::string_view blanks = "\n\t\r ";
  const size_t first = text.find_first_not_of(blanks);
  return first == std::string_view::npos ? std::string()
                                         : std::string(text.substr(first, text.find_last_not_of(blanks) - first + 1));
}

} // namespace catalogue
