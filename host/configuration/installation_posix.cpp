#include "host/configuration/installation.h"

#include "kit/paths.h"

#include <filesystem>
#include <system_error>

namespace host {

std::string Installation::ClientPath(std::string_view client) const {
  return kit::JoinPath(clientFolder, client).append(".so");
}

std::string Installation::DefaultConfigurationPath() const { return shareFolder + "vlxslt.toml"; }

Installation FindInstallation() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  const std::string root = error ? "/usr" : program.parent_path().parent_path().string();
  return {kit::JoinPath(root, "lib/vlxslt"), kit::JoinPath(root, "share/vlxslt/")};
}

} // namespace host
