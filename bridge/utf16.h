// UTF-8 and UTF-16 as values; malformed parts become U+FFFD. May be used from any thread.
#ifndef BRIDGE_UTF16_H
#define BRIDGE_UTF16_H

#include <string>
#include <string_view>

namespace bridge {

[[nodiscard]] std::u16string ToUtf16(std::string_view utf8);
[[nodiscard]] std::string ToUtf8(std::u16string_view utf16);

} // namespace bridge

#endif
