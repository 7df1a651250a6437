// The table of functions that a client is handed: each one a noexcept call of the host's services.
#ifndef HOST_HOST_TABLE_H
#define HOST_HOST_TABLE_H

#include "kit/vdk.h"

namespace host {

class HostServices;

// The services must outlive every use of the table.
[[nodiscard]] V_HostT MakeHostTable(HostServices &services);

} // namespace host

#endif
