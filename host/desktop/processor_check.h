// Checks that a processor loads: starts this program a second time with only that processor configured, since a Java
// virtual machine that is already running does not see new settings.
#ifndef HOST_DESKTOP_PROCESSOR_CHECK_H
#define HOST_DESKTOP_PROCESSOR_CHECK_H

#include "host/configuration/configuration.h"

#include <wx/string.h>

#include <functional>

namespace desktop {

// `done` is called on the windows' thread with a text for the user, unless the program ends first.
void CheckProcessor(const host::Configuration &configuration, const host::ProcessorSetting &processor,
                    std::function<void(const wxString &text)> done);

} // namespace desktop

#endif
