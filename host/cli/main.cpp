// The stand-alone host's command line. What a resident worker can do goes there before anything else is set up.
#include "host/cli/program.h"
#include "host/configuration/installation.h"
#include "host/resident/resident_client.h"

int main(int count, char **arguments) {
  if (resident::WantsResident(count, arguments))
    if (const auto code = resident::RunInWorker(count, arguments, host::FindInstallation()))
      return *code;
  return cli::RunProgram(count, arguments);
}
