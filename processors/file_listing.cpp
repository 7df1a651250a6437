#include "processors/file_listing.h"

#include "kit/unfinished_files.h"
#include "report/run_event.h"

#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace processors {

namespace {

void Check(const std::error_code &error, const std::string &folder) {
  if (error)
    throw fs::filesystem_error("cannot list the folder", folder, error);
}

// Each folder is read once: its sub-folders come first, then its own files.
void ListFolder(const std::string &folder, bool recurse, kit::StringList &files) {
  std::vector<std::string> own;
  std::vector<std::string> subFolders;
  std::error_code error;
  fs::directory_iterator entries(folder, error);
  Check(error, folder);
  for (const fs::directory_iterator end; entries != end; entries.increment(error), Check(error, folder)) {
    std::error_code ignored;
    if (!entries->is_directory(ignored)) {
      // What another run is writing, or a killed one left, is no input.
      if (!entries->path().filename().string().starts_with(kit::unfinishedPrefix))
        own.push_back(entries->path().string());
    } else if (recurse && !entries->is_symlink(ignored)) // a link may lead in a circle
      subFolders.push_back(entries->path().string());
  }
  for (const std::string &subFolder : subFolders)
    ListFolder(subFolder, recurse, files);
  for (const std::string &file : own)
    files.Append(file);
}

} // namespace

kit::StringList GetAllFilesInFolder(const char *folder, int32_t includeSubFolders) {
  kit::StringList files = kit::StringList::Adopt(V_StrListNew());
  try {
    ListFolder(folder ? folder : "", includeSubFolders != 0, files);
  } catch (const std::exception &fault) {
    report::ReportProblem(fault.what());
  }
  return files;
}

int32_t IsEmptyFile(const char *file) {
  std::error_code error;
  return file && *file && fs::is_regular_file(file, error) && fs::file_size(file, error) == 0 && !error ? 1 : 0;
}

} // namespace processors
