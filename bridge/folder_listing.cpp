#include "bridge/processor_bridge.h"
#include "bridge/xslt_error_handler.h"

#include <filesystem>
#include <system_error>

namespace bridge {

namespace {

namespace fs = std::filesystem;

// Sub-folders first. Throws; what was found until then is in `files`.
void ListFolder(const fs::path &folder, bool recurse, kit::StringList &files) {
  std::vector<fs::path> own;
  std::vector<fs::path> folders;
  for (const fs::directory_entry &entry : fs::directory_iterator(folder)) {
    if (!entry.is_directory())
      own.push_back(entry.path());
    else if (!entry.is_symlink()) // a link may lead back up
      folders.push_back(entry.path());
  }
  if (recurse)
    for (const fs::path &sub : folders)
      ListFolder(sub, recurse, files);
  for (const fs::path &file : own)
    files.Append(file.string());
}

} // namespace

kit::StringList GetAllFilesInFolder(const char *folder, int32_t includeSubFolders) {
  // A list even when it stays empty.
  kit::StringList files = kit::StringList::Adopt(V_StrListNew());
  try {
    ListFolder(folder ? folder : "", includeSubFolders != 0, files);
  } catch (const fs::filesystem_error &error) {
    XSLTErrorHandler::GetInst().ReportMessage(
        ("Cannot list the folder " + error.path1().string() + ": " + error.code().message()).c_str());
  } catch (const std::exception &error) {
    XSLTErrorHandler::GetInst().ReportMessage(error.what());
  }
  return files;
}

int32_t IsEmptyFile(const char *file) {
  if (!file || !*file)
    return 0;
  std::error_code error;
  const auto size = fs::file_size(file, error);
  return !error && size == 0 ? 1 : 0;
}

} // namespace bridge
