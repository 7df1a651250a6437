#include "host/desktop/window_texts.h"

#include <cstdlib>
#include <filesystem>

namespace desktop {

wxString ToWx(const std::string &text) {
  wxString converted = wxString::FromUTF8(text.data(), text.size());
  return converted.empty() && !text.empty() ? wxString(text.c_str(), wxConvISO8859_1) : converted;
}

std::string FromWx(const wxString &text) { return text.utf8_string(); }

wxString DescribeTimeLeft(std::chrono::steady_clock::duration spent, int done, int left) {
  if (done <= 0 || left <= 0)
    return {};
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(spent / done * left).count() + 1;
  return seconds < 60 ? wxString::Format("about %lld s left", static_cast<long long>(seconds))
                      : wxString::Format("about %lld min left", static_cast<long long>((seconds + 30) / 60));
}

wxString ShortenPath(const std::string &path) {
  const char *home = std::getenv("HOME");
  const std::string folder = home ? home : "";
  const std::string plain = std::filesystem::path(path).lexically_normal().string();
  const bool isInHome = !folder.empty() && (plain == folder || plain.starts_with(folder + "/"));
  return ToWx(isInHome ? "~" + plain.substr(folder.size()) : plain);
}

} // namespace desktop
