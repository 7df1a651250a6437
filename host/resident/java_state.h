// What the Java machine of a worker depends on, and a new one is needed for when it changes.
#ifndef HOST_RESIDENT_JAVA_STATE_H
#define HOST_RESIDENT_JAVA_STATE_H

#include "host/configuration/configuration.h"

#include <string>

namespace resident {

// Equal texts: one Java machine serves both. Holds the state of every jar, and of every file in a folder of classes;
// and of the catalogs, since compiled stylesheets are kept, whose modules other catalogs may resolve differently.
[[nodiscard]] std::string DescribeJavaNeeds(const host::Configuration &configuration);
// Whether this process has loaded one.
[[nodiscard]] bool HasLoadedJava();

} // namespace resident

#endif
