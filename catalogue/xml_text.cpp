#include "catalogue/xml_text.h"

namespace catalogue {

std::string Trim(std::string_view text) {
  static constexpr std::string_view blanks = "\n\t\r ";
  const size_t first = text.find_first_not_of(blanks);
  return first == std::string_view::npos ? std::string()
                                         : std::string(text.substr(first, text.find_last_not_of(blanks) - first + 1));
}

} // namespace catalogue
