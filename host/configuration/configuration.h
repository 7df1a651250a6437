// The host's configuration file (TOML), as values. Relative paths in it are taken from the file's own folder; paths
// that begin with a path variable ($STRUCTDIR, $VLHOME) are kept as they are written. Nothing here throws.
#ifndef HOST_CONFIGURATION_CONFIGURATION_H
#define HOST_CONFIGURATION_CONFIGURATION_H

#include "host/configuration/installation.h"
#include "kit/names.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// A setting of a processor's factory.
struct AttributeSetting {
  std::string name;
  std::string type; // "string", "integer", "number" or "boolean"
  std::string value;

  [[nodiscard]] bool operator==(const AttributeSetting &) const = default;
};

struct ProcessorSetting {
  std::string name;
  std::string classPath; // absolute entries, ";" between them
  std::string className;
  std::vector<AttributeSetting> attributes = {};
  bool allowsExtensions = false; // code that stylesheets call, when this processor applies them
};

// Any rule that matches associates a file with the application.
struct ApplicationSetting {
  std::string name;
  std::string catalogue = {};
  std::vector<std::string> roots = {};
  std::vector<std::string> publicIds = {};  // "*" stands for anything
  std::vector<std::string> namespaces = {}; // likewise
  std::vector<std::string> files = {};      // likewise, against the file's name
};

struct Configuration {
  std::string source; // the file; empty for the built-in defaults
  bool isInstalledDefault = false;

  std::string product = "Vellis";
  std::string installFolder;   // ends in a separator
  std::string structureFolder; // does not
  std::string defaultCatalogue;
  std::string tempFolder; // empty: a private one, gone when the host ends
  std::vector<std::string> catalogs;
  std::string javaHome;
  std::vector<std::string> javaOptions;
  int32_t jobs = 0;   // inputs at once; 0: as many as the machine has cores and memory for
  std::string editor; // the command that opens a file at a line; empty: $VISUAL, then the desktop's own
  std::vector<ProcessorSetting> processors;
  std::vector<ApplicationSetting> applications;

  // What documents and stylesheets are trusted with.
  std::vector<std::string> trustedHosts; // names or addresses, maybe with a port; "*" for all
  bool allowsExtensions = false;         // of every processor
  std::vector<std::string> writeFolders = {kit::writeBesideOutput}; // for further results; or "*"
  bool syncsOutputs = true;                                         // data is on disk before success is reported
};

struct ConfigurationResult {
  Configuration configuration;
  std::vector<std::string> problems; // "file:line:column: what is wrong"; empty when the file is good
};

inline constexpr int32_t maxJobs = 256;

// Whether a text is a host as it is trusted: "name" or "name:port", or "*".
[[nodiscard]] bool IsHostName(std::string_view text);

// Where a person's own file belongs; empty without a home.
[[nodiscard]] std::string OwnConfigurationPath();
// The first of: `named` (from the command line), $VLXSLT_CONFIG, the user's own, the installed default. Empty when
// there is none at all.
[[nodiscard]] std::string FindConfigurationFile(const std::string &named, const Installation &installation);

// An empty path gives the built-in defaults.
[[nodiscard]] ConfigurationResult ReadConfiguration(const std::string &path, const Installation &installation);

} // namespace host

#endif
