// The window for the configuration file: processors, with a button that loads one as a check, applications, catalogs
// and Java. Writes nothing itself: the caller gets the change when the user presses OK.
#ifndef HOST_DESKTOP_PREFERENCES_H
#define HOST_DESKTOP_PREFERENCES_H

#include "host/configuration/configuration_edit.h"

#include <optional>

class wxWindow;

namespace desktop {

// Nothing when the user cancels.
[[nodiscard]] std::optional<host::ConfigurationChange> AskForPreferences(wxWindow *parent,
                                                                         const host::Configuration &configuration);

} // namespace desktop

#endif
