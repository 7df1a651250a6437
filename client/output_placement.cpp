#include "client/output_placement.h"

#include "catalogue/location.h"
#include "kit/atomic_file.h"
#include "kit/paths.h"
#include "kit/values.h"
#include "report/transformation_log.h"
#include "report/xslt_error_handler.h"

#include <filesystem>
#include <system_error>

namespace client {

namespace {

using catalogue::OutputLocationKind;
using report::MessageId;

// "%s%s.%s", or without the dot when the input has no extension.
std::string AddSuffix(const std::string &input, const std::string &suffix) {
  const std::string extension = kit::ExtensionOf(input);
  return kit::BaseNameOf(input) + suffix + (extension.empty() ? "" : ".") + extension;
}

std::string AskForOutput(const std::string &input) {
  if (input.empty())
    return {};
  return kit::HostString::Adopt(V_ApiChooseFile(V_CHOOSE_SAVE, report::LoadMessage(MessageId::SaveOutputFile).c_str(),
                                                report::LoadMessage(MessageId::XmlFilter).c_str(),
                                                kit::FolderOf(input).c_str()))
      .Text();
}

OutputPlan ThroughTemporary(std::string output, const std::string &input) {
  OutputPlan plan{std::move(output), {}};
  if (!plan.output.empty() && !NetLibIsNetFile(plan.output.c_str()))
    plan.temporary = TemporaryOutput(input);
  return plan;
}

} // namespace

OutputPlan PlanOutput(const catalogue::TransformationOutput &policy, const std::string &input) {
  switch (policy.outputLocation) {
  case OutputLocationKind::Prompt:
    return {AskForOutput(input), {}};
  case OutputLocationKind::DirPath: {
    const std::string folder = catalogue::ResolvePath(policy.dirPath, input);
    if (folder.empty() || input.empty())
      return {};
    return ThroughTemporary(kit::JoinPath(folder, kit::FileNameOf(input)), input);
  }
  case OutputLocationKind::SameLocationAsSource:
    if (policy.suffix.empty() || input.empty())
      return ThroughTemporary(input, input);
    return ThroughTemporary(kit::JoinPath(kit::FolderOf(input), AddSuffix(input, policy.suffix)), input);
  case OutputLocationKind::DoNotSave:
    break;
  }
  return {TemporaryOutput(input), {}};
}

std::string TemporaryOutput(const std::string &input) {
  const std::string folder = kit::GetString(V_SESSION, V_SP_TEMP_DIR);
  const std::string extension = kit::ExtensionOf(input);
  const std::string plain = kit::JoinPath(folder, kit::BaseNameOf(input) + "-out");
  const std::string tail = extension.empty() ? std::string() : "." + extension;
  std::string path = plain + tail;
  for (int counter = 0; kit::Exists(path); ++counter)
    path.assign(plain).append(std::to_string(counter)).append(tail);
  return path;
}

OutputCheck CheckOutput(const std::string &output) {
  if (output.empty())
    return OutputCheck::Refused;
  if (NetLibIsNetFile(output.c_str()))
    return OutputCheck::Accepted;
  const std::string folder = kit::FolderOf(output);
  if (!kit::IsFolder(folder)) {
    report::AppendMessage(MessageId::FolderMissing, {folder});
    return OutputCheck::Refused;
  }
  if (!kit::IsWritable(folder)) {
    report::AppendMessage(MessageId::FolderNotWritable, {folder});
    return OutputCheck::Refused;
  }
  if (!kit::Exists(output))
    return OutputCheck::Accepted;
  const std::string question = report::FormatMessage(MessageId::OverwriteExistingFile, {output});
  if (V_ApiAlert(question.c_str(), V_ALERT_OK_CANCEL) != V_ANSWER_PROCEED)
    return OutputCheck::Refused;
  if (!kit::IsFile(output) || !kit::IsWritable(output)) {
    report::AppendMessage(MessageId::OutputReadOnly, {output});
    return OutputCheck::Refused;
  }
  return OutputCheck::Accepted;
}

bool ReplaceOutput(const std::string &temporary, const std::string &output) {
  kit::AtomicFile file(output);
  if (!file.WriteFile(temporary) || !file.Commit()) {
    report::XSLTErrorHandler::GetInst().ReportMessage(file.Error().c_str());
    return false;
  }
  std::error_code ignored;
  std::filesystem::remove(temporary, ignored);
  return true;
}

} // namespace client
