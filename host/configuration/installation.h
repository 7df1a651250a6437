// Where the program finds its own parts, relative to its executable: a build tree and an installation look alike.
#ifndef HOST_INSTALLATION_H
#define HOST_INSTALLATION_H

#include <string>
#include <string_view>

namespace host {

struct Installation {
  std::string clientFolder; // holds the clients' shared libraries
  std::string shareFolder;  // holds the default configuration; ends in a separator

  // The shared library of a client.
  [[nodiscard]] std::string ClientPath(std::string_view client) const;
  [[nodiscard]] std::string DefaultConfigurationPath() const;
};

// The installation that the running program belongs to.
[[nodiscard]] Installation FindInstallation();

} // namespace host

#endif
