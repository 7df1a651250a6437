#include "client/dispatch.h"

#include "client/catalogue_requests.h"
#include "client/open_documents.h"
#include "client/run_execution.h"
#include "client/run_plan.h"
#include "client/run_request.h"
#include "dialogs/dialogs.h"
#include "kit/names.h"
#include "kit/paths.h"
#include "kit/text.h"
#include "report/transformation_log.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

namespace client {

namespace {

using kit::TypedValues;
using processors::Processor;
using report::MessageId;

int32_t RunStatus(std::string_view options, Processor &processor) {
  RunRequest request;
  RunPlan plan;
  if (ParseRunOptions(options, request) == RequestCheck::Refused)
    return V_ERROR_BAD_REQUEST;
  if (PlanRun(request, plan) == RequestCheck::Refused || CheckDistinctOutputs(plan) == RequestCheck::Refused) {
    ReportRefusedRun(plan);
    return V_ERROR_BAD_REQUEST;
  }
  return ExecuteRun(plan, processor) == RunResult::Done ? V_ERROR_NONE : V_ERROR_FAILED;
}

TypedValues AnswerRun(std::string_view text, Processor &processor) {
  const std::string_view options = text.substr(kit::runRequestName.size());
  report::ResetLog(WantsConsole(options), WantsLog(options) ? report::LogKeeping::Text : report::LogKeeping::EchoOnly);
  V_ApiSetError(RunStatus(options, processor));
  TypedValues reply;
  reply.AddInteger(V_ApiGetError());
  reply.AddString(report::LogText());
  report::ResetLog(false);
  return reply;
}

TypedValues DescribeJob(const RunPlan &plan, const PlannedJob &job, const Foresight &foresight) {
  TypedValues described;
  described.AddInteger(job.number);
  described.AddString(job.input);
  described.AddString(job.stylesheet);
  described.AddString(plan.processor);
  described.AddStrings(plan.parameters);
  described.AddString(job.output);
  described.AddStrings(foresight.asks);
  described.AddInteger(static_cast<int32_t>(foresight.status));
  described.AddStrings(foresight.problems);
  return described;
}

TypedValues AnswerPlan(std::string_view text, Processor &) {
  report::ResetLog(WantsConsole(text.substr(kit::planRequestName.size())));
  RunRequest request;
  RunPlan plan;
  const bool isAccepted =
      ParseRunOptions(text.substr(kit::planRequestName.size()), request) == RequestCheck::Accepted &&
      PlanRun(request, plan) == RequestCheck::Accepted;
  V_ApiSetError(isAccepted ? V_ERROR_NONE : V_ERROR_BAD_REQUEST);
  TypedValues reply;
  reply.AddInteger(V_ApiGetError());
  reply.AddString(report::LogText());
  // A request that is refused for another reason has jobs without a plan.
  if (!isAccepted && std::ranges::any_of(plan.jobs, &PlannedJob::IsToRun))
    return reply;
  const std::vector<Foresight> foreseen = Foresee(plan);
  for (size_t index = 0; index < foreseen.size(); ++index)
    reply.AddValues(DescribeJob(plan, plan.jobs[index], foreseen[index]));
  return reply;
}

TypedValues AnswerChooseXsl(std::string_view, Processor &) {
  static std::string lastFolder;
  const std::string path =
      kit::HostString::Adopt(V_ApiChooseFile(V_CHOOSE_OPEN, report::LoadMessage(MessageId::SelectXslFile).c_str(),
                                             report::LoadMessage(MessageId::XslFilter).c_str(),
                                             kit::OrNull(lastFolder)))
          .Text();
  TypedValues reply;
  if (!path.empty()) {
    lastFolder = kit::FolderOf(path);
    reply.AddString(path);
  }
  return reply;
}

TypedValues AnswerChooseTransformation(std::string_view, Processor &) { return dialogs::OpenChooseDialog(); }

TypedValues AnswerManageTransformations(std::string_view, Processor &) {
  dialogs::OpenManageDialog();
  return {};
}

TypedValues AnswerNewTransformation(std::string_view, Processor &) {
  dialogs::OpenNewDialog();
  return {};
}

TypedValues AnswerAdvancedRun(std::string_view, Processor &) {
  if (const std::string request = dialogs::OpenAdvancedRunDialog(); !request.empty())
    V_ApiCallClient("XSLT", request.c_str());
  return {};
}

// The object number behind "-file"; 0 when there is none.
V_ObjectT FindObjectOption(std::string_view text) {
  kit::Tokenizer tokens(text);
  V_ObjectT object = 0;
  for (std::string token; tokens.Next(token);)
    if (kit::EqualsIgnoreCase(token, "-file") && tokens.Next(token))
      std::from_chars(token.data(), token.data() + token.size(), object);
  return object;
}

TypedValues AnswerComponents(std::string_view text, Processor &) {
  const V_ObjectT named = FindObjectOption(text);
  const std::vector<std::string> paths = ComponentPaths(named ? named : ActiveBookOrDocument());
  TypedValues reply;
  if (!paths.empty())
    reply.AddStrings(paths);
  return reply;
}

struct Entry {
  std::string_view name;
  TypedValues (*answer)(std::string_view text, Processor &processor);
  bool needsBlank = true; // behind the name

  [[nodiscard]] bool Matches(std::string_view request) const {
    return kit::StartsWithIgnoreCase(request, name) && (!needsBlank || request.substr(name.size()).starts_with(' '));
  }
};

constexpr std::array entries = {
    Entry{kit::runRequestName, AnswerRun},
    Entry{"XSLTGetTrScenarioFile", AnswerTransformationFile},
    Entry{"XSLTGetTrScenario", AnswerTransformations},
    Entry{"XSLTDeleteTrScenario", AnswerDelete},
    Entry{"XSLTChooseTranDlg", AnswerChooseTransformation},
    Entry{"XSLTChooseXSLDlg", AnswerChooseXsl},
    Entry{"XSLTManageTranDlg", AnswerManageTransformations},
    Entry{"XSLTAdvanceRunDlg", AnswerAdvancedRun},
    Entry{"NewTransformationDlg", AnswerNewTransformation},
    Entry{"XSLTGetDitamapComponents", AnswerComponents, false},
    Entry{kit::planRequestName, AnswerPlan},
    Entry{"VlxsltProcessors", AnswerProcessors, false},
    Entry{"VlxsltResolvePath", AnswerResolvePath},
    Entry{"VlxsltStylesheetParams", AnswerStylesheetParameters},
    Entry{"VlxsltListTransformations", AnswerListing},
    Entry{"VlxsltAddTransformation", AnswerAdd},
    Entry{"VlxsltEditTransformation", AnswerEdit},
    Entry{"VlxsltDeleteTransformation", AnswerDeleteExisting},
};

// Every request has a log of its own; the echo setting of the host is as before when it is over.
class LogScope {
public:
  LogScope() : echoBefore(report::HostEcho()) { report::ResetLog(true); }
  ~LogScope() { report::ResetLog(echoBefore); }
  LogScope(const LogScope &) = delete;
  LogScope &operator=(const LogScope &) = delete;

private:
  bool echoBefore;
};

} // namespace

kit::TypedValues DispatchRequest(std::string_view request, Processor &processor) {
  const auto entry = std::ranges::find_if(entries, [&](const Entry &each) { return each.Matches(request); });
  const LogScope scope;
  return entry == entries.end() ? TypedValues() : entry->answer(request, processor);
}

} // namespace client
