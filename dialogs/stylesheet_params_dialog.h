// The dialog that edits the stylesheet parameters of one transformation in a property grid: a row per parameter with
// its name and its expression, and an empty row at the end for one more. Modal, host's thread only.
#ifndef DIALOGS_STYLESHEET_PARAMS_DIALOG_H
#define DIALOGS_STYLESHEET_PARAMS_DIALOG_H

#include <cstdint>
#include <string>
#include <vector>

namespace dialogs {

struct Parameter {
  std::string name;
  std::string expression;

  bool operator==(const Parameter &) const = default;
};

// The list after OK, parameters without a name included; the given one after anything else.
[[nodiscard]] std::vector<Parameter> EditStylesheetParams(const std::vector<Parameter> &params);
void ServeStylesheetParamsEvent(int32_t item);
void ForgetStylesheetParamsState();

} // namespace dialogs

#endif
