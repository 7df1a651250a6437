#include "kit/byte_cursor.h"

#include "kit/utf16.h"

namespace kit {

uint8_t ByteCursor::Byte() {
  const Bytes one = Take(1);
  return one.empty() ? uint8_t{0} : std::to_integer<uint8_t>(one[0]);
}

uint16_t ByteCursor::Word() {
  const Bytes pair = Take(2);
  return pair.empty()
             ? uint16_t{0}
             : static_cast<uint16_t>(std::to_integer<unsigned>(pair[0]) | std::to_integer<unsigned>(pair[1]) << 8);
}

uint32_t ByteCursor::DoubleWord() {
  const uint32_t low = Word();
  return low | static_cast<uint32_t>(Word()) << 16;
}

std::string ByteCursor::WideText(uint16_t first) {
  std::u16string text;
  for (uint16_t unit = first; unit != 0; unit = Word())
    text += static_cast<char16_t>(unit);
  return ToUtf8(text);
}

NumberOrText ByteCursor::Identifier() {
  constexpr uint16_t mark = 0xFFFF;
  const uint16_t first = Word();
  if (first == mark)
    return {.number = Word(), .text = {}};
  return {.number = 0, .text = WideText(first)};
}

std::string ByteCursor::NarrowText() {
  std::string text;
  for (uint8_t byte = Byte(); byte != 0; byte = Byte())
    text += static_cast<char>(byte);
  return text;
}

ByteCursor::Bytes ByteCursor::Take(size_t count) {
  if (count > bytes.size() - at) {
    good = false;
    at = bytes.size();
    return {};
  }
  at += count;
  return bytes.subspan(at - count, count);
}

void ByteCursor::AlignTo(size_t step) { Take((step - at % step) % step); }

} // namespace kit
