// Points in time as records and SARIF write them.
#ifndef HOST_RECORD_TIME_TEXT_H
#define HOST_RECORD_TIME_TEXT_H

#include <chrono>
#include <string>

namespace host {

// "2026-01-31T12:00:00Z", or as another strftime pattern says; in UTC.
[[nodiscard]] std::string FormatTime(std::chrono::system_clock::time_point time,
                                     const char *pattern = "%Y-%m-%dT%H:%M:%SZ");

} // namespace host

#endif
