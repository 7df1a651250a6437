// Reads a file whole. Paths are taken as bytes, so no locale comes between a name and its file. A
// pipe or a device is no file: to read it might be to wait for ever.
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
