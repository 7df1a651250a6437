// Which processors this client carries. The library has one answer; one that is built for tests may have another.
#ifndef CLIENT_CHOSEN_PROCESSOR_H
#define CLIENT_CHOSEN_PROCESSOR_H

#include "processors/processor.h"

namespace client {

// Lives as long as the process.
[[nodiscard]] processors::Processor &ChosenProcessor();

} // namespace client

#endif
