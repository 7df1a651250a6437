// How long a run will still take, judged by the inputs that are done.
#ifndef HOST_FRONTS_TIME_LEFT_H
#define HOST_FRONTS_TIME_LEFT_H

#include <chrono>
#include <cstdint>
#include <string>

namespace host {

// "about 2 min left"; empty while nothing is done, and when nothing is left.
[[nodiscard]] std::string DescribeTimeLeft(std::chrono::steady_clock::duration spent, int32_t done, int32_t left);

} // namespace host

#endif
