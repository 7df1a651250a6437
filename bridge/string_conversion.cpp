#include "bridge/string_conversion.h"

#include "bridge/processor_bridge.h"
#include "kit/vdk.h"

#include <cstring>
#include <unicode/ustring.h>

namespace bridge {

namespace {

constexpr UChar32 replacement = 0xFFFD;

template <class Char> Char *CopyToHost(const std::basic_string<Char> &text) {
  auto *copy = static_cast<Char *>(V_Calloc(text.size() + 1, sizeof(Char)));
  if (copy)
    std::memcpy(copy, text.data(), text.size() * sizeof(Char));
  return copy;
}

} // namespace

std::u16string ToUtf16(std::string_view utf8) {
  // Never more units than bytes.
  std::u16string text(utf8.size(), u'\0');
  UErrorCode status = U_ZERO_ERROR;
  int32_t length = 0;
  u_strFromUTF8WithSub(text.data(), static_cast<int32_t>(text.size()), &length, utf8.data(),
                       static_cast<int32_t>(utf8.size()), replacement, nullptr, &status);
  text.resize(U_FAILURE(status) ? 0 : static_cast<size_t>(length));
  return text;
}

std::string ToUtf8(std::u16string_view utf16) {
  std::string text(utf16.size() * 3, '\0');
  UErrorCode status = U_ZERO_ERROR;
  int32_t length = 0;
  u_strToUTF8WithSub(text.data(), static_cast<int32_t>(text.size()), &length, utf16.data(),
                     static_cast<int32_t>(utf16.size()), replacement, nullptr, &status);
  text.resize(U_FAILURE(status) ? 0 : static_cast<size_t>(length));
  return text;
}

char16_t *UTF8ToUTF16(const char *strUTF8) { return strUTF8 ? CopyToHost(ToUtf16(strUTF8)) : nullptr; }

char *UTF16ToUTF8(const char16_t *strUTF16) { return strUTF16 ? CopyToHost(ToUtf8(strUTF16)) : nullptr; }

} // namespace bridge
