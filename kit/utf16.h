// The conversions between UTF-8 and UTF-16. Malformed parts become U+FFFD, unless a function refuses them. May be
// used from any thread.
#ifndef KIT_UTF16_H
#define KIT_UTF16_H

#include <optional>
#include <string>
#include <string_view>

namespace kit {

[[nodiscard]] std::u16string ToUtf16(std::string_view utf8);
// Nothing when the text is malformed.
[[nodiscard]] std::optional<std::u16string> ToUtf16Strict(std::string_view utf8);
[[nodiscard]] std::string ToUtf8(std::u16string_view utf16);

// The same for NUL-terminated text of the kit, freed with V_Free; null for null.
[[nodiscard]] char16_t *UTF8ToUTF16(const char *strUTF8);
[[nodiscard]] char *UTF16ToUTF8(const char16_t *strUTF16);

} // namespace kit

#endif
