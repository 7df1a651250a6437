// Writes a file whole or not at all: the bytes go into a file beside the target, Commit puts it in the target's place
// by rename. Whatever fails, and an object that is destroyed before Commit, leaves the target as it was and nothing
// beside it. Permissions and, where the system allows it, the owner are kept; a symbolic link stays and the file that
// it names is replaced. A target that is no regular file, or that this process may not write to, is refused.
#ifndef KIT_ATOMIC_FILE_H
#define KIT_ATOMIC_FILE_H

#include <string>
#include <string_view>

namespace kit {

class AtomicFile {
public:
  explicit AtomicFile(const std::string &path);
  AtomicFile(const AtomicFile &) = delete;
  AtomicFile &operator=(const AtomicFile &) = delete;
  ~AtomicFile();

  // After the first failure everything else fails too, and Error keeps the first reason.
  [[nodiscard]] bool Write(std::string_view bytes);
  // Appends the contents of another file, which may lie on another file system.
  [[nodiscard]] bool WriteFile(const std::string &source);
  // Syncs and renames; only then is the target the new file.
  [[nodiscard]] bool Commit();

  // "path: what the system says"; empty while nothing has failed.
  [[nodiscard]] const std::string &Error() const { return error; }

private:
  bool Fail(const std::string &path, int code);
  void Open();

  std::string target;
  std::string written; // the file beside the target; empty when there is none
  int file = -1;
  std::string error;
};

} // namespace kit

#endif
