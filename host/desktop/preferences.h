// The settings of the configuration file in a window: processors with a button that really loads them, applications,
// catalogs and Java. Changes nothing by itself: the caller gets the change when the person agrees.
#ifndef HOST_DESKTOP_PREFERENCES_H
#define HOST_DESKTOP_PREFERENCES_H

#include "host/configuration/configuration_edit.h"

#include <optional>

class wxWindow;

namespace desktop {

// Nothing when the person leaves everything as it was.
[[nodiscard]] std::optional<host::ConfigurationChange> AskForPreferences(wxWindow *parent,
                                                                         const host::Configuration &configuration);

} // namespace desktop

#endif
