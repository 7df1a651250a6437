// Reads little-endian numbers and text out of resource bytes, in order. Going past the end reads nothing, turns the
// cursor bad for good and yields zeros, so a reader checks once at the end of what belongs together.
#ifndef KIT_BYTE_CURSOR_H
#define KIT_BYTE_CURSOR_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace kit {

// How resources name types, names, classes and contents: by a number behind a mark, or by text. Nothing is both empty.
struct NumberOrText {
  uint16_t number = 0;
  std::string text;
};

class ByteCursor {
public:
  using Bytes = std::span<const std::byte>;
  explicit ByteCursor(Bytes all) : bytes(all) {}

  [[nodiscard]] uint8_t Byte();
  [[nodiscard]] uint16_t Word();
  [[nodiscard]] uint32_t DoubleWord();
  // UTF-16 up to its NUL, as UTF-8.
  [[nodiscard]] std::string WideText() { return WideText(Word()); }
  [[nodiscard]] NumberOrText Identifier();
  // Bytes up to their NUL.
  [[nodiscard]] std::string NarrowText();
  Bytes Take(size_t count);
  void AlignTo(size_t step);

  [[nodiscard]] bool AtEnd() const { return at == bytes.size(); }
  [[nodiscard]] bool IsGood() const { return good; }

private:
  // After a first unit that was read already.
  [[nodiscard]] std::string WideText(uint16_t first);

  Bytes bytes;
  size_t at = 0;
  bool good = true;
};

} // namespace kit

#endif
