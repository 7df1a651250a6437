#include "host/cli/commands.h"
#include "host/cli/printing.h"
#include "host/cli/split_parameter.h"
#include "kit/names.h"
#include "kit/paths.h"
#include "kit/request_builder.h"

namespace cli {

namespace {

// The one integer of an edit's reply: saved, failed, stopped.
constexpr int32_t saved = 1;

ExitCode SendEdit(Environment environment, const kit::RequestBuilder &request, const std::string &failure) {
  const host::ClientReply reply = environment.session.Send(kit::xsltName, request.Text());
  const ExitCode code = Finish(environment, reply);
  if (code != ExitCode::Done || reply.values.Integer(0) == saved)
    return code;
  PrintError(failure);
  return ExitCode::Failed;
}

std::string FindMissingField(const RecordOptions &fields) {
  if (fields.name.find_first_not_of(" \t\r\n") == std::string::npos)
    return "a transformation needs a name";
  if (!fields.usesInstruction && fields.stylesheet.empty())
    return "a transformation needs --xsl FILE or --use-pi";
  return {};
}

// What the options name, as options of a request in which a later one counts. False and an error text when a parameter
// has no name.
bool AddFields(kit::RequestBuilder &request, const RecordOptions &fields, std::string &error) {
  error = FindParameterFault(fields.parameters);
  if (!error.empty())
    return false;
  PrintHints(fields.parameters);
  request.AddIfGiven("-xslfilepath", fields.stylesheet);
  if (fields.usesInstruction)
    request.Add("-usepi");
  request.AddIfGiven("-processor", fields.processor);
  for (const std::string &name : fields.droppedParameters)
    request.Add("-dropparam", {name});
  for (const std::string &text : fields.parameters)
    if (const auto parameter = SplitParameter(text))
      request.Add("-sparam", {parameter->first, parameter->second});
  if (fields.suffix)
    request.Add("-suffix", {*fields.suffix});
  request.AddIfGiven("-dirpath", fields.folder);
  request.AddIfGiven("-output", fields.output);
  request.AddIfGiven("-openoutput", fields.openOutput);
  return true;
}

// The start of a request about a catalogue that must exist.
kit::RequestBuilder AskCatalogue(Environment environment, std::string_view name, const CatalogueOptions &options,
                                 std::string &error) {
  kit::RequestBuilder request(name, kit::RequestBuilder::Grammar::ClassicOrJson);
  const std::string catalogue = FindCatalogue(environment, options, error);
  if (error.empty() && !kit::IsFile(catalogue))
    error = "there is no catalogue " + catalogue;
  request.Add("-trfile", {catalogue});
  return request;
}

} // namespace

std::string FindCatalogue(Environment environment, const CatalogueOptions &catalogue, std::string &error) {
  if (!catalogue.file.empty())
    return ReadPath(environment, catalogue.file);
  if (catalogue.application.empty()) {
    error = "say which catalogue: --catalogue FILE or --application NAME";
    return {};
  }
  std::string found = ResolvePath(environment, "-appname", catalogue.application);
  const std::string &source = environment.session.Settings().source;
  if (found.empty())
    error = "the application \"" + catalogue.application + "\" has no catalogue in " +
            (source.empty() ? "the built-in configuration" : source);
  return found;
}

ExitCode ListTransformations(Environment environment, const CatalogueOptions &options) {
  std::string error;
  kit::RequestBuilder request = AskCatalogue(environment, "VlxsltListTransformations", options, error);
  if (!error.empty())
    return Refuse(error);
  // Programs get the records, people their descriptions.
  if (environment.options.printsJson)
    request.Add("-records");
  const host::ClientReply reply = environment.session.Send(kit::xsltName, request.Text());
  const ExitCode code = Finish(environment, reply);
  if (environment.options.printsJson)
    return code;
  std::string text;
  for (uint32_t index = 0; index < reply.values.Size(); ++index)
    text += FormatFields(reply.values.Strings(index).value_or(std::vector<std::string>()));
  return Print(text) ? code : ExitCode::Failed;
}

ExitCode ListParameters(Environment environment, const std::string &stylesheet) {
  const std::string path = ReadPath(environment, stylesheet);
  kit::RequestBuilder request("VlxsltStylesheetParams", kit::RequestBuilder::Grammar::ClassicOrJson);
  request.Add("-xslfilepath", {path});
  if (!kit::IsFile(path))
    return Refuse("there is no stylesheet " + path);
  const host::ClientReply reply = environment.session.Send(kit::xsltName, request.Text());
  const ExitCode code = Finish(environment, reply);
  if (environment.options.printsJson)
    return code;
  std::string text;
  const std::vector<std::string> parameters = reply.values.Strings(0).value_or(std::vector<std::string>());
  for (size_t at = 0; at + 1 < parameters.size(); at += 2)
    text += FormatFields({parameters[at], parameters[at + 1]});
  return Print(text) ? code : ExitCode::Failed;
}

ExitCode AddTransformation(Environment environment, const CatalogueOptions &options, const RecordOptions &fields) {
  std::string error;
  kit::RequestBuilder request("VlxsltAddTransformation", kit::RequestBuilder::Grammar::ClassicOrJson);
  request.Add("-trfile", {FindCatalogue(environment, options, error)});
  request.Add("-name", {fields.name});
  if (fields.replacesInvalid)
    request.Add("-replace");
  if (error.empty() && AddFields(request, fields, error))
    error = FindMissingField(fields);
  return error.empty() ? SendEdit(environment, request, "the transformation \"" + fields.name + "\" was not added")
                       : Refuse(error);
}

ExitCode EditTransformation(Environment environment, const CatalogueOptions &options, const RecordOptions &fields) {
  std::string error;
  kit::RequestBuilder request = AskCatalogue(environment, "VlxsltEditTransformation", options, error);
  request.Add("-trname", {fields.name});
  request.AddIfGiven("-name", fields.newName);
  if (error.empty())
    (void)AddFields(request, fields, error);
  return error.empty() ? SendEdit(environment, request, "the transformation \"" + fields.name + "\" was not changed")
                       : Refuse(error);
}

ExitCode DeleteTransformation(Environment environment, const CatalogueOptions &options, const std::string &name) {
  std::string error;
  kit::RequestBuilder request = AskCatalogue(environment, "VlxsltDeleteTransformation", options, error);
  request.Add("-trname", {name});
  return error.empty() ? SendEdit(environment, request, "the transformation \"" + name + "\" was not deleted")
                       : Refuse(error);
}

} // namespace cli
