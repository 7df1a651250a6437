// Which structure applications a file belongs to, by the rules of the configuration. Reads at most the beginning of
// the file, and only when a rule needs it.
#ifndef HOST_APPLICATIONS_H
#define HOST_APPLICATIONS_H

#include "host/configuration/configuration.h"

#include <string>
#include <vector>

namespace host {

// In the configuration's order.
[[nodiscard]] std::vector<std::string> FindApplications(const Configuration &configuration, const std::string &path);

} // namespace host

#endif
