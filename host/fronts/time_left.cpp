#include "host/fronts/time_left.h"

namespace host {

std::string DescribeTimeLeft(std::chrono::steady_clock::duration spent, int32_t done, int32_t left) {
  if (done <= 0 || left <= 0)
    return {};
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(spent / done * left).count() + 1;
  return "about " +
         (seconds < 60 ? std::to_string(seconds) + " s left" : std::to_string((seconds + 30) / 60) + " min left");
}

} // namespace host
