// Reads a compiled resource image (.res): dialog templates by name, raw tables by name, texts by id. Client and host
// read the same image with it. The image is borrowed and must outlive the reader; a damaged one is refused as a whole.
#ifndef KIT_RESOURCES_H
#define KIT_RESOURCES_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace kit {

class Resources {
public:
  using Bytes = std::span<const std::byte>;

  // Nothing when the image is cut short, or a header or a text in it does not add up.
  [[nodiscard]] static std::optional<Resources> Read(Bytes image);

  // UTF-8; empty when there is no such text.
  [[nodiscard]] std::string Text(uint16_t id) const;
  // The raw template or table; empty when there is none. Names compare without letter case.
  [[nodiscard]] Bytes DialogTemplate(std::string_view name) const;
  [[nodiscard]] Bytes ItemTable(std::string_view name) const;

private:
  [[nodiscard]] Bytes Find(uint16_t type, std::string_view name) const;
  [[nodiscard]] bool AddTextBlock(uint16_t block, Bytes data);

  std::map<std::pair<uint16_t, std::string>, Bytes> entries;
  std::map<uint16_t, std::string> texts;
};

} // namespace kit

#endif
