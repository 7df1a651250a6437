// A hash of texts that is the same in every process.
#ifndef KIT_HASH_H
#define KIT_HASH_H

#include <cstdint>
#include <string_view>

namespace kit {

// FNV-1a: for names and comparisons where a collision only costs time, or is noticed otherwise.
[[nodiscard]] constexpr uint64_t Hash(std::string_view text) {
  uint64_t hash = 0xcbf29ce484222325U;
  for (const char letter : text)
    hash = (hash ^ static_cast<unsigned char>(letter)) * 0x100000001b3U;
  return hash;
}

} // namespace kit

#endif
