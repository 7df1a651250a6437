#include "host/cli/commands.h"
#include "host/cli/printing.h"
#include "host/cli/transformation_record.h"
#include "kit/paths.h"
#include "kit/request_builder.h"
#include "kit/text.h"

namespace cli {

namespace {

// The one integer of an edit's reply: saved, failed, stopped.
constexpr int32_t saved = 1;

ExitCode SendEdit(Environment environment, const kit::RequestBuilder &request, const std::string &failure) {
  if (!request.Problem().empty())
    return Refuse(request.Problem());
  const host::ClientReply reply = environment.session.Send("XSLT", request.Text());
  const ExitCode code = Finish(environment, reply);
  if (code != ExitCode::Done || reply.values.Integer(0) == saved)
    return code;
  PrintError(failure);
  return ExitCode::Failed;
}

std::string FindMissingField(const TransformationRecord &record) {
  if (record.name.find_first_not_of(" \t\r\n") == std::string::npos)
    return "a transformation needs a name";
  if (!record.usesInstruction && record.stylesheet.empty())
    return "a transformation needs --xsl FILE or --use-pi";
  if (record.output == OutputPolicy::Folder && record.folder.empty())
    return "--output dirpath needs --folder DIR";
  return {};
}

} // namespace

std::string FindCatalogue(Environment environment, const CatalogueOptions &catalogue, std::string &error) {
  if (!catalogue.file.empty())
    return ReadPath(environment, catalogue.file);
  if (catalogue.application.empty()) {
    error = "say which catalogue: --catalogue FILE or --application NAME";
    return {};
  }
  kit::RequestBuilder request("XSLTGetTrScenarioFile");
  request.Add("-appname", {catalogue.application});
  const host::ClientReply reply = environment.session.Send("VlDispatcher", request.Text());
  const std::string stored = reply.values.String(0).value_or("");
  if (stored.empty())
    error = "the application \"" + catalogue.application + "\" has no catalogue in " +
            (environment.session.Settings().source.empty() ? std::string("the built-in configuration")
                                                           : environment.session.Settings().source);
  return host::ExpandStoredPath(environment.session.Settings(), stored);
}

bool FindRecord(Environment environment, const std::string &catalogue, const std::string &name,
                TransformationRecord &record, std::string &error) {
  kit::RequestBuilder request("XSLTGetTrScenario");
  request.Add("-trfile", {catalogue});
  request.Add("-trname", {name});
  error = request.Problem();
  if (error.empty() && !kit::IsFile(catalogue))
    error = "there is no catalogue " + catalogue;
  if (!error.empty())
    return false;
  const size_t linesBefore = environment.session.Record().console.size();
  const host::ClientReply reply = environment.session.Send("XSLT", request.Text());
  const std::vector<TransformationRecord> records = ReadRecords(reply.values.Get());
  if (!reply.error.empty())
    error = reply.error;
  else if (records.empty() && environment.session.Record().console.size() > linesBefore)
    error = "the catalogue " + catalogue + " cannot be read";
  else if (records.empty())
    error = "there is no transformation \"" + name + "\" in " + catalogue;
  else
    record = records.front();
  return error.empty();
}

ExitCode ListTransformations(Environment environment, const CatalogueOptions &options) {
  std::string error;
  const std::string catalogue = FindCatalogue(environment, options, error);
  if (error.empty() && !kit::IsFile(catalogue))
    error = "there is no catalogue " + catalogue;
  kit::RequestBuilder request("XSLTGetTrScenario");
  request.Add("-trfile", {catalogue});
  if (error.empty())
    error = request.Problem();
  if (!error.empty())
    return Refuse(error);
  const host::ClientReply reply = environment.session.Send("XSLT", request.Text());
  ExitCode code = Finish(environment, reply);
  // A catalogue that cannot be read looks empty in the reply; why stands on the console.
  if (code == ExitCode::Done && reply.values.Size() == 0 && !environment.session.Record().console.empty())
    code = ExitCode::Failed;
  if (environment.options.printsJson)
    return code;
  static constexpr std::string_view opens[] = {"", "opens in the host", "opens with the default program"};
  std::string text;
  for (const TransformationRecord &record : ReadRecords(reply.values.Get())) {
    const size_t open = record.openOutput == 1 || record.openOutput == 2 ? static_cast<size_t>(record.openOutput) : 0;
    text += FormatFields({record.name, record.usesInstruction ? "(processing instruction)" : record.stylesheet,
                          record.processor, DescribeOutput(record), std::string(opens[open])});
  }
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
  const host::ClientReply reply = environment.session.Send("XSLT", request.Text());
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
  const std::string catalogue = FindCatalogue(environment, options, error);
  TransformationRecord record;
  record.name = fields.name;
  if (!environment.session.Settings().processors.empty())
    record.processor = environment.session.Settings().processors.front().name;
  if (error.empty() && ApplyOptions(record, fields, error))
    error = FindMissingField(record);
  if (!error.empty())
    return Refuse(error);
  kit::RequestBuilder request("VlxsltAddTransformation");
  request.Add("-trfile", {catalogue});
  AddToRequest(request, record);
  return SendEdit(environment, request, "the transformation \"" + record.name + "\" was not added");
}

ExitCode EditTransformation(Environment environment, const CatalogueOptions &options, const RecordOptions &fields) {
  std::string error;
  const std::string catalogue = FindCatalogue(environment, options, error);
  TransformationRecord record;
  if (error.empty() && FindRecord(environment, catalogue, fields.name, record, error) &&
      ApplyOptions(record, fields, error))
    error = FindMissingField(record);
  if (!error.empty())
    return Refuse(error);
  kit::RequestBuilder request("VlxsltEditTransformation");
  request.Add("-trfile", {catalogue});
  request.Add("-trname", {fields.name});
  AddToRequest(request, record);
  return SendEdit(environment, request, "the transformation \"" + fields.name + "\" was not changed");
}

ExitCode DeleteTransformation(Environment environment, const CatalogueOptions &options, const std::string &name) {
  std::string error;
  const std::string catalogue = FindCatalogue(environment, options, error);
  TransformationRecord record;
  // Deleting what is not there would only rewrite the file.
  if (!error.empty() || !FindRecord(environment, catalogue, name, record, error))
    return Refuse(error);
  kit::RequestBuilder request("XSLTDeleteTrScenario");
  request.Add("-trfile", {catalogue});
  request.Add("-trname", {name});
  return SendEdit(environment, request, "the transformation \"" + name + "\" was not deleted");
}

} // namespace cli
