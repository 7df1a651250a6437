#include "client/output_placement.h"

#include "catalogue/location.h"
#include "kit/paths.h"
#include "kit/unfinished_files.h"
#include "kit/values.h"
#include "report/replaced_file.h"

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

void PlaceAt(PlannedJob &job, std::string output) {
  job.place = NetLibIsNetFile(output.c_str()) ? OutputPlace::Named : OutputPlace::Replaced;
  job.output = std::move(output);
}

} // namespace

void PlaceByPolicy(const catalogue::TransformationOutput &policy, PlannedJob &job) {
  const std::string &input = job.input;
  switch (policy.outputLocation) {
  case OutputLocationKind::Prompt:
    job.place = OutputPlace::Asked;
    return;
  case OutputLocationKind::DirPath: {
    const std::string folder = catalogue::ResolvePath(policy.dirPath, input);
    PlaceAt(job, folder.empty() || input.empty() ? std::string() : kit::JoinPath(folder, kit::FileNameOf(input)));
    return;
  }
  case OutputLocationKind::SameLocationAsSource:
    PlaceAt(job, policy.suffix.empty() || input.empty()
                     ? input
                     : kit::JoinPath(kit::FolderOf(input), AddSuffix(input, policy.suffix)));
    return;
  case OutputLocationKind::DoNotSave:
    break;
  }
  job.place = OutputPlace::Temporary;
}

ChosenOutput ChooseOutput(const PlannedJob &job) {
  switch (job.place) {
  case OutputPlace::Asked:
    return {AskForOutput(job.input), {}};
  case OutputPlace::Named:
    return {job.output, {}};
  case OutputPlace::Elsewhere:
    return {job.output, {}, job.outputContent};
  case OutputPlace::Replaced:
    return {job.output, job.output.empty() ? std::string() : TemporaryOutput(job.input)};
  case OutputPlace::Temporary:
    break;
  }
  return {TemporaryOutput(job.input), {}};
}

std::string NameTemporaryOutput(const std::string &input, const std::function<bool(const std::string &)> &takes) {
  const std::string folder = kit::GetString(V_SESSION, V_SP_TEMP_DIR);
  const std::string extension = kit::ExtensionOf(input);
  const std::string plain = kit::JoinPath(folder, kit::BaseNameOf(input) + "-out");
  const std::string tail = extension.empty() ? std::string() : "." + extension;
  std::string path = plain + tail;
  for (int counter = 0; !takes(path); ++counter)
    path.assign(plain).append(std::to_string(counter)).append(tail);
  return path;
}

std::string TemporaryOutput(const std::string &input) {
  return NameTemporaryOutput(input,
                             [](const std::string &path) { return kit::ReserveFile(path) != kit::Reservation::Taken; });
}

std::optional<MessageId> FindFolderObstacle(const std::string &output) {
  const std::string folder = kit::FolderOf(output);
  if (!kit::IsFolder(folder))
    return MessageId::FolderMissing;
  return kit::IsWritable(folder) ? std::nullopt : std::optional(MessageId::FolderNotWritable);
}

bool IsProtected(const std::string &output) { return !kit::IsFile(output) || !kit::IsWritable(output); }

bool IsOwnStylesheet(const PlannedJob &job, const std::string &output) {
  return !output.empty() && !job.stylesheet.empty() && kit::IsSameFile(job.stylesheet, output);
}

OutputCheck CheckOutput(const std::string &output) {
  if (output.empty())
    return {};
  if (NetLibIsNetFile(output.c_str()))
    return {true};
  if (const auto obstacle = FindFolderObstacle(output))
    return {false, report::MakeProblem(*obstacle, {kit::FolderOf(output)})};
  if (!kit::Exists(output))
    return {true};
  const std::string question = report::FormatMessage(MessageId::OverwriteExistingFile, {output});
  if (V_ApiAlert(question.c_str(), V_ALERT_OK_CANCEL) != V_ANSWER_PROCEED)
    return {};
  if (IsProtected(output))
    return {false, report::MakeProblem(MessageId::OutputReadOnly, {output})};
  return {true};
}

std::string ReplaceOutput(const std::string &temporary, const std::string &output, kit::Durability durability) {
  kit::AtomicFile file(output);
  if (!file.WriteFile(temporary) || !file.Commit(durability))
    return file.Error();
  report::ReportLosses(file, output);
  std::error_code ignored;
  std::filesystem::remove(temporary, ignored);
  return {};
}

} // namespace client
