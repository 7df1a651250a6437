// The archive of parsed Java classes that makes the virtual machine start quickly: written when the first process that
// uses a class path ends, read by all later ones. Lives in the user's cache folder; whatever fails, Java starts
// without.
#ifndef BRIDGE_CLASS_ARCHIVE_H
#define BRIDGE_CLASS_ARCHIVE_H

#include <string>
#include <vector>

namespace bridge {

class ClassArchive {
public:
  // The archive belongs to exactly these files, as they are now, and these options.
  ClassArchive(const std::vector<std::string> &files, const std::vector<std::string> &options);

  // The option that reads or writes it; empty when there shall be none.
  [[nodiscard]] std::string Option() const;
  // After the virtual machine has ended: puts a newly written archive in its place.
  void Keep() const;

private:
  std::string path;    // empty: no archive
  std::string written; // empty: the archive is there already
};

} // namespace bridge

#endif
