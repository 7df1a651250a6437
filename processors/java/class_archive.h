// The archive of parsed Java classes that makes the virtual machine start quickly. A process that finds none for its
// class path has one written in the background when it ends; all later ones map it. Lives in the user's cache folder;
// whatever fails, Java starts without.
#ifndef PROCESSORS_JAVA_CLASS_ARCHIVE_H
#define PROCESSORS_JAVA_CLASS_ARCHIVE_H

#include <string>
#include <vector>

namespace processors {

class ClassArchive {
public:
  ClassArchive() = default;
  // The archive belongs to exactly these files, as they are now, and these texts.
  ClassArchive(const std::vector<std::string> &files, const std::vector<std::string> &texts);

  // The option that reads it; empty when there is none.
  [[nodiscard]] std::string Option() const;
  // Whether it could be written but is not there.
  [[nodiscard]] bool IsMissing() const { return !path.empty() && !isThere; }
  // Starts a detached Java that loads the classes of these names and leaves the archive of them; returns at once. Our
  // own virtual machine could write one too, when it ends, but then the user waits for it, and has been seen to crash
  // over classes made at run time.
  void WriteInBackground(const std::string &javaHome, const std::vector<std::string> &options,
                         const std::vector<std::string> &classNames) const;

private:
  std::string path; // empty: no archive
  bool isThere = false;
};

} // namespace processors

#endif
