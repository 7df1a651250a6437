// Writes a file whole or not at all: the bytes go into a file beside the target, Commit puts it in the target's place
// by rename. Whatever fails, and an object that is destroyed before Commit, leaves the target as it was and nothing
// beside it. Permissions and, where the system allows it, the owner are kept; a symbolic link stays and the file that
// it names is replaced; other names of the file (hard links) keep the old content. A target that is no regular file, or
// that this process may not write to, is refused.
#ifndef KIT_ATOMIC_FILE_H
#define KIT_ATOMIC_FILE_H

#include <cstddef>
#include <string>
#include <string_view>

namespace kit {

// What Commit waits for, so that the new file is there after a power cut: nothing, the data only (the caller then syncs
// the folder, see kit/sync_folder.h), or both. With the data synced, the target is old or new and whole in any case.
enum class Durability { None, Data, DataAndName };

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
  // Renames; only then is the target the new file. When nothing but the name could not be synced, false too.
  [[nodiscard]] bool Commit(Durability durability = Durability::DataAndName);

  // How many other names the old file has.
  [[nodiscard]] size_t OtherNames() const { return otherNames; }
  // The file system refused the old file's permissions: those of the new file are stricter.
  [[nodiscard]] bool HasLostPermissions() const { return hasLostPermissions; }

  // "path: what the system says"; empty while nothing has failed.
  [[nodiscard]] const std::string &Error() const { return error; }

private:
  bool Fail(const std::string &path, int code);
  void Open();

  std::string target;
  std::string written; // the file beside the target; empty when there is none
  int file = -1;
  size_t otherNames = 0;
  bool hasLostPermissions = false;
  std::string error;
};

} // namespace kit

#endif
