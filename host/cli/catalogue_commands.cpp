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
  if (!request.Problem().empty())
    return Refuse(request.Problem());
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
  request.AddIfGiven("-xslfilepath", fields.stylesheet);
  if (fields.usesInstruction)
    request.Add("-usepi");
  request.AddIfGiven("-processor", fields.processor);
  for (const std::string &name : fields.droppedParameters)
    request.Add("-dropparam", {name});
  for (const std::string &text : fields.parameters) {
    const auto parameter = SplitParameter(text);
    if (!parameter) {
      error = "-p wants NAME=EXPRESSION, not \"" + text + "\"";
      return false;
    }
    if (const std::string hint = HintAtNumber(text); !hint.empty())
      PrintError(hint);
    request.Add("-sparam", {parameter->first, parameter->second});
  }
  if (fields.suffix)
    request.Add("-suffix", {*fields.suffix});
  request.AddIfGiven("-dirpath", fields.folder);
  request.AddIfGiven("-output", fields.output);
  request.AddIfGiven("-openoutput", fields.openOutput);
  return true;
}

// The reply with the transformation of that name; an error text when the catalogue has none.
kit::TypedValues FindTransformation(Environment environment, const std::string &catalogue, const std::string &name,
                                    std::string &error) {
  kit::RequestBuilder request("XSLTGetTrScenario");
  request.Add("-trfile", {catalogue});
  request.Add("-trname", {name});
  error = request.Problem();
  if (error.empty() && !kit::IsFile(catalogue))
    error = "there is no catalogue " + catalogue;
  if (!error.empty())
    return {};
  const size_t linesBefore = environment.session.Record().console.size();
  host::ClientReply reply = environment.session.Send(kit::xsltName, request.Text());
  if (!reply.error.empty())
    error = reply.error;
  else if (reply.values.Size() == 0 && environment.session.Record().console.size() > linesBefore)
    error = "the catalogue " + catalogue + " cannot be read";
  else if (reply.values.Size() == 0)
    error = "there is no transformation \"" + name + "\" in " + catalogue;
  return std::move(reply.values);
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
  const std::string catalogue = FindCatalogue(environment, options, error);
  if (error.empty() && !kit::IsFile(catalogue))
    error = "there is no catalogue " + catalogue;
  // Programs get the records, people their descriptions.
  kit::RequestBuilder request(environment.options.printsJson ? "XSLTGetTrScenario" : "VlxsltListTransformations");
  request.Add("-trfile", {catalogue});
  if (error.empty())
    error = request.Problem();
  if (!error.empty())
    return Refuse(error);
  const host::ClientReply reply = environment.session.Send(kit::xsltName, request.Text());
  ExitCode code = Finish(environment, reply);
  // A catalogue that cannot be read looks empty in the reply; why stands on the console.
  if (code == ExitCode::Done && reply.values.Size() == 0 && !environment.session.Record().console.empty())
    code = ExitCode::Failed;
  if (environment.options.printsJson)
    return code;
  std::string text;
  for (uint32_t index = 0; index < reply.values.Size(); ++index)
    text += FormatFields(reply.values.Strings(index).value_or(std::vector<std::string>()));
  return Print(text) ? code : ExitCode::Failed;
}

ExitCode ListParameters(Environment environment, const std::string &stylesheet) {
  const std::string path = ReadPath(environment, stylesheet);
  kit::RequestBuilder request("VlxsltStylesheetParams");
  request.Add("-xslfilepath", {path});
  std::string error = request.Problem();
  if (error.empty() && !kit::IsFile(path))
    error = "there is no stylesheet " + path;
  if (!error.empty())
    return Refuse(error);
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
  kit::RequestBuilder request("VlxsltAddTransformation");
  request.Add("-trfile", {FindCatalogue(environment, options, error)});
  request.Add("-name", {fields.name});
  if (error.empty() && AddFields(request, fields, error))
    error = FindMissingField(fields);
  return error.empty() ? SendEdit(environment, request, "the transformation \"" + fields.name + "\" was not added")
                       : Refuse(error);
}

ExitCode EditTransformation(Environment environment, const CatalogueOptions &options, const RecordOptions &fields) {
  std::string error;
  const std::string catalogue = FindCatalogue(environment, options, error);
  kit::RequestBuilder request("VlxsltEditTransformation");
  request.Add("-trfile", {catalogue});
  request.Add("-trname", {fields.name});
  request.AddIfGiven("-name", fields.newName);
  if (error.empty() && AddFields(request, fields, error))
    (void)FindTransformation(environment, catalogue, fields.name, error);
  return error.empty() ? SendEdit(environment, request, "the transformation \"" + fields.name + "\" was not changed")
                       : Refuse(error);
}

ExitCode DeleteTransformation(Environment environment, const CatalogueOptions &options, const std::string &name) {
  std::string error;
  const std::string catalogue = FindCatalogue(environment, options, error);
  // Deleting what is not there would only rewrite the file.
  if (error.empty())
    (void)FindTransformation(environment, catalogue, name, error);
  if (!error.empty())
    return Refuse(error);
  kit::RequestBuilder request("XSLTDeleteTrScenario");
  request.Add("-trfile", {catalogue});
  request.Add("-trname", {name});
  return SendEdit(environment, request, "the transformation \"" + name + "\" was not deleted");
}

} // namespace cli
