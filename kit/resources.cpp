#include "kit/resources.h"

#include "kit/byte_cursor.h"

#include <algorithm>

namespace kit {

namespace {

constexpr uint16_t dialogType = 5;
constexpr uint16_t textType = 6;
constexpr uint16_t itemTableType = 500;
constexpr uint16_t ordinalMark = 0xFFFF;
constexpr size_t textsPerBlock = 16;

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

Identifier ReadIdentifier(ByteCursor &cursor) {
  const uint16_t first = cursor.Word();
  if (first == ordinalMark)
    return {.number = cursor.Word(), .name = {}};
  return {.number = 0, .name = UpperCase(cursor.WideText(first))};
}

} // namespace

std::optional<Resources> Resources::Read(Bytes image) {
  Resources resources;
  ByteCursor cursor(image);
  while (!cursor.AtEnd()) {
    const uint32_t dataSize = cursor.DoubleWord();
    const uint32_t headerSize = cursor.DoubleWord();
    constexpr uint32_t sizesBefore = 8;
    if (headerSize < sizesBefore)
      return std::nullopt;
    ByteCursor header(cursor.Take(headerSize - sizesBefore));
    const Identifier type = ReadIdentifier(header);
    const Identifier name = ReadIdentifier(header);
    const Bytes data = cursor.Take(dataSize);
    cursor.AlignTo(4);
    if (!cursor.IsGood() || !header.IsGood())
      return std::nullopt;
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
  ByteCursor cursor(data);
  for (size_t index = 0; index < textsPerBlock; ++index) {
    std::u16string text(cursor.Word(), u'\0');
    for (char16_t &unit : text)
      unit = static_cast<char16_t>(cursor.Word());
    if (!cursor.IsGood())
      return false;
    if (!text.empty())
      texts[static_cast<uint16_t>((block - 1) * textsPerBlock + index)] = WideToUtf8(text);
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
