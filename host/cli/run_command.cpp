#include "host/cli/commands.h"
#include "host/cli/dry_run.h"
#include "host/cli/retry.h"
#include "host/cli/run_inputs.h"
#include "host/cli/run_report.h"
#include "host/cli/run_request.h"
#include "kit/names.h"
#include "kit/paths.h"

namespace cli {

namespace {

// Empty when the files that are to be written about the run fit together.
std::string FindFileContradiction(const RunOptions &options) {
  if (options.isDryRun && (!options.record.empty() || !options.sarif.empty()))
    return "a dry run has nothing to record; leave out --record and --sarif";
  if (!options.record.empty() && kit::AbsolutePath(options.record) == kit::AbsolutePath(options.sarif))
    return "--record and --sarif name the same file";
  return {};
}

} // namespace

ExitCode Run(Environment environment, const RunOptions &options) {
  const bool isRetry = !options.retry.empty();
  std::string error = FindFileContradiction(options);
  if (error.empty() && isRetry)
    error = FindRetryContradiction(options);
  RunRequest request;
  StandardStreams streams;
  if (!error.empty() || !(isRetry ? ComposeRetry(options.retry, request, error)
                                  : ComposeRun(environment, options, streams, request, error)))
    return error.empty() ? ExitCode::Cancelled : Refuse(error);
  if (request.inputCount == 0) {
    PrintError("nothing is left to do: every input of " + options.retry + " is done");
    return ExitCode::Done;
  }
  if (options.isDryRun)
    return PrintPlan(environment, request);
  RunReport report(environment, options, request);
  if (!report.Problem().empty())
    return Refuse(report.Problem());
  // A run may say millions of things. The console shows them at once; nothing keeps them unless they are printed.
  const bool keepsLog = environment.options.printsJson;
  environment.session.KeepConsole(keepsLog);
  const ExitCode code = report.Finish(
      environment.session.Send(kit::xsltName, keepsLog ? request.Text() : request.Text() + " -dontreturnlog"));
  if (!WritesStandardOutput(options) || streams.WriteOutput())
    return code;
  PrintError("standard output cannot take the result");
  return ExitCode::Failed;
}

} // namespace cli
