// Folder listings for runs. Strings are borrowed UTF-8 and may be null; nothing throws.
#ifndef PROCESSORS_FILE_LISTING_H
#define PROCESSORS_FILE_LISTING_H

#include "kit/values.h"

#include <cstdint>

namespace processors {

// Full paths; with sub-folders, their files come before the folder's own. Left out are files that a run has not
// finished yet and folders that are symbolic links. A failure is reported as a message and ends the listing with what
// was found before it.
[[nodiscard]] kit::StringList GetAllFilesInFolder(const char *folder, int32_t includeSubFolders);
// 1 only when the file exists and its length is 0.
[[nodiscard]] int32_t IsEmptyFile(const char *file);

} // namespace processors

#endif
