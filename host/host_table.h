// The table of functions that a client gets: each one is a noexcept call of the host's services.
#ifndef HOST_HOST_TABLE_H
#define HOST_HOST_TABLE_H

#include "kit/vdk.h"

namespace host {

class HostServices;

// The services must outlive every use of the table.
[[nodiscard]] V_HostT MakeHostTable(HostServices &services);

} // namespace host

#endif
