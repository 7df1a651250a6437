#include "host/record/time_text.h"

#include <array>
#include <ctime>

namespace host {

std::string FormatTime(std::chrono::system_clock::time_point time, const char *pattern) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
  const std::tm *parts = std::gmtime(&seconds);
  std::array<char, 64> text{};
  const size_t length = parts ? std::strftime(text.data(), text.size(), pattern, parts) : 0;
  return {text.data(), length};
}

} // namespace host
