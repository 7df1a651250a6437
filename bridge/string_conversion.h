// Text between the host's UTF-8 and Java's UTF-16. Malformed parts become U+FFFD. JNI's own UTF-8 calls are never used
// for data: theirs is a dialect in which NUL and characters beyond the first plane look different.
#ifndef BRIDGE_STRING_CONVERSION_H
#define BRIDGE_STRING_CONVERSION_H

#include <string>
#include <string_view>

namespace bridge {

[[nodiscard]] std::u16string ToUtf16(std::string_view utf8);
[[nodiscard]] std::string ToUtf8(std::u16string_view utf16);

} // namespace bridge

#endif
