// What the Preferences window does when it saves: reads a configuration, gives it another product name and writes it.
// usage: save_preferences FILE NAME
#include "host/desktop/save_preferences.h"
#include "host/configuration/installation.h"

#include <cstdio>
#include <numeric>

int main(int count, char **arguments) {
  if (count != 3)
    return 2;
  const host::Installation installation = host::FindInstallation();
  const host::ConfigurationResult read = host::ReadConfiguration(arguments[1], installation);
  host::ConfigurationChange change{read.configuration, read.configuration, {}, {}};
  change.after.product = arguments[2];
  change.processorOrigins.resize(change.after.processors.size());
  std::iota(change.processorOrigins.begin(), change.processorOrigins.end(), 0);
  change.applicationOrigins.resize(change.after.applications.size());
  std::iota(change.applicationOrigins.begin(), change.applicationOrigins.end(), 0);
  const desktop::SavedPreferences saved = desktop::SavePreferences(change, installation);
  if (!saved.error.empty())
    std::fprintf(stderr, "%s\n", saved.error.c_str());
  return saved.error.empty() ? 0 : 1;
}
