#include "catalogue/writer.h"

#include "catalogue/decision.h"
#include "catalogue/location.h"
#include "catalogue/network.h"
#include "catalogue/reader.h"
#include "catalogue/serialize_transformations.h"
#include "catalogue/xml_library.h"
#include "catalogue/xml_text.h"
#include "kit/atomic_file.h"
#include "kit/file_lock.h"
#include "kit/paths.h"
#include "kit/unfinished_files.h"
#include "report/messages.h"
#include "report/replaced_file.h"
#include "report/run_event.h"

#include <chrono>
#include <utility>

namespace catalogue {

namespace {

using report::MessageId;

// An edit takes well below a second; what holds the lock for longer hangs.
constexpr std::chrono::seconds maxLockWait{10};

// Decides with the file locked, and settles what there is to settle without the lock. The file is parsed again only
// when it has changed meanwhile.
template <class Decide> EditResult CarryOut(const std::string &path, const Decide &decide) {
  Agreed agreed;
  std::optional<LoadResult> loaded;
  for (;;) {
    Decision decision;
    {
      const kit::FileLock lock(LocalCopy(ResolvePath(path)), maxLockWait);
      if (lock.GetState() == kit::FileLock::State::Busy) {
        decision = {.otherwise = EditResult::Stopped,
                    .text = report::FormatMessage(MessageId::TransformationFileLocked, {path, lock.Path()})};
      } else {
        ReloadTransformationFile(path, loaded);
        decision = decide(*loaded, agreed);
      }
      if (decision.list)
        return SaveTransformationFile(path, *decision.list) ? EditResult::Saved : EditResult::Failed;
    }
    if (!Settle(decision, agreed))
      return decision.otherwise;
  }
}

// What a reader will make of the record: with blanks around it, a name would pass for a new one, and be dropped as the
// second of its name when the file is read.
Transformation AsRead(Transformation record) {
  for (std::string *text :
       {&record.name, &record.xslPath, &record.processor, &record.output.dirPath, &record.output.suffix})
    *text = Trim(*text);
  for (std::string &text : record.parameters)
    text = Trim(text);
  return record;
}

// Nothing could address it afterwards.
bool HasName(const Transformation &record) {
  if (record.name.empty())
    report::ReportProblem(MessageId::NameMissing);
  return !record.name.empty();
}

Decision NotFound(const std::string &path, const std::string &name) {
  report::ReportProblem(MessageId::TransformationNotFoundInFile, {name, path});
  return End(EditResult::NotFound);
}

Transformation *Find(TransformationList &list, std::string_view name) {
  const int32_t index = FindTransformation(list, name);
  return index < 0 ? nullptr : &list[static_cast<size_t>(index)];
}

// Renamed onto a name that exists, that one is replaced and the old one stays.
Decision Replace(TransformationList list, const Transformation &record, const std::string &oldName) {
  Transformation *target = Find(list, record.name);
  if (!target)
    target = Find(list, oldName);
  if (!target) {
    report::ReportProblem(MessageId::TransformationNotFound, {oldName});
    return End(EditResult::Failed);
  }
  *target = record;
  return {.list = std::move(list)};
}

Decision AddOrReplace(TransformationList list, const Transformation &record) {
  if (Transformation *target = Find(list, record.name))
    *target = record;
  else
    list.push_back(record);
  return {.list = std::move(list)};
}

Decision DecideEdit(const std::string &path, LoadResult &loaded, const Agreed &agreed, const Transformation &record,
                    const std::string &oldName, IsKnownProcessor isKnown) {
  if (auto problem = CheckTarget(path, loaded, agreed, InvalidFile::AskToReplace))
    return *std::move(problem);
  if (loaded.isUnreadable)
    return Show(MessageId::TransformationFileUnreadable, path, EditResult::Stopped);
  if (record.name != oldName)
    if (auto problem = CheckReplacement(record, loaded, agreed))
      return *std::move(problem);
  if (auto problem = CheckFields(record, isKnown, agreed))
    return *std::move(problem);
  return Replace(std::exchange(loaded.list, std::nullopt).value_or(TransformationList()), record, oldName);
}

EditResult Delete(const std::string &path, const std::string &name, bool mustExist) {
  if (path.empty() || name.empty())
    return EditResult::Failed;
  return CarryOut(path, [&](LoadResult &loaded, const Agreed &agreed) -> Decision {
    if (mustExist && loaded.list && FindTransformation(*loaded.list, name) < 0)
      return NotFound(path, name);
    if (auto problem = CheckTarget(path, loaded, agreed, InvalidFile::AskToReplace))
      return *std::move(problem);
    if (!loaded.list)
      return End(EditResult::Failed);
    std::erase_if(*loaded.list, [&](const Transformation &each) { return each.name == name; });
    return {.list = std::exchange(loaded.list, std::nullopt)};
  });
}

} // namespace

bool SaveTransformationFile(const std::string &path, const TransformationList &list) {
  const std::string resolved = ResolvePath(path);
  if (resolved.empty() || !StartXmlLibrary())
    return false;
  const auto bytes = SerializeTransformations(list);
  if (!bytes)
    return false;
  const std::string target = LocalCopy(resolved);
  kit::RemoveAbandonedFiles(kit::FolderOf(kit::FollowLinks(target)));
  kit::AtomicFile file(target);
  if (!file.Write(*bytes) || !file.Commit()) {
    report::ReportProblem(MessageId::TransformationFileNotWritten, {file.Error()});
    return false;
  }
  report::ReportLosses(file, target);
  return PushBack(resolved);
}

bool CanWriteTransformationFile(const std::string &path) {
  Agreed agreed;
  const LoadResult loaded = LoadTransformationFile(path);
  for (;;) {
    const auto problem = CheckTarget(path, loaded, agreed, InvalidFile::AskToReplace);
    if (!problem)
      return true;
    if (!Settle(*problem, agreed))
      return false;
  }
}

FieldCheck CheckTransformationFields(const Transformation &record, CheckMode mode, IsKnownProcessor isKnown) {
  Agreed agreed;
  const auto problem = CheckFields(record, isKnown, agreed);
  if (!problem)
    return FieldCheck::GoOn;
  const bool isQuestion = problem->alert != V_ALERT_PLAIN;
  if (mode == CheckMode::Interactive)
    return Settle(*problem, agreed) ? FieldCheck::GoOn : isQuestion ? FieldCheck::Declined : FieldCheck::Stop;
  if (isQuestion)
    report::ReportProblem(MessageId::ProcessorNotFound, {record.processor});
  else
    report::ReportProblem(problem->text);
  return FieldCheck::Stop;
}

EditResult AddTransformation(const std::string &path, const Transformation &given, IsKnownProcessor isKnown,
                             InvalidFile invalid) {
  const Transformation record = AsRead(given);
  if (path.empty() || !HasName(record))
    return EditResult::Failed;
  return CarryOut(path, [&](LoadResult &loaded, const Agreed &agreed) -> Decision {
    if (auto problem = CheckTarget(path, loaded, agreed, invalid))
      return *std::move(problem);
    if (auto problem = CheckLoss(path, loaded, agreed, invalid))
      return *std::move(problem);
    if (auto problem = CheckReplacement(record, loaded, agreed))
      return *std::move(problem);
    if (auto problem = CheckFields(record, isKnown, agreed))
      return *std::move(problem);
    return AddOrReplace(std::exchange(loaded.list, std::nullopt).value_or(TransformationList()), record);
  });
}

EditResult EditTransformation(const std::string &path, const Transformation &given, const std::string &oldName,
                              IsKnownProcessor isKnown) {
  const Transformation record = AsRead(given);
  if (path.empty() || oldName.empty() || !HasName(record))
    return EditResult::Failed;
  return CarryOut(path, [&](LoadResult &loaded, const Agreed &agreed) {
    return DecideEdit(path, loaded, agreed, record, oldName, isKnown);
  });
}

EditResult ChangeTransformation(const std::string &path, const std::string &oldName, const Change &change,
                                IsKnownProcessor isKnown) {
  if (path.empty())
    return NotFound(path, oldName).otherwise;
  return CarryOut(path, [&](LoadResult &loaded, const Agreed &agreed) -> Decision {
    const Transformation *current = loaded.list ? Find(*loaded.list, oldName) : nullptr;
    if (!current)
      return loaded.isUnreadable ? Show(MessageId::TransformationFileUnreadable, path, EditResult::Stopped)
                                 : NotFound(path, oldName);
    const auto changed = change(*current);
    if (!changed)
      return End(EditResult::Failed);
    const Transformation record = AsRead(*changed);
    return HasName(record) ? DecideEdit(path, loaded, agreed, record, oldName, isKnown) : End(EditResult::Failed);
  });
}

EditResult DeleteTransformation(const std::string &path, const std::string &name) { return Delete(path, name, false); }

EditResult DeleteExistingTransformation(const std::string &path, const std::string &name) {
  return Delete(path, name, true);
}

} // namespace catalogue
