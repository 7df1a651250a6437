#include "client/output_sync.h"

#include "kit/paths.h"
#include "kit/sync_folder.h"
#include "report/run_event.h"

#include <utility>

namespace client {

namespace {

std::string RealFolderOf(const std::string &file) { return kit::RealPath(kit::FolderOf(kit::FollowLinks(file))); }

} // namespace

void OutputSync::NoteMissingFolders(const std::string &folder) {
  std::string made = kit::AbsolutePath(folder);
  while (!kit::IsFolder(made) && made != kit::FolderOf(made)) {
    made = kit::FolderOf(made);
    folders.insert(kit::RealPath(made));
  }
}

void OutputSync::NotePrincipal(const std::string &output) { folders.insert(RealFolderOf(output)); }

void OutputSync::NoteSecondary(const std::string &output, const std::string &principal) {
  const std::string end = RealFolderOf(principal);
  std::string folder = RealFolderOf(output);
  while (folders.insert(folder), folder != end && folder != kit::FolderOf(folder))
    folder = kit::FolderOf(folder);
}

bool OutputSync::Sync() {
  bool isSynced = true;
  for (const std::string &folder : std::exchange(folders, {}))
    if (const std::string problem = kit::SyncFolder(folder); !problem.empty()) {
      report::ReportProblem(report::MessageId::OutputsNotSynced, {problem});
      isSynced = false;
    }
  return isSynced;
}

} // namespace client
