#include "catalogue/writer.h"

#include "catalogue/location.h"
#include "catalogue/network.h"
#include "catalogue/reader.h"
#include "catalogue/serialize_transformations.h"
#include "catalogue/xml_library.h"
#include "kit/atomic_file.h"
#include "kit/paths.h"
#include "report/messages.h"
#include "report/run_event.h"

#include <optional>
#include <utility>

namespace catalogue {

namespace {

using report::MessageId;

void Show(MessageId id, std::string_view value) {
  V_ApiAlert(report::FormatMessage(id, {value}).c_str(), V_ALERT_PLAIN);
}

bool Ask(MessageId id, std::string_view value, int32_t kind) {
  return V_ApiAlert(report::FormatMessage(id, {value}).c_str(), kind) == V_ANSWER_PROCEED;
}

bool CanWriteFolder(const std::string &folder) {
  if (!kit::IsFolder(folder)) {
    Show(MessageId::FolderMissing, folder);
    return false;
  }
  if (!kit::IsWritable(folder)) {
    Show(MessageId::FolderNotWritable, folder);
    return false;
  }
  return true;
}

// Whether the record may take its place in the catalogue as it was loaded.
bool MayReplace(const std::string &path, const Transformation &record, const LoadResult &loaded) {
  // A catalogue that cannot be read counts as empty, so saving would drop what it holds: not without asking.
  if (loaded.status == LoadStatus::NotLoaded && !Ask(MessageId::OverwriteExistingFile, path, V_ALERT_OK_CANCEL))
    return false;
  return !loaded.list || FindTransformation(*loaded.list, record.name) < 0 ||
         Ask(MessageId::ReplaceTransformation, record.name, V_ALERT_YES_NO);
}

// What a reader will make of the record: with blanks around it, a name would pass for a new one, and be dropped as the
// second of its name when the file is read.
Transformation AsRead(const Transformation &given) {
  Transformation record = given;
  for (std::string *text :
       {&record.name, &record.xslPath, &record.processor, &record.output.dirPath, &record.output.suffix})
    *text = Trim(*text);
  for (std::string &text : record.parameters)
    text = Trim(text);
  return record;
}

EditResult Save(const std::string &path, const TransformationList &list) {
  return SaveTransformationFile(path, list) ? EditResult::Saved : EditResult::Failed;
}

// Puts the record where its name stands, else in the place of `oldName`, which must be there, or without one at the
// end.
EditResult Store(const std::string &path, const Transformation &given, const std::optional<std::string> &oldName,
                 IsKnownProcessor isKnown) {
  const Transformation record = AsRead(given);
  if (path.empty() || oldName == "")
    return EditResult::Failed;
  if (!CanWriteTransformationFile(path))
    return EditResult::Stopped;
  LoadResult loaded = LoadTransformationFile(path);
  if (record.name != oldName && !MayReplace(path, record, loaded))
    return EditResult::Stopped;
  if (const FieldCheck check = CheckTransformationFields(record, CheckMode::Interactive, isKnown);
      check != FieldCheck::GoOn)
    return check == FieldCheck::Declined ? EditResult::Stopped : EditResult::Failed;
  TransformationList list = std::move(loaded.list).value_or(TransformationList());
  // Renamed onto a name that exists, that one is replaced and the old one stays.
  int32_t index = FindTransformation(list, record.name);
  if (index < 0 && oldName)
    index = FindTransformation(list, *oldName);
  if (index >= 0) {
    list[static_cast<size_t>(index)] = record;
  } else if (!oldName) {
    list.push_back(record);
  } else {
    report::ReportProblem(MessageId::TransformationNotFound, {*oldName});
    return EditResult::Failed;
  }
  return Save(path, list);
}

} // namespace

bool SaveTransformationFile(const std::string &path, const TransformationList &list) {
  const std::string resolved = ResolvePath(path);
  if (resolved.empty() || !StartXmlLibrary())
    return false;
  const auto bytes = SerializeTransformations(list);
  if (!bytes)
    return false;
  kit::AtomicFile file(LocalCopy(resolved));
  if (!file.Write(*bytes) || !file.Commit()) {
    report::ReportProblem(MessageId::TransformationFileNotWritten, {file.Error()});
    return false;
  }
  return PushBack(resolved);
}

bool CanWriteTransformationFile(const std::string &path) {
  const std::string file = LocalCopy(ResolvePath(path));
  if (file.empty() || !CanWriteFolder(kit::FolderOf(file)))
    return false;
  if (!kit::Exists(file))
    return Ask(MessageId::CreateMissingFile, path, V_ALERT_YES_NO);
  if (!kit::IsFile(file)) {
    Show(MessageId::FileMissing, path);
    return false;
  }
  if (HasContents(file) && !IsTransformationFile(path) &&
      !Ask(MessageId::OverwriteExistingFile, path, V_ALERT_OK_CANCEL))
    return false;
  if (!kit::IsWritable(file)) {
    Show(MessageId::CannotSaveTransformationFile, path);
    return false;
  }
  return true;
}

FieldCheck CheckTransformationFields(const Transformation &record, CheckMode mode, IsKnownProcessor isKnown) {
  const bool quiet = mode == CheckMode::Quiet;
  const auto stop = [quiet](MessageId id, const std::string &value) {
    if (quiet)
      report::ReportProblem(id, {value});
    else
      Show(id, value);
    return FieldCheck::Stop;
  };
  if (!record.usePI && record.xslPath.empty())
    return stop(MessageId::XslNotSpecified, record.name);
  if (record.output.outputLocation == OutputLocationKind::DirPath && record.output.dirPath.empty())
    return stop(MessageId::OutputFolderNotSpecified, record.name);
  if (isKnown(record.processor))
    return FieldCheck::GoOn;
  if (quiet)
    return stop(MessageId::ProcessorNotFound, record.processor);
  return Ask(MessageId::ProcessorNotFoundCreateAnyway, record.processor, V_ALERT_YES_NO) ? FieldCheck::GoOn
                                                                                         : FieldCheck::Declined;
}

EditResult AddTransformation(const std::string &path, const Transformation &record, IsKnownProcessor isKnown) {
  return Store(path, record, std::nullopt, isKnown);
}

EditResult EditTransformation(const std::string &path, const Transformation &record, const std::string &oldName,
                              IsKnownProcessor isKnown) {
  return Store(path, record, oldName, isKnown);
}

EditResult DeleteTransformation(const std::string &path, const std::string &name) {
  if (path.empty() || name.empty())
    return EditResult::Failed;
  if (!CanWriteTransformationFile(path))
    return EditResult::Stopped;
  const LoadResult loaded = LoadTransformationFile(path);
  if (!loaded.list)
    return EditResult::Failed;
  TransformationList kept = *loaded.list;
  std::erase_if(kept, [&](const Transformation &each) { return each.name == name; });
  return Save(path, kept);
}

} // namespace catalogue
