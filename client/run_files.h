// The two lists that a run keeps: outputs to open at its end, and files to delete after that.
#ifndef CLIENT_RUN_FILES_H
#define CLIENT_RUN_FILES_H

#include <string>
#include <vector>

namespace client {

class RunFiles {
public:
  void OpenAtEnd(std::string output) { toOpen.push_back(std::move(output)); }
  // Nothing for an empty path.
  void DeleteAtEnd(std::string file);

  // Opens them in the host. One that the host holds may go; one that failed, or came after a cancel, is kept.
  void OpenListedInHost(bool temporary);
  // Hands them to the default program, which reads them later: all are kept.
  void LaunchListed();
  void DeleteListed();

private:
  void Keep(const std::string &output);

  std::vector<std::string> toOpen;
  std::vector<std::string> toDelete;
};

} // namespace client

#endif
