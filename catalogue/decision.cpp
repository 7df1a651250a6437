#include "catalogue/decision.h"

#include "catalogue/location.h"
#include "catalogue/network.h"
#include "kit/paths.h"
#include "report/run_event.h"

#include <initializer_list>
#include <utility>

namespace catalogue {

namespace {

using report::MessageId;

std::optional<Decision> Ask(const Agreed &agreed, MessageId id, std::initializer_list<std::string_view> values,
                            int32_t kind) {
  std::string text = report::FormatMessage(id, values);
  if (agreed.contains(text))
    return std::nullopt;
  return Decision{.otherwise = EditResult::Stopped, .text = std::move(text), .alert = kind};
}

std::optional<Decision> CheckFolder(const std::string &folder) {
  if (!kit::IsFolder(folder))
    return Show(MessageId::FolderMissing, folder, EditResult::Stopped);
  if (!kit::IsWritable(folder))
    return Show(MessageId::FolderNotWritable, folder, EditResult::Stopped);
  return std::nullopt;
}

Decision KeepInvalid(const std::string &path, const LoadResult &loaded) {
  report::ReportProblem(MessageId::InvalidFileKept, {path, std::to_string(loaded.elementCount)});
  return End(EditResult::Failed);
}

std::optional<Decision> CheckContent(const std::string &path, const LoadResult &loaded, const Agreed &agreed,
                                     InvalidFile invalid) {
  if (loaded.status != LoadStatus::NotATransformationFile || loaded.isEmpty)
    return std::nullopt;
  if (loaded.isUnreadable)
    return Show(MessageId::TransformationFileUnreadable, path, EditResult::Stopped);
  return invalid == InvalidFile::Keep ? KeepInvalid(path, loaded)
                                      : Ask(agreed, MessageId::OverwriteExistingFile, {path}, V_ALERT_OK_CANCEL);
}

} // namespace

Decision End(EditResult result) { return {.otherwise = result}; }

Decision Show(MessageId id, std::string_view value, EditResult result) {
  return {.otherwise = result, .text = report::FormatMessage(id, {value})};
}

bool Settle(const Decision &decision, Agreed &agreed) {
  if (decision.text.empty())
    return false;
  const bool proceeds = V_ApiAlert(decision.text.c_str(), decision.alert) == V_ANSWER_PROCEED;
  if (decision.alert == V_ALERT_PLAIN || !proceeds)
    return false;
  agreed.insert(decision.text);
  return true;
}

std::optional<Decision> CheckTarget(const std::string &path, const LoadResult &loaded, const Agreed &agreed,
                                    InvalidFile invalid) {
  const std::string file = LocalCopy(ResolvePath(path));
  if (file.empty())
    return End(EditResult::Stopped);
  if (auto problem = CheckFolder(kit::FolderOf(file)))
    return problem;
  if (!kit::Exists(file))
    return Ask(agreed, MessageId::CreateMissingFile, {path}, V_ALERT_YES_NO);
  if (!kit::IsFile(file))
    return Show(MessageId::FileMissing, path, EditResult::Stopped);
  if (auto problem = CheckContent(path, loaded, agreed, invalid))
    return problem;
  if (!kit::IsWritable(file))
    return Show(MessageId::CannotSaveTransformationFile, path, EditResult::Stopped);
  return std::nullopt;
}

std::optional<Decision> CheckLoss(const std::string &path, const LoadResult &loaded, const Agreed &agreed,
                                  InvalidFile invalid) {
  if (loaded.status != LoadStatus::NotLoaded)
    return std::nullopt;
  if (loaded.isUnreadable)
    return Show(MessageId::TransformationFileUnreadable, path, EditResult::Stopped);
  if (invalid == InvalidFile::Keep)
    return KeepInvalid(path, loaded);
  return Ask(agreed, MessageId::OverwriteInvalidFile, {path, std::to_string(loaded.elementCount)}, V_ALERT_OK_CANCEL);
}

std::optional<Decision> CheckReplacement(const Transformation &record, const LoadResult &loaded, const Agreed &agreed) {
  if (!loaded.list || FindTransformation(*loaded.list, record.name) < 0)
    return std::nullopt;
  return Ask(agreed, MessageId::ReplaceTransformation, {record.name}, V_ALERT_YES_NO);
}

std::optional<Decision> CheckFields(const Transformation &record, IsKnownProcessor isKnown, const Agreed &agreed) {
  if (!record.usePI && record.xslPath.empty())
    return Show(MessageId::XslNotSpecified, record.name, EditResult::Failed);
  if (record.output.outputLocation == OutputLocationKind::DirPath && record.output.dirPath.empty())
    return Show(MessageId::OutputFolderNotSpecified, record.name, EditResult::Failed);
  return isKnown(record.processor)
             ? std::nullopt
             : Ask(agreed, MessageId::ProcessorNotFoundCreateAnyway, {record.processor}, V_ALERT_YES_NO);
}

} // namespace catalogue
