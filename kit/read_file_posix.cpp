#include "kit/read_file.h"

#include "kit/handle.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace kit {

namespace {

struct CloseFile {
  void operator()(FILE *file) const { std::fclose(file); }
};

std::string Describe(const std::string &path, int code) { return path + ": " + std::generic_category().message(code); }

// Why the path cannot be read as a file; empty when it can. It was opened without waiting, since opening a pipe blocks
// until there is a writer.
std::string FindObstacle(int handle, const std::string &path) {
  struct stat status {};
  if (handle < 0 || fstat(handle, &status) != 0)
    return Describe(path, errno);
  if (S_ISDIR(status.st_mode))
    return Describe(path, EISDIR);
  return S_ISREG(status.st_mode) ? std::string() : path + ": it is a pipe or a device, not a file";
}

} // namespace

FileContent ReadFile(const std::string &path) {
  FileContent content;
  const int handle = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  content.error = FindObstacle(handle, path);
  const auto file = Handle<FILE, CloseFile{}>::Adopt(content.error.empty() ? fdopen(handle, "rb") : nullptr);
  if (!file) {
    if (content.error.empty())
      content.error = Describe(path, errno);
    if (handle >= 0)
      close(handle);
    return content;
  }
  char buffer[1 << 16];
  while (const size_t count = std::fread(buffer, 1, sizeof(buffer), file.Get()))
    content.bytes.append(buffer, count);
  if (std::ferror(file.Get()))
    content.error = Describe(path, errno);
  return content;
}

} // namespace kit
