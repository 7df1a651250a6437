// Changes the text of a configuration file: only what changed is written, in its place; comments, order and layout of
// everything else stay. Works on text, touches no file.
#ifndef HOST_CONFIGURATION_CONFIGURATION_EDIT_H
#define HOST_CONFIGURATION_CONFIGURATION_EDIT_H

#include "host/configuration/configuration.h"

#include <string>
#include <vector>

namespace host {

struct ConfigurationChange {
  Configuration before; // as the text says
  Configuration after;
  // For each record of `after`, its place in `before`; -1 for a new one.
  std::vector<int> processorOrigins;
  std::vector<int> applicationOrigins;
};

struct EditedConfiguration {
  std::string text;
  std::string error; // not empty when the text cannot be understood; then it is as it was
};

[[nodiscard]] EditedConfiguration EditConfiguration(const std::string &text, const ConfigurationChange &change);
// A whole file, with absolute paths.
[[nodiscard]] std::string WriteConfiguration(const Configuration &configuration);

} // namespace host

#endif
