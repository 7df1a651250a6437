// The client's request table: every request string, from wherever it comes, is answered here.
#ifndef CLIENT_DISPATCH_H
#define CLIENT_DISPATCH_H

#include "kit/values.h"
#include "processors/processor.h"

#include <string_view>

namespace client {

// Carries a request out to its end; an unknown one gets an empty reply. Requests nest: a dialog opened by one sends
// others. Host's thread only.
[[nodiscard]] kit::TypedValues DispatchRequest(std::string_view request, processors::Processor &processor);

} // namespace client

#endif
