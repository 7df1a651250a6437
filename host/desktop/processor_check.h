// Whether a processor really loads: the running program starts itself once more with just this processor configured,
// since a Java virtual machine that is running already would not see new settings.
#ifndef HOST_DESKTOP_PROCESSOR_CHECK_H
#define HOST_DESKTOP_PROCESSOR_CHECK_H

#include "host/configuration/configuration.h"

#include <wx/string.h>

#include <functional>

namespace desktop {

// `done` is called on the windows' thread with a text for the person, unless the program ends first.
void CheckProcessor(const host::Configuration &configuration, const host::ProcessorSetting &processor,
                    std::function<void(const wxString &text)> done);

} // namespace desktop

#endif
