// What makes the virtual machine start quickly: an archive of parsed Java classes, and copies without signature of
// those jars that are signed, whose classes Java would neither archive nor load without checking each. Kept in a folder
// for each set of jars: beside the program when it was prepared at its installation, else in the user's cache folder,
// where a process that finds none has one written in the background when it ends. Whatever fails, Java starts without.
#ifndef PROCESSORS_JAVA_CLASS_ARCHIVE_H
#define PROCESSORS_JAVA_CLASS_ARCHIVE_H

#include <string>
#include <vector>

namespace processors {

// An archive is good for exactly these files, as they are now, and these texts.
struct ArchiveSubject {
  std::string javaHome;
  std::string library; // libjvm
  std::string factory; // the class of the processor's factory
  std::vector<std::string> classPath;
  std::vector<std::string> options; // of the machine, but for the class path
};

class ClassArchive {
public:
  ClassArchive() = default;
  explicit ClassArchive(ArchiveSubject given);

  // The class path to start with; the jars themselves as long as there is no archive.
  [[nodiscard]] const std::vector<std::string> &ClassPath() const { return classPath; }
  // The option that reads it; empty when there is none.
  [[nodiscard]] std::string Option() const;
  // The jar that one of the class path is a copy of.
  [[nodiscard]] std::string OriginalOf(const std::string &jar) const;
  // Whether it could be written but is not there.
  [[nodiscard]] bool IsMissing() const { return !folder.empty() && archive.empty(); }
  // Starts a detached Java that uses the processor a little, loads the classes of these names, and leaves the archive
  // of all that; returns at once. Our own virtual machine could write one too, when it ends, but then the user waits
  // for it, and has been seen to crash over classes made at run time.
  void WriteInBackground(const std::vector<std::string> &classNames) const;
  // The same, but returns when it is done; beside the program if that can be written to. False when there is none then.
  [[nodiscard]] bool Write();

private:
  [[nodiscard]] bool Read(const std::string &from);

  ArchiveSubject subject;
  std::vector<std::string> classPath;
  std::string folder;  // to write to; empty: nowhere
  std::string archive; // empty: none
};

} // namespace processors

#endif
