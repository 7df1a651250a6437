// Reads catalogue files: checked against the schema, problems reported through XSLTErrorHandler. Host's thread only;
// parses must not overlap. Paths are resolved first, so they may begin with a path variable.
#ifndef CATALOGUE_READER_H
#define CATALOGUE_READER_H

#include "catalogue/transformation.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace catalogue {

enum class LoadStatus : int32_t { Loaded = 0, NotLoaded = 1, FileMissing = 2, NotATransformationFile = 3 };

struct LoadResult {
  std::optional<TransformationList> list; // nothing unless loaded
  LoadStatus status = LoadStatus::NotLoaded;
  bool isEmpty = false;      // the file has no byte
  bool isUnreadable = false; // the file or the schema could not be read: nothing is known of what the file holds
  size_t elementCount = 0;   // of transformations in a file that is not loaded, as far as it can be parsed
  size_t fingerprint = 0;    // of the bytes, to tell whether they are others by now
};

[[nodiscard]] LoadResult LoadTransformationFile(const std::string &path);
// Loads again, unless the file's bytes are those that `last` was made of.
void ReloadTransformationFile(const std::string &path, std::optional<LoadResult> &last);
// Whether the file exists, is not empty and has the root element of a catalogue; the schema is not asked.
[[nodiscard]] bool IsTransformationFile(const std::string &path);

} // namespace catalogue

#endif
