// The archive of loaded classes that lets Java start in a fraction of the time. The first run leaves it in the user's
// cache folder, later ones map it. Keyed by everything that it depends on; whatever goes wrong, Java starts without.
#ifndef BRIDGE_CLASS_ARCHIVE_H
#define BRIDGE_CLASS_ARCHIVE_H

#include <string>
#include <vector>

namespace bridge {

class ClassArchive {
public:
  // `files` are what the classes come from: the virtual machine's library and the class path; `options` are its
  // options.
  ClassArchive(const std::vector<std::string> &files, const std::vector<std::string> &options);

  // The options that use the archive, or that have it written when Java ends; none when there is no place for one.
  [[nodiscard]] std::vector<std::string> JavaOptions() const;
  [[nodiscard]] bool IsToBeWritten() const { return !written.empty(); }
  // After Java has ended: puts what it wrote in place, or throws it away.
  enum class Verdict { Keep, Drop };
  void Finish(Verdict verdict);

private:
  std::string archive; // empty: none
  std::string written; // what Java writes at its end, beside it; empty when the archive is there
};

} // namespace bridge

#endif
