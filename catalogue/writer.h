// Writes catalogue files whole, and makes the edits with the questions that they ask. A file is put in place by rename:
// whatever fails leaves the old one as it was. From reading to the rename an edit holds a lock beside the file, so that
// edits of several processes follow each other; while a person is asked it does not. Host's thread only.
#ifndef CATALOGUE_WRITER_H
#define CATALOGUE_WRITER_H

#include "catalogue/transformation.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace catalogue {

// Stopped: the person declined, or the target cannot be written and the message has been shown. NotFound: there is no
// such transformation, which has been reported; only from edits that say so.
enum class EditResult : int32_t { Failed = 0, Saved = 1, Stopped = 2, NotFound = 3 };
enum class FieldCheck : int32_t { Stop = 0, GoOn = 1, Declined = 2 };
// Quiet: messages go to the log and nothing is asked.
enum class CheckMode { Interactive, Quiet };
// What becomes of a file that holds something else than a valid catalogue when a transformation is added to it: the
// person is asked whether it may be overwritten, or it is kept and the addition fails.
enum class InvalidFile { AskToReplace, Keep };
// Whether a processor of that name is installed.
using IsKnownProcessor = bool (*)(std::string_view name);
// What an edit makes of the transformation as it stands in the file by then; nothing when it cannot, which it has
// reported. Asks nothing, and may be called again.
using Change = std::function<std::optional<Transformation>(const Transformation &current)>;

[[nodiscard]] bool SaveTransformationFile(const std::string &path, const TransformationList &list);
[[nodiscard]] bool CanWriteTransformationFile(const std::string &path);
[[nodiscard]] FieldCheck CheckTransformationFields(const Transformation &record, CheckMode mode,
                                                   IsKnownProcessor isKnown);

// Adds, or replaces the transformation of that name where it stands. Fails without a name, like the edits below.
[[nodiscard]] EditResult AddTransformation(const std::string &path, const Transformation &record,
                                           IsKnownProcessor isKnown, InvalidFile invalid = InvalidFile::AskToReplace);
// Replaces the transformation `oldName`, or the one that already has the record's new name.
[[nodiscard]] EditResult EditTransformation(const std::string &path, const Transformation &record,
                                            const std::string &oldName, IsKnownProcessor isKnown);
// The same with what `change` makes of it. May be NotFound.
[[nodiscard]] EditResult ChangeTransformation(const std::string &path, const std::string &oldName, const Change &change,
                                              IsKnownProcessor isKnown);
// What is not there leaves the file as it is.
[[nodiscard]] EditResult DeleteTransformation(const std::string &path, const std::string &name);
// The same, but NotFound for what is not there.
[[nodiscard]] EditResult DeleteExistingTransformation(const std::string &path, const std::string &name);

} // namespace catalogue

#endif
