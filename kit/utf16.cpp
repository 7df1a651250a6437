#include "kit/utf16.h"

#include "kit/vdk.h"

#include <cstring>
#include <limits>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

namespace kit {

namespace {

template <class Unit> Unit *CopyForHost(std::basic_string_view<Unit> text) {
  auto *copy = static_cast<Unit *>(V_Calloc(text.size() + 1, sizeof(Unit)));
  if (copy && !text.empty())
    std::memcpy(copy, text.data(), text.size() * sizeof(Unit));
  return copy;
}

} // namespace

std::u16string ToUtf16(std::string_view utf8) {
  const icu::UnicodeString text =
      icu::UnicodeString::fromUTF8(icu::StringPiece(utf8.data(), static_cast<int32_t>(utf8.size())));
  return {text.getBuffer(), static_cast<size_t>(text.length())};
}

std::optional<std::u16string> ToUtf16Strict(std::string_view utf8) {
  std::u16string text(utf8.size(), u'\0');
  int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8(text.data(), static_cast<int32_t>(text.size()), &length, utf8.data(), static_cast<int32_t>(utf8.size()),
                &status);
  if (U_FAILURE(status))
    return std::nullopt;
  text.resize(static_cast<size_t>(length));
  return text;
}

std::string ToUtf8(std::u16string_view utf16) {
  std::string utf8;
  icu::UnicodeString(false, utf16.data(), static_cast<int32_t>(utf16.size())).toUTF8String(utf8);
  return utf8;
}

char16_t *UTF8ToUTF16(const char *strUTF8) { return strUTF8 ? CopyForHost<char16_t>(ToUtf16(strUTF8)) : nullptr; }

char *UTF16ToUTF8(const char16_t *strUTF16) { return strUTF16 ? CopyForHost<char>(ToUtf8(strUTF16)) : nullptr; }

} // namespace kit
