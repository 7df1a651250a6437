// Finds a Java virtual machine on this computer. Nothing is loaded here.
#ifndef PROCESSORS_JAVA_JAVA_INSTALLATION_H
#define PROCESSORS_JAVA_JAVA_INSTALLATION_H

#include <string>

namespace processors {

struct JavaInstallation {
  std::string home;
  std::string library; // libjvm; empty when nothing was found
  std::string version; // as the installation says it; may be empty
  std::string problem; // why there is none that can be used, and what to do
};

// The configured home; JAVA_HOME; the distribution's default; the `java` on the path; the newest that is there. A
// configured home is the only one looked at, since silently taking another would hide a mistake.
[[nodiscard]] JavaInstallation FindJava(const std::string &configuredHome);

// The newest that is installed, if it starts faster than the one that is used; else without a home. Looks in the
// folders of VLXSLT_JAVA_FOLDERS, separated by ":", or else where Javas usually are.
[[nodiscard]] JavaInstallation FindFasterJava(const JavaInstallation &used);

} // namespace processors

#endif
