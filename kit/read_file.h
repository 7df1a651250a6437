// Reads a file whole. Paths are bytes, whatever the locale. Pipes and devices are refused: reading them might not end.
#ifndef KIT_READ_FILE_H
#define KIT_READ_FILE_H

#include <string>

namespace kit {

struct FileContent {
  std::string bytes;
  // "path: what the system says"; empty when all of the file was read.
  std::string error;
};

[[nodiscard]] FileContent ReadFile(const std::string &path);

} // namespace kit

#endif
