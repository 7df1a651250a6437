// The program that writes what a class archive is made of: a Java of its own, beside this process or after it.
#ifndef PROCESSORS_JAVA_ARCHIVE_WRITER_H
#define PROCESSORS_JAVA_ARCHIVE_WRITER_H

#include "processors/java/class_archive.h"

#include <string>
#include <vector>

namespace processors {

class ArchiveWriter {
public:
  ArchiveWriter(const ArchiveSubject &subject, const std::string &folder);

  // Detached, and as a low priority; returns at once. Of several processes that end at the same time the first writes.
  void Start(const std::vector<std::string> &classNames);
  // Returns when it has ended, and whether that went well.
  [[nodiscard]] bool Run();

private:
  [[nodiscard]] bool ClaimList() const;

  std::string list; // the names of classes, and the sign that one is at work
  std::vector<std::string> words;
  std::vector<std::string> environment;
};

} // namespace processors

#endif
