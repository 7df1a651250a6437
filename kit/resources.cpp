#include "kit/resources.h"

#include "kit/byte_cursor.h"
#include "kit/text.h"
#include "kit/utf16.h"

namespace kit {

namespace {

constexpr uint16_t dialogType = 5;
constexpr uint16_t textType = 6;
constexpr uint16_t itemTableType = 500;
constexpr size_t textsPerBlock = 16;

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
    const uint16_t type = header.Identifier().number;
    const NumberOrText name = header.Identifier();
    const Bytes data = cursor.Take(dataSize);
    cursor.AlignTo(4);
    if (!cursor.IsGood() || !header.IsGood())
      return std::nullopt;
    if (type == textType && !resources.AddTextBlock(name.number, data))
      return std::nullopt;
    if (!name.text.empty())
      resources.entries[{type, LowerCase(name.text)}] = data;
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
      texts[static_cast<uint16_t>((block - 1) * textsPerBlock + index)] = ToUtf8(text);
  }
  return true;
}

Resources::Bytes Resources::Find(uint16_t type, std::string_view name) const {
  const auto found = entries.find({type, LowerCase(name)});
  return found == entries.end() ? Bytes() : found->second;
}

std::string Resources::Text(uint16_t id) const {
  const auto found = texts.find(id);
  return found == texts.end() ? std::string() : found->second;
}

Resources::Bytes Resources::DialogTemplate(std::string_view name) const { return Find(dialogType, name); }
Resources::Bytes Resources::ItemTable(std::string_view name) const { return Find(itemTableType, name); }

} // namespace kit
