#include "host/documents/anonymous_file.h"

#include <sys/mman.h>
#include <unistd.h>

#include <utility>

namespace host {

AnonymousFile::AnonymousFile(std::string_view content) : descriptor(memfd_create("vlxslt", MFD_CLOEXEC)) {
  if (descriptor >= 0 && write(descriptor, content.data(), content.size()) != static_cast<ssize_t>(content.size()))
    close(std::exchange(descriptor, -1));
}

AnonymousFile::AnonymousFile(AnonymousFile &&other) noexcept : descriptor(std::exchange(other.descriptor, -1)) {}

AnonymousFile::~AnonymousFile() {
  if (descriptor >= 0)
    close(descriptor);
}

std::string AnonymousFile::Path() const {
  return descriptor < 0 ? std::string() : "/proc/self/fd/" + std::to_string(descriptor);
}

} // namespace host
