// Reads catalogue files: checked against the schema, problems reported through XSLTErrorHandler. Host's thread only;
// parses must not overlap. Paths are resolved first, so they may begin with a path variable.
#ifndef CATALOGUE_READER_H
#define CATALOGUE_READER_H

#include "catalogue/transformation.h"

#include <cstdint>
#include <optional>
#include <string>

namespace catalogue {

enum class LoadStatus : int32_t { Loaded = 0, NotLoaded = 1, FileMissing = 2, NotATransformationFile = 3 };

struct LoadResult {
  std::optional<TransformationList> list; // nothing unless loaded
  LoadStatus status = LoadStatus::NotLoaded;
};

[[nodiscard]] LoadResult LoadTransformationFile(const std::string &path);
// Whether the file can be looked at and holds anything.
[[nodiscard]] bool HasContents(const std::string &path);
// Whether the file exists, is not empty and has the root element of a catalogue; the schema is not asked.
[[nodiscard]] bool IsTransformationFile(const std::string &path);

} // namespace catalogue

#endif
