#include "host/cli/commands.h"

#include "host/cli/printing.h"
#include "host/fronts/cancellation.h"
#include "kit/names.h"
#include "kit/paths.h"
#include "kit/read_file.h"
#include "kit/request_builder.h"
#include "kit/text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iostream>
#include <iterator>
#include <utility>

namespace cli {

namespace {

struct RequestText {
  std::string text;
  std::string error;
};

// From standard input or a file where the argument says so.
RequestText ReadRequest(const std::string &argument) {
  RequestText request;
  if (argument == "-") {
    request.text.assign(std::istreambuf_iterator<char>(std::cin), {});
  } else if (argument.starts_with('@')) {
    const std::string path = argument.substr(1);
    if (!kit::Exists(path))
      return {.text = {}, .error = "there is no request file " + path};
    kit::FileContent content = kit::ReadFile(path);
    if (!content.error.empty())
      return {.text = {}, .error = "the request file cannot be read: " + content.error};
    request.text = std::move(content.bytes);
  } else {
    request.text = argument;
    return request;
  }
  while (!request.text.empty() && (request.text.back() == '\n' || request.text.back() == '\r'))
    request.text.pop_back();
  kit::JoinLines(request.text);
  if (request.text.find('\0') != std::string::npos)
    request.error = "a request is text; this one holds a zero byte";
  return request;
}

ExitCode SendAndPrint(Environment environment, const std::string &client, const std::string &request) {
  host::RunRecorder recorder;
  environment.session.Listen(&recorder);
  const host::ClientReply reply = environment.session.Send(client, request);
  environment.session.Listen(nullptr);
  const bool isRun = kit::StartsWithIgnoreCase(request, kit::runRequestName);
  const ExitCode code = Finish(environment, reply, isRun ? &recorder.Tally() : nullptr);
  if (!reply.error.empty() || environment.options.printsJson)
    return code;
  return Print(FormatReply(reply.values.Get())) ? code : ExitCode::Failed;
}

struct DialogName {
  std::string_view name;
  std::string_view request;
  bool hasItems; // else the host's file chooser is all there is
};
constexpr std::array dialogNames = {
    DialogName{"choose", "XSLTChooseTranDlg ", true}, DialogName{"manage", "XSLTManageTranDlg ", true},
    DialogName{"new", "NewTransformationDlg ", true}, DialogName{"advanced", "XSLTAdvanceRunDlg ", true},
    DialogName{"xsl", "XSLTChooseXSLDlg ", false},
};

// Of what is told about a processor.
constexpr size_t errorField = 6;

std::vector<std::string> ReadTexts(const V_TypedValT &value) {
  std::vector<std::string> texts;
  if (value.kind == V_KIND_STRINGS)
    return kit::ReadStrings(value.u.strings);
  if (value.kind == V_KIND_TYPED_VALUES)
    for (uint32_t index = 0; index < value.u.values.len; ++index) {
      const V_TypedValT &each = value.u.values.val[index];
      texts.emplace_back(each.kind == V_KIND_STRING && each.u.string ? each.u.string : "");
    }
  return texts;
}

} // namespace

void PrintError(const std::string &text) { std::fputs(("vlxslt: " + text + "\n").c_str(), stderr); }

void PrintHints(const std::vector<std::string> &parameters) {
  for (const std::string &parameter : parameters)
    if (const std::string hint = HintAtNumber(parameter); !hint.empty())
      PrintError(hint);
}

ExitCode Refuse(const std::string &text) {
  PrintError(text);
  return ExitCode::BadCommand;
}

ExitCode JudgeRun(const host::RunTally &tally) {
  if (tally.Of(V_JOB_CANCELLED) > 0)
    return ExitCode::Cancelled;
  const int32_t done = tally.Of(V_JOB_DONE);
  return !tally.hasFailed && done > 0 && done + tally.Of(V_JOB_LEFT_OUT) == tally.count ? ExitCode::Done
                                                                                        : ExitCode::Failed;
}

ExitCode Finish(Environment environment, const host::ClientReply &reply, const host::RunTally *tally) {
  if (!reply.error.empty())
    return Refuse(reply.error);
  if (environment.options.printsJson && !Print(FormatJson(reply.values.Get(), environment.session.Record())))
    return ExitCode::Failed;
  if (host::IsInterrupted())
    return ExitCode::Cancelled;
  if (reply.status == V_ERROR_BAD_REQUEST)
    return ExitCode::BadCommand;
  if (tally && tally->count > 0)
    return JudgeRun(*tally);
  return reply.status == V_ERROR_NONE ? ExitCode::Done : ExitCode::Failed;
}

ExitCode Settle(Environment environment, ExitCode code) {
  if (!environment.script || (code == ExitCode::Cancelled && host::IsInterrupted()))
    return code;
  environment.script->Finish();
  return environment.script->HasFailed() ? ExitCode::ScriptMisfit : code;
}

std::string ResolvePath(Environment environment, std::string_view option, const std::string &value) {
  kit::RequestBuilder request("VlxsltResolvePath", kit::RequestBuilder::Grammar::ClassicOrJson);
  request.Add(option, {value});
  return environment.session.Send(kit::xsltName, request.Text()).values.String(0).value_or("");
}

std::string ReadPath(Environment environment, const std::string &text) {
  const std::string resolved =
      text.starts_with('$') && !kit::Exists(text) ? ResolvePath(environment, "-xslfilepath", text) : std::string();
  return resolved.empty() ? kit::AbsolutePath(kit::UrlToPath(text)) : resolved;
}

ExitCode Call(Environment environment, const CallOptions &options) {
  const RequestText request = ReadRequest(options.request);
  if (!request.error.empty())
    return Refuse(request.error);
  return SendAndPrint(environment, options.client, request.text);
}

ExitCode OpenDialog(Environment environment, const std::string &name) {
  const auto *dialog = std::ranges::find(dialogNames, name, &DialogName::name);
  if (dialog == dialogNames.end())
    return Refuse("there is no dialog \"" + name + "\"; the dialogs are choose, manage, new, advanced and xsl");
  if (dialog->hasItems && environment.options.script.empty() && !environment.options.hasWindows)
    return Refuse("a terminal cannot show the dialog \"" + name + "\"; --script FILE plays it");
  return SendAndPrint(environment, kit::xsltName, std::string(dialog->request));
}

bool LoadsProcessors(host::Session &session) {
  const host::ClientReply reply = session.Send(kit::xsltName, "VlxsltProcessors");
  bool loads = reply.error.empty() && reply.values.Size() > 0;
  for (uint32_t index = 0; index < reply.values.Size(); ++index) {
    std::vector<std::string> fields = ReadTexts(reply.values.Get().val[index]);
    loads = loads && fields.size() > errorField && fields[errorField].empty();
  }
  return loads;
}

ExitCode ListProcessors(Environment environment, bool prepares) {
  const host::ClientReply reply =
      environment.session.Send(kit::xsltName, prepares ? "VlxsltProcessors -prepare" : "VlxsltProcessors");
  ExitCode code = Finish(environment, reply);
  if (code == ExitCode::BadCommand)
    return code;
  if (reply.values.Size() == 0)
    PrintError("no processors are configured; add [[processor]] to the configuration");
  std::string text;
  for (uint32_t index = 0; index < reply.values.Size(); ++index) {
    std::vector<std::string> fields = ReadTexts(reply.values.Get().val[index]);
    fields.resize(errorField + 1);
    const auto &[name, path, className, implementation, version, location, error] =
        std::tie(fields[0], fields[1], fields[2], fields[3], fields[4], fields[5], fields[6]);
    if (error.empty())
      text += FormatFields({name, className, implementation, version, location});
    else
      text += FormatFields({name, className, "cannot be loaded: " + error, "", path});
    if (!error.empty())
      code = ExitCode::Failed;
  }
  return environment.options.printsJson || Print(text) ? code : ExitCode::Failed;
}

} // namespace cli
