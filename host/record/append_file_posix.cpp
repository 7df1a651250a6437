#include "host/record/append_file.h"

#include "kit/system_call.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace host {

AppendFile::~AppendFile() {
  if (file >= 0)
    close(file);
}

bool AppendFile::Fail(int code) {
  if (error.empty())
    error = name + ": " + std::generic_category().message(code);
  return false;
}

bool AppendFile::Open(const std::string &path) {
  name = path;
  file = kit::Repeat([&] { return open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC); });
  return file >= 0 || Fail(errno);
}

bool AppendFile::Append(std::string_view piece) {
  struct stat before {};
  if (!error.empty() || fstat(file, &before) != 0)
    return Fail(error.empty() ? errno : 0);
  while (!piece.empty()) {
    const ssize_t count = write(file, piece.data(), piece.size());
    if (count < 0 && errno != EINTR) {
      (void)Fail(errno);
      // A disk that cannot take that either leaves half a piece, which readers pass over.
      return kit::Repeat([&] { return ftruncate(file, before.st_size); }) == 0 && false;
    }
    piece.remove_prefix(count < 0 ? 0 : static_cast<size_t>(count));
  }
  return true;
}

bool AppendFile::Close() {
  if (!error.empty())
    return false;
  if (kit::Repeat([this] { return fsync(file); }) != 0)
    return Fail(errno);
  // An interrupted one has closed the file.
  return close(std::exchange(file, -1)) == 0 || errno == EINTR || Fail(errno);
}

} // namespace host
