#include "kit/resources.h"

#include <algorithm>
#include <unicode/unistr.h>

namespace kit {

namespace {

constexpr uint16_t dialogType = 5;
constexpr uint16_t textType = 6;
constexpr uint16_t itemTableType = 500;
constexpr uint16_t ordinalMark = 0xFFFF;
constexpr size_t textsPerBlock = 16;

// Reads little-endian numbers and UTF-16 text in order; going past the end turns it bad and yields zeros.
class Cursor {
public:
  explicit Cursor(Resources::Bytes all) : bytes(all) {}

  uint16_t Word() {
    const Resources::Bytes pair = Take(2);
    return pair.empty()
               ? 0
               : static_cast<uint16_t>(std::to_integer<unsigned>(pair[0]) | std::to_integer<unsigned>(pair[1]) << 8);
  }
  uint32_t DoubleWord() {
    const uint32_t low = Word();
    return low | static_cast<uint32_t>(Word()) << 16;
  }
  Resources::Bytes Take(size_t count) {
    if (count > bytes.size() - at) {
      good = false;
      at = bytes.size();
      return {};
    }
    at += count;
    return bytes.subspan(at - count, count);
  }
  void AlignTo(size_t step) { Take(std::min((step - at % step) % step, bytes.size() - at)); }
  [[nodiscard]] bool AtEnd() const { return at == bytes.size(); }
  [[nodiscard]] bool IsGood() const { return good; }

private:
  Resources::Bytes bytes;
  size_t at = 0;
  bool good = true;
};

std::string ToUtf8(const std::u16string &text) {
  std::string utf8;
  icu::UnicodeString(text.data(), static_cast<int32_t>(text.size())).toUTF8String(utf8);
  return utf8;
}

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  std::ranges::transform(upper, upper.begin(),
                         [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  return upper;
}

// A type or a name: a number behind a mark, or text up to its NUL.
struct Identifier {
  uint16_t number = 0;
  std::string name;
};

Identifier ReadIdentifier(Cursor &cursor) {
  Identifier identifier;
  uint16_t unit = cursor.Word();
  if (unit == ordinalMark) {
    identifier.number = cursor.Word();
    return identifier;
  }
  std::u16string text;
  for (; unit != 0; unit = cursor.Word())
    text += static_cast<char16_t>(unit);
  identifier.name = UpperCase(ToUtf8(text));
  return identifier;
}

} // namespace

std::optional<Resources> Resources::Read(Bytes image) {
  Resources resources;
  Cursor cursor(image);
  while (!cursor.AtEnd()) {
    const uint32_t dataSize = cursor.DoubleWord();
    const uint32_t headerSize = cursor.DoubleWord();
    constexpr uint32_t sizesBefore = 8;
    if (headerSize < sizesBefore)
      return std::nullopt;
    Cursor header(cursor.Take(headerSize - sizesBefore));
    const Identifier type = ReadIdentifier(header);
    const Identifier name = ReadIdentifier(header);
    const Bytes data = cursor.Take(dataSize);
    if (!cursor.IsGood() || !header.IsGood())
      return std::nullopt;
    cursor.AlignTo(4);
    if (type.number == textType && !resources.AddTextBlock(name.number, data))
      return std::nullopt;
    if (!name.name.empty())
      resources.entries[{type.number, name.name}] = data;
  }
  if (resources.entries.empty() && resources.texts.empty())
    return std::nullopt;
  return resources;
}

bool Resources::AddTextBlock(uint16_t block, Bytes data) {
  if (block == 0)
    return false;
  Cursor cursor(data);
  for (size_t index = 0; index < textsPerBlock; ++index) {
    std::u16string text(cursor.Word(), u'\0');
    for (char16_t &unit : text)
      unit = static_cast<char16_t>(cursor.Word());
    if (!cursor.IsGood())
      return false;
    if (!text.empty())
      texts[static_cast<uint16_t>((block - 1) * textsPerBlock + index)] = ToUtf8(text);
  }
  return true;
}

Resources::Bytes Resources::Find(uint16_t type, std::string_view name) const {
  const auto found = entries.find({type, UpperCase(name)});
  return found == entries.end() ? Bytes() : found->second;
}

std::string Resources::Text(uint16_t id) const {
  const auto found = texts.find(id);
  return found == texts.end() ? std::string() : found->second;
}

Resources::Bytes Resources::DialogTemplate(std::string_view name) const { return Find(dialogType, name); }
Resources::Bytes Resources::ItemTable(std::string_view name) const { return Find(itemTableType, name); }

} // namespace kit
