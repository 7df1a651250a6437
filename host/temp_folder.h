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

private:
  std::string path;
  bool isPrivate = false;
  bool isMade = false;
};

} // namespace host

#endif
