// A stylesheet parameter as the command line writes it, and what to say of one that is probably not what was meant.
#ifndef HOST_CLI_SPLIT_PARAMETER_H
#define HOST_CLI_SPLIT_PARAMETER_H

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cli {

// "NAME=EXPRESSION"; nothing without a name.
[[nodiscard]] inline std::optional<std::pair<std::string, std::string>> SplitParameter(std::string_view text) {
  const size_t equals = text.find('=');
  if (equals == std::string_view::npos || equals == 0)
    return std::nullopt;
  return std::pair(std::string(text.substr(0, equals)), std::string(text.substr(equals + 1)));
}

// Empty unless the text is taken for numbers and comes out as another one, as a date, a telephone number or a version
// does: then the hint.
[[nodiscard]] std::string HintAtNumber(std::string_view parameter);

// What is wrong with the first that cannot be split; empty when all can.
[[nodiscard]] std::string FindParameterFault(const std::vector<std::string> &parameters);

} // namespace cli

#endif
