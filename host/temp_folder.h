// The folder for temporary files: the configured one, which stays, or a private one, which is made at the first use
// and removed with everything in it.
#ifndef HOST_TEMP_FOLDER_H
#define HOST_TEMP_FOLDER_H

#include <string>

namespace host {

class TempFolder {
public:
  explicit TempFolder(std::string configuredFolder) : path(std::move(configuredFolder)) {}
  ~TempFolder();
  TempFolder(const TempFolder &) = delete;
  TempFolder &operator=(const TempFolder &) = delete;

  // Empty when it cannot be made.
  [[nodiscard]] const std::string &Path();
  // The path below the folder of a file that lies there; empty for any other. Makes nothing.
  [[nodiscard]] std::string NameOf(const std::string &file) const;
  // What lies there now or later outlives this object.
  void KeepFiles() { isPrivate = false; }

private:
  std::string path;
  bool isPrivate = false;
  bool isMade = false;
};

} // namespace host

#endif
