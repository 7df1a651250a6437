// The top-level parameters that a stylesheet declares, for dialogs and for `vlxslt params`. Host's thread only.
#ifndef CATALOGUE_STYLESHEET_PARAMETERS_H
#define CATALOGUE_STYLESHEET_PARAMETERS_H

#include <optional>
#include <string>
#include <vector>

namespace catalogue {

// Name and default expression alternately, in document order; "<no value>" where there is no select attribute.
// Nothing when the path names no file; empty when the file does not parse, which is reported.
[[nodiscard]] std::optional<std::vector<std::string>> GetStylesheetParameters(const std::string &xslPath);

} // namespace catalogue

#endif
