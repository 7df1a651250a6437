// A stylesheet parameter as the command line writes it.
#ifndef HOST_CLI_SPLIT_PARAMETER_H
#define HOST_CLI_SPLIT_PARAMETER_H

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace cli {

// "NAME=EXPRESSION"; nothing without a name.
[[nodiscard]] inline std::optional<std::pair<std::string, std::string>> SplitParameter(std::string_view text) {
  const size_t equals = text.find('=');
  if (equals == std::string_view::npos || equals == 0)
    return std::nullopt;
  return std::pair(std::string(text.substr(0, equals)), std::string(text.substr(equals + 1)));
}

} // namespace cli

#endif
