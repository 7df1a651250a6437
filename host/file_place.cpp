#include "host/file_place.h"

#include "kit/paths.h"

#include <charconv>

namespace host {

namespace {

// ":NUMBER" at the beginning of `text`, which it shortens; 0 when there is none.
int32_t TakeNumber(std::string_view &text) {
  if (!text.starts_with(':'))
    return 0;
  int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data() + 1, text.data() + text.size(), number);
  if (error != std::errc() || number < 0)
    return 0;
  text.remove_prefix(static_cast<size_t>(end - text.data()));
  return number;
}

} // namespace

std::optional<NamedPlace> FindFilePlace(std::string_view text) {
  constexpr std::string_view separator = ": ";
  size_t begin = 0;
  if (!kit::IsAbsolutePath(text)) {
    const size_t behind = text.find(separator);
    if (behind == std::string_view::npos || !kit::IsAbsolutePath(text.substr(behind + separator.size())))
      return std::nullopt;
    begin = behind + separator.size();
  }
  for (size_t colon = text.find(':', begin); colon != std::string_view::npos; colon = text.find(':', colon + 1)) {
    std::string_view rest = text.substr(colon);
    const int32_t line = TakeNumber(rest);
    const bool hasColumn = rest.size() > 1 && rest[0] == ':' && rest[1] >= '0' && rest[1] <= '9';
    const int32_t column = TakeNumber(rest);
    if (line > 0 && hasColumn && rest.starts_with(':'))
      return NamedPlace{{std::string(text.substr(begin, colon - begin)), line, column}, begin, colon};
  }
  return std::nullopt;
}

} // namespace host
