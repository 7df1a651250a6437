#include "kit/read_file.h"

#include "kit/handle.h"

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace kit {

namespace {

struct CloseFile {
  void operator()(FILE *file) const { std::fclose(file); }
};

std::string Describe(const std::string &path, int code) { return path + ": " + std::generic_category().message(code); }

} // namespace

FileContent ReadFile(const std::string &path) {
  FileContent content;
  const auto file = Handle<FILE, CloseFile{}>::Adopt(std::fopen(path.c_str(), "rbe"));
  if (!file) {
    content.error = Describe(path, errno);
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
