// A file without a name, for libraries that only take paths. It is gone with the object.
#ifndef HOST_DOCUMENTS_ANONYMOUS_FILE_H
#define HOST_DOCUMENTS_ANONYMOUS_FILE_H

#include <string>
#include <string_view>

namespace host {

class AnonymousFile {
public:
  explicit AnonymousFile(std::string_view content);
  AnonymousFile(AnonymousFile &&other) noexcept;
  AnonymousFile &operator=(AnonymousFile &&) = delete;
  AnonymousFile(const AnonymousFile &) = delete;
  AnonymousFile &operator=(const AnonymousFile &) = delete;
  ~AnonymousFile();

  // Valid in this process only; empty when the file could not be made.
  [[nodiscard]] std::string Path() const;

private:
  int descriptor;
};

} // namespace host

#endif
