#include "host/cli/serve_command.h"

#include "host/cli/commands.h"
#include "host/cli/program.h"
#include "host/resident/resident_client.h"
#include "host/resident/resident_server.h"
#include "host/resident/resident_worker.h"

#include <algorithm>
#include <thread>

namespace cli {

namespace {

resident::PoolLimits LimitsOf(const ServeOptions &options) {
  resident::PoolLimits limits;
  limits.maxWorkers = options.maxWorkers != 0 ? options.maxWorkers : std::max(2U, std::thread::hardware_concurrency());
  limits.maxMegabytes = options.maxMegabytes;
  limits.maxRequests = options.maxRequests;
  limits.maxIdle = std::chrono::milliseconds(static_cast<int64_t>(options.idleMinutes * 60'000));
  return limits;
}

} // namespace

ExitCode ServeRequests(const ServeOptions &options, const host::Installation &installation) {
  if (options.isWorker) {
    resident::ServeAsWorker({RunProgram, HasUsableProcessor}, installation);
    return ExitCode::Done;
  }
  if (options.stops || options.showsStatus)
    return static_cast<ExitCode>(resident::AskServer(
        options.stops ? resident::ServerQuestion::Stop : resident::ServerQuestion::Status, installation));
  std::string problem;
  if (resident::Serve(installation, LimitsOf(options),
                      options.isStarted ? resident::StartedBy::Client : resident::StartedBy::Person, problem))
    return ExitCode::Done;
  return Refuse(problem);
}

} // namespace cli
