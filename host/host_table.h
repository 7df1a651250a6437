// The table of functions that a client is handed: thin, noexcept crossings into a session.
#ifndef HOST_HOST_TABLE_H
#define HOST_HOST_TABLE_H

#include "kit/vdk.h"

namespace host {

class Session;

// The session must outlive every use of the table.
[[nodiscard]] V_HostT MakeHostTable(Session &session);

} // namespace host

#endif
