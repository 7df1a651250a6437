// System calls that a signal may interrupt.
#ifndef KIT_SYSTEM_CALL_H
#define KIT_SYSTEM_CALL_H

#include <cerrno>

namespace kit {

// Calls again as long as a signal interrupts; returns what the call returned at last.
template <class Call> auto Repeat(const Call &call) {
  auto result = call();
  while (result < 0 && errno == EINTR)
    result = call();
  return result;
}

} // namespace kit

#endif
