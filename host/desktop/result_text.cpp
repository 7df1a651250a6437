#include "host/desktop/result_text.h"

#include "kit/paths.h"
#include "kit/text.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <string_view>

namespace desktop {

namespace {

std::string InMegabytes(size_t bytes) { return std::to_string((bytes + (1 << 20) - 1) >> 20) + " MB"; }

// Breaks lines of more than maxLineBytes. True when there were any.
bool BreakLongLines(std::string &text) {
  std::string broken;
  std::string_view rest = text;
  while (!rest.empty()) {
    const size_t end = rest.find('\n');
    const std::string_view line = rest.substr(0, end);
    const std::string_view part = line.size() > maxLineBytes ? kit::Truncate(line, maxLineBytes) : line;
    const bool isBroken = part.size() < line.size() && !part.empty();
    broken.append(isBroken ? part : line);
    rest.remove_prefix(isBroken ? part.size() : line.size());
    if (isBroken) {
      broken += '\n';
    } else if (!rest.empty()) {
      broken += '\n';
      rest.remove_prefix(1);
    }
  }
  const bool hasChanged = broken.size() != text.size();
  text = std::move(broken);
  return hasChanged;
}

} // namespace

ResultText ReadResultText(const std::string &path) {
  ResultText result;
  std::ifstream file;
  if (kit::IsFile(path))
    file.open(path, std::ios::binary | std::ios::ate);
  if (!file.is_open()) {
    result.error = path + ": " + std::strerror(kit::IsFile(path) ? errno : ENOENT);
    return result;
  }
  const auto size = static_cast<size_t>(file.tellg());
  file.seekg(0);
  // One byte more than is shown tells Truncate whether it cuts a character.
  result.text.resize(std::min(size, maxResultBytes + 1));
  file.read(result.text.data(), static_cast<std::streamsize>(result.text.size()));
  result.text.resize(static_cast<size_t>(file.gcount()));
  if (size > maxResultBytes) {
    result.text.resize(kit::Truncate(result.text, maxResultBytes).size());
    result.note = "The first " + InMegabytes(maxResultBytes) + " of " + InMegabytes(size) + " are shown.";
  }
  if (BreakLongLines(result.text))
    result.note.append(result.note.empty() ? "" : " ").append("Long lines are broken here, not in the file.");
  return result;
}

} // namespace desktop
