// What the replacement of a file could not keep of the old one.
#ifndef REPORT_REPLACED_FILE_H
#define REPORT_REPLACED_FILE_H

#include "kit/atomic_file.h"

#include <string>

namespace report {

// Warns of it; `path` is the file's name for people.
void ReportLosses(const kit::AtomicFile &file, const std::string &path);

} // namespace report

#endif
