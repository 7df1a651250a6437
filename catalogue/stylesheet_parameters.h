// The top-level parameters that a stylesheet declares, for dialogs and for `vlxslt params`. Host's thread only.
#ifndef CATALOGUE_STYLESHEET_PARAMETERS_H
#define CATALOGUE_STYLESHEET_PARAMETERS_H

#include <optional>
#include <string>
#include <vector>

namespace catalogue {

struct StylesheetParameters {
  // Name and default expression alternately, in document order; "<no value>" where there is no select attribute.
  // Nothing when the path names no file; empty when the file does not parse, which is reported.
  std::optional<std::vector<std::string>> list;
  bool isRead = false; // the whole file has been parsed
};

[[nodiscard]] StylesheetParameters ReadStylesheetParameters(const std::string &xslPath);
// Only the list.
[[nodiscard]] std::optional<std::vector<std::string>> GetStylesheetParameters(const std::string &xslPath);

} // namespace catalogue

#endif
