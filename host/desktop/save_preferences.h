// Writes a change of preferences into the configuration file.
#ifndef HOST_DESKTOP_SAVE_PREFERENCES_H
#define HOST_DESKTOP_SAVE_PREFERENCES_H

#include "host/configuration/configuration_edit.h"
#include "host/configuration/installation.h"

#include <string>

namespace desktop {

struct SavedPreferences {
  host::Configuration configuration; // as read back
  std::string error;                 // not empty when nothing was written
};

// The installed default is never changed: the user gets a configuration file of their own instead.
[[nodiscard]] SavedPreferences SavePreferences(const host::ConfigurationChange &change,
                                               const host::Installation &installation);

} // namespace desktop

#endif
