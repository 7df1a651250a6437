// How long a run will still take, judged by the inputs that are done.
#ifndef HOST_FRONTS_TIME_LEFT_H
#define HOST_FRONTS_TIME_LEFT_H

#include <chrono>
#include <cstdint>
#include <string>

namespace host {

// "about 2 min left"; empty while nothing is done, and when nothing is left.
[[nodiscard]] inline std::string DescribeTimeLeft(std::chrono::steady_clock::duration spent, int32_t done,
                                                  int32_t left) {
  if (done <= 0 || left <= 0)
    return {};
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(spent / done * left).count() + 1;
  return "about " +
         (seconds < 60 ? std::to_string(seconds) + " s left" : std::to_string((seconds + 30) / 60) + " min left");
}

} // namespace host

#endif
