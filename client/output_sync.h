// The folders that a run has put outputs into. Each is synced once, at the run's end: the data of an output is on disk
// before it takes its place, its name only then.
#ifndef CLIENT_OUTPUT_SYNC_H
#define CLIENT_OUTPUT_SYNC_H

#include <set>
#include <string>

namespace client {

class OutputSync {
public:
  // Before folders are made on the way to an output: those that get the first of them.
  void NoteMissingFolders(const std::string &folder);
  void NotePrincipal(const std::string &output);
  // The processor may have made folders for it: all are noted up to that of the principal output, or the root.
  void NoteSecondary(const std::string &output, const std::string &principal);

  // Reports what cannot be synced; then false.
  [[nodiscard]] bool Sync();

private:
  std::set<std::string> folders;
};

} // namespace client

#endif
