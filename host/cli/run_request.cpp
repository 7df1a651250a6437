#include "host/cli/run_request.h"

#include "host/cli/run_inputs.h"
#include "kit/paths.h"
#include "kit/request_builder.h"

#include <vector>

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

std::string FindStreamContradiction(Environment environment, const RunOptions &options) {
  if (ReadsStandardInput(options) && options.inputs.size() > 1)
    return "standard input (-) is an input alone";
  if (ReadsStandardInput(options) && !options.transformation.empty())
    return "standard input (-) goes with --xsl and --use-pi: a transformation places its output beside the input";
  if (WritesStandardOutput(options) && environment.options.printsJson && !options.isDryRun)
    return "--json and -o - both write to standard output";
  return {};
}

// A dry run reads nothing, but the request names a place that is there.
bool UseStreams(const RunOptions &options, StandardStreams &streams, RunInput &input, std::string &error) {
  if ((ReadsStandardInput(options) || WritesStandardOutput(options)) && streams.InputFile().empty()) {
    error = "there is no temporary folder for what standard input and output carry";
    return false;
  }
  if (WritesStandardOutput(options))
    input.outputContent = streams.OutputFile();
  if (!ReadsStandardInput(options))
    return true;
  input.content = options.isDryRun ? kit::FolderOf(streams.InputFile()) : streams.InputFile();
  return options.isDryRun || streams.ReadInput(error);
}

// In a catalogue it means no value; a run has no use for it.
std::string FindEmptyParameter(const RunOptions &options) {
  for (const std::string &parameter : options.parameters)
    if (const auto parts = SplitParameter(parameter); parts && parts->second.empty())
      return std::string("-p ").append(parameter).append(" has no value; an empty text is -p \"").append(parameter) +
             "''\"";
  return {};
}

void AddWhatToApply(Environment environment, const RunOptions &options, const std::string &catalogue,
                    kit::RequestBuilder &request) {
  if (options.usesInstruction)
    request.Add("-usepi");
  if (!options.stylesheet.empty())
    request.Add("-xslfilepath", {ReadPath(environment, options.stylesheet)});
  request.AddIfGiven("-trname", options.transformation);
  request.AddIfGiven("-appname", options.catalogue.application);
  if (!options.catalogue.file.empty())
    request.Add("-trfile", {catalogue});
  request.AddIfGiven("-processor", options.processor);
  if (options.includes)
    request.Add("-xinclude");
  request.AddIfGiven("-initialtemplate", options.initialTemplate);
  request.AddIfGiven("-initialmode", options.initialMode);
  for (const std::string &text : options.parameters)
    if (const auto parameter = SplitParameter(text))
      request.Add("-sparam", {parameter->first, parameter->second});
}

void AddInputs(const RunOptions &options, const std::vector<RunInput> &inputs, kit::RequestBuilder &request) {
  request.Add("-distinctoutputs");
  if (!options.output.empty() && !WritesStandardOutput(options) && NamesFolder(options.output))
    request.Add("-makefolders");
  for (const RunInput &input : inputs) {
    request.Add("-file", {input.path});
    request.AddIfGiven("-filecontent", input.content);
    // A transformation decides for itself, but each input must have a partner.
    request.Add("-outputfilepath", {input.output.empty() ? input.path : input.output});
    request.AddIfGiven("-outputcontent", input.outputContent);
  }
}

} // namespace

bool ComposeRun(Environment environment, const RunOptions &options, StandardStreams &streams, RunRequest &request,
                std::string &error) {
  error = FindContradiction(options);
  if (error.empty())
    error = FindStreamContradiction(environment, options);
  if (error.empty())
    error = FindParameterFault(options.parameters);
  if (error.empty())
    error = FindEmptyParameter(options);
  std::vector<RunInput> inputs;
  std::vector<std::string> warnings;
  if (!error.empty() || !FindInputs(options, inputs, warnings, error))
    return false;
  PrintHints(options.parameters);
  for (const std::string &warning : warnings)
    environment.session.WriteConsole(warning);

  const bool isCatalogueRun = !options.transformation.empty();
  const std::string catalogue = isCatalogueRun ? FindCatalogue(environment, options.catalogue, error) : std::string();
  if (!error.empty() || (!isCatalogueRun && !PlaceOutputs(options, inputs, error)))
    return false;
  if (!UseStreams(options, streams, inputs.front(), error))
    return false;
  kit::RequestBuilder builder("");
  AddWhatToApply(environment, options, catalogue, builder);
  AddInputs(options, inputs, builder);
  error = builder.Problem();
  request = {builder.Text(), static_cast<int32_t>(inputs.size())};
  return error.empty();
}

} // namespace cli
