// Keeps outputs that their client is about to delete: each run gets a folder of its own, named by date, time and
// process, below one for all; a file is linked or copied into it. Only the last run folders stay. Nothing is made
// before the first file.
#ifndef HOST_RECORD_KEPT_OUTPUTS_H
#define HOST_RECORD_KEPT_OUTPUTS_H

#include <cstddef>
#include <map>
#include <string>

namespace host {

class KeptOutputs {
public:
  static constexpr size_t maxRuns = 20;

  // Of all runs; without a call it is vlxslt/opened in $XDG_STATE_HOME.
  void UseFolder(std::string folder) { base = std::move(folder); }
  // The next file begins a folder of its own.
  void BeginRun() { runFolder.clear(); }
  // The path of the copy: `name` in the run's folder, with folders of its own if need be, or without one the file's. On
  // failure it is `path` itself, and an error text.
  [[nodiscard]] std::string Keep(const std::string &path, std::string &error, std::string name = {});
  // The copy that was made of the file, and forgets about it; makes one when there is none.
  [[nodiscard]] std::string Take(const std::string &path, std::string &error);

private:
  [[nodiscard]] bool MakeRunFolder(std::string &error);
  void DropOldRuns() const;

  std::string base;
  std::string runFolder;                     // empty until the run keeps its first file
  std::map<std::string, std::string> copies; // by the path of the file, until they are taken
};

} // namespace host

#endif
