#include "host/text_file.h"

#include "kit/paths.h"

#include <fstream>
#include <sstream>

namespace host {

std::optional<std::string> ReadTextFile(const std::string &path) {
  if (!kit::IsFile(path))
    return std::nullopt;
  std::ifstream file(path, std::ios::binary);
  if (!file)
    return std::nullopt;
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

} // namespace host
