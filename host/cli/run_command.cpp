#include "host/cli/commands.h"
#include "host/cli/dry_run.h"
#include "host/cli/run_inputs.h"
#include "host/cli/transformation_record.h"
#include "kit/paths.h"
#include "kit/request_builder.h"

#include <algorithm>
#include <set>
#include <sstream>

namespace cli {

namespace {

// Empty when the options fit together.
std::string FindContradiction(const RunOptions &options) {
  const int ways = (options.transformation.empty() ? 0 : 1) + (options.stylesheet.empty() ? 0 : 1) +
                   (options.usesInstruction ? 1 : 0);
  if (ways != 1)
    return "say what to apply: one of --transformation NAME, --xsl FILE and --use-pi";
  const bool namesCatalogue = !options.catalogue.file.empty() || !options.catalogue.application.empty();
  if (options.transformation.empty())
    return namesCatalogue ? "--catalogue and --application go with --transformation" : "";
  if (!namesCatalogue)
    return "--transformation needs --catalogue FILE or --application NAME to be looked up in";
  if (!options.output.empty() || !options.extension.empty())
    return "a transformation says itself where its output goes; -o and --extension go with --xsl and --use-pi";
  if (!options.processor.empty() || !options.parameters.empty())
    return "a transformation names its own processor and parameters; --processor and -p go with --xsl and --use-pi";
  return {};
}

std::optional<std::string> FindParameterFault(const RunOptions &options) {
  for (const std::string &parameter : options.parameters)
    if (!SplitParameter(parameter))
      return "-p wants NAME=EXPRESSION, not \"" + parameter + "\"";
  return std::nullopt;
}

std::string FindFirstConflict(const std::vector<RunInput> &inputs) {
  const std::vector<std::string> conflicts = FindConflicts(inputs);
  for (size_t index = 0; index < inputs.size(); ++index)
    if (!conflicts[index].empty())
      return "the output of " + inputs[index].path + ", " + inputs[index].output + ", " +
             (conflicts[index].starts_with("is") ? conflicts[index] : "is the " + conflicts[index]);
  return {};
}

kit::RequestBuilder ComposeRequest(Environment environment, const RunOptions &options,
                                   const std::vector<RunInput> &inputs, const std::string &catalogue) {
  kit::RequestBuilder request("XSLTRunTrScenario");
  if (options.usesInstruction)
    request.Add("-usepi");
  if (!options.stylesheet.empty())
    request.Add("-xslfilepath", {ReadPath(environment, options.stylesheet)});
  request.AddIfGiven("-trname", options.transformation);
  request.AddIfGiven("-appname", options.catalogue.application);
  if (!options.catalogue.file.empty())
    request.Add("-trfile", {catalogue});
  request.AddIfGiven("-processor", options.processor);
  for (const std::string &text : options.parameters)
    if (const auto parameter = SplitParameter(text))
      request.Add("-sparam", {parameter->first, parameter->second});
  for (const RunInput &input : inputs) {
    request.Add("-file", {input.path});
    // A transformation decides for itself, but each input must have a partner.
    request.Add("-outputfilepath", {input.output.empty() ? input.path : input.output});
  }
  return request;
}

// A transformation names its outputs itself; one that a second input would overwrite at once is a result lost. Inputs
// that the application does not take have none.
std::string FindSharedOutput(Environment environment, const RunOptions &options, const std::string &catalogue,
                             std::vector<RunInput> inputs) {
  const host::Configuration &configuration = environment.session.Settings();
  std::erase_if(inputs, [&](const RunInput &input) {
    return !IsTakenBy(configuration, options.catalogue.application, input.path);
  });
  TransformationRecord record;
  std::string error;
  if (inputs.size() < 2 || !kit::IsFile(catalogue))
    return {};
  // What is wrong inside the catalogue has been told by now; that the name is not there, the run will tell.
  const size_t linesBefore = environment.session.Record().console.size();
  if (!FindRecord(environment, catalogue, options.transformation, record, error))
    return environment.session.Record().console.size() > linesBefore ? error : std::string();
  for (RunInput &input : inputs) {
    input.output = PlaceByPolicy(configuration, record, input.path);
    // To replace the input may be what the transformation is for.
    if (input.output == input.path)
      input.output.clear();
  }
  return FindFirstConflict(inputs);
}

constexpr std::string_view inputHeading = "Input: ";

// The inputs that the log of a run calls transformed.
std::set<std::string> ReadTransformed(const std::string &log) {
  std::set<std::string> transformed;
  std::string input;
  std::istringstream lines(log);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(inputHeading))
      input = line.substr(inputHeading.size());
    else if (line == "Transformation Successful.\r")
      transformed.insert(input);
  }
  return transformed;
}

// The names, one to a line; of many only the first.
std::string ListNames(const std::vector<std::string> &names) {
  static constexpr size_t most = 20;
  std::string list;
  for (size_t index = 0; index < std::min(names.size(), most); ++index)
    list += "\n  " + names[index];
  return names.size() > most ? list + "\n  and " + std::to_string(names.size() - most) + " more" : list;
}

// The request's own status is that of its last input, and an input that was refused or filtered out leaves no section
// in the log; a script wants to know about every one.
ExitCode ReportUntransformed(Environment environment, const RunOptions &options, const std::vector<RunInput> &inputs,
                             const std::string &log) {
  const std::set<std::string> transformed = ReadTransformed(log);
  const std::string &application = options.catalogue.application;
  std::vector<std::string> missing;
  std::vector<std::string> filtered;
  for (const RunInput &input : inputs)
    if (!transformed.contains(input.path))
      (IsTakenBy(environment.session.Settings(), application, input.path) ? missing : filtered).push_back(input.path);
  const std::string ofAll = " of " + std::to_string(inputs.size()) + " inputs were ";
  if (!filtered.empty())
    PrintError(std::to_string(filtered.size()) + ofAll + "left out, not being of the application \"" + application +
               "\":" + ListNames(filtered));
  if (missing.empty())
    return ExitCode::Done;
  // One input, or a run that never began, has said everything already.
  if (inputs.size() > 1 && log.find(inputHeading) != std::string::npos)
    PrintError(std::to_string(missing.size()) + ofAll + "not transformed:" + ListNames(missing));
  return ExitCode::Failed;
}

} // namespace

ExitCode Run(Environment environment, const RunOptions &options) {
  std::string error = FindContradiction(options);
  if (error.empty())
    error = FindParameterFault(options).value_or("");
  std::vector<RunInput> inputs;
  std::vector<std::string> warnings;
  if (!error.empty() || !FindInputs(options, inputs, warnings, error))
    return Refuse(error);
  for (const std::string &warning : warnings)
    environment.session.WriteConsole(warning);

  const bool isCatalogueRun = !options.transformation.empty();
  const std::string catalogue = isCatalogueRun ? FindCatalogue(environment, options.catalogue, error) : std::string();
  if (!error.empty() || (!isCatalogueRun && !PlaceOutputs(options, inputs, error)))
    return Refuse(error);
  if (options.isDryRun) {
    TransformationRecord record;
    if (isCatalogueRun && !FindRecord(environment, catalogue, options.transformation, record, error))
      return Refuse(error);
    return PrintDryRun(environment, options, std::move(inputs), isCatalogueRun ? &record : nullptr);
  }

  error = isCatalogueRun ? FindSharedOutput(environment, options, catalogue, inputs) : FindFirstConflict(inputs);
  if (!error.empty())
    return Refuse(error);
  const kit::RequestBuilder request = ComposeRequest(environment, options, inputs, catalogue);
  if (!request.Problem().empty())
    return Refuse(request.Problem());
  if (!isCatalogueRun && !MakeOutputFolders(options, inputs, error)) {
    PrintError(error);
    return ExitCode::Failed;
  }
  const host::ClientReply reply = environment.session.Send("XSLT", request.Text());
  const ExitCode code = Finish(environment, reply);
  if (code != ExitCode::Done && code != ExitCode::Failed)
    return code;
  const ExitCode all = ReportUntransformed(environment, options, inputs, reply.values.String(1).value_or(""));
  return code == ExitCode::Done ? all : code;
}

} // namespace cli
