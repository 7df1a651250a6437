#include "client/run_files.h"

#include "kit/vdk.h"

#include <filesystem>
#include <system_error>

namespace client {

void RunFiles::DeleteAtEnd(std::string file) {
  if (!file.empty())
    toDelete.push_back(std::move(file));
}

void RunFiles::Keep(const std::string &output) { std::erase(toDelete, output); }

void RunFiles::OpenListedInHost(bool temporary) {
  for (const std::string &output : toOpen)
    if (V_ApiIsCancelled() || !V_ApiOpenDocument(output.c_str(), temporary ? output.c_str() : nullptr))
      Keep(output);
}

void RunFiles::LaunchListed() {
  for (const std::string &output : toOpen) {
    Keep(output);
    if (!V_ApiIsCancelled())
      V_ApiLaunch(output.c_str());
  }
}

void RunFiles::DeleteListed() {
  for (const std::string &file : toDelete) {
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
  }
  toDelete.clear();
}

} // namespace client
