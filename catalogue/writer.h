// Writes catalogue files whole, and makes the three edits with the questions that they ask. A file is put in place by
// rename: whatever fails leaves the old one as it was. Host's thread only.
#ifndef CATALOGUE_WRITER_H
#define CATALOGUE_WRITER_H

#include "catalogue/transformation.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace catalogue {

// Stopped: the person declined, or the target cannot be written and the message has been shown.
enum class EditResult : int32_t { Failed = 0, Saved = 1, Stopped = 2 };
enum class FieldCheck : int32_t { Stop = 0, GoOn = 1, Declined = 2 };
// Quiet: messages go to the log and nothing is asked.
enum class CheckMode { Interactive, Quiet };
// Whether a processor of that name is installed.
using IsKnownProcessor = bool (*)(std::string_view name);

[[nodiscard]] bool SaveTransformationFile(const std::string &path, const TransformationList &list);
[[nodiscard]] bool CanWriteTransformationFile(const std::string &path);
[[nodiscard]] FieldCheck CheckTransformationFields(const Transformation &record, CheckMode mode,
                                                   IsKnownProcessor isKnown);

// Adds, or replaces the transformation of that name where it stands.
[[nodiscard]] EditResult AddTransformation(const std::string &path, const Transformation &record,
                                           IsKnownProcessor isKnown);
// Replaces the transformation `oldName`, or the one that already has the record's new name.
[[nodiscard]] EditResult EditTransformation(const std::string &path, const Transformation &record,
                                            const std::string &oldName, IsKnownProcessor isKnown);
[[nodiscard]] EditResult DeleteTransformation(const std::string &path, const std::string &name);

} // namespace catalogue

#endif
