#include "report/replaced_file.h"

#include "report/run_event.h"

namespace report {

namespace {

void Warn(MessageId id, const std::string &path, std::initializer_list<std::string_view> values) {
  Report(Diagnostic{Severity::Warning, FormatMessage(id, values), Place{path}});
}

} // namespace

void ReportLosses(const kit::AtomicFile &file, const std::string &path) {
  if (file.OtherNames() > 0)
    Warn(MessageId::OtherNamesKeepOld, path, {path, std::to_string(file.OtherNames())});
  if (file.HasLostPermissions())
    Warn(MessageId::PermissionsNotKept, path, {path});
}

} // namespace report
