#include "host/desktop/window_texts.h"

#include <cstdlib>
#include <filesystem>

namespace desktop {

wxString ToWx(const std::string &text) {
  wxString converted = wxString::FromUTF8(text.data(), text.size());
  return converted.empty() && !text.empty() ? wxString(text.c_str(), wxConvISO8859_1) : converted;
}

std::string FromWx(const wxString &text) { return text.utf8_string(); }

wxString ShortenPath(const std::string &path) {
  const char *home = std::getenv("HOME");
  const std::string folder = home ? home : "";
  const std::string plain = std::filesystem::path(path).lexically_normal().string();
  const bool isInHome = !folder.empty() && (plain == folder || plain.starts_with(folder + "/"));
  return ToWx(isInHome ? "~" + plain.substr(folder.size()) : plain);
}

} // namespace desktop
