// The part of the workbench that sends requests and shows their runs.
#include "host/desktop/window_events.h"
#include "host/desktop/window_texts.h"
#include "host/desktop/workbench.h"
#include "kit/names.h"
#include "kit/request_builder.h"

#include <utility>

namespace desktop {

namespace {

constexpr size_t logPage = 0;
constexpr int problemsField = 1; // of the status bar
constexpr const char *runningStatus = "\u25B8 running";

} // namespace

void Workbench::Send(const std::string &request, std::function<void(const RequestOutcome &)> then) {
  if (isBusy)
    return;
  isBusy = true;
  summary = {};
  openedOutput.clear();
  info->Dismiss();
  UpdateCommands();
  host->Send(request, [this, then = std::move(then)](const RequestOutcome &outcome) {
    FinishRequest(outcome);
    if (then && !isClosing)
      then(outcome);
  });
}

void Workbench::FinishRequest(const RequestOutcome &outcome) {
  isBusy = false;
  progress->End();
  for (const std::string &request : outcome.record.requests)
    if (request.starts_with(kit::runRequestName))
      lastRun = request;
  UpdateCommands();
  TellOutcome(outcome);
  // An output that has a place of its own is opened there.
  if (openedOutput.empty() && !outcome.record.opened.empty())
    openedOutput = outcome.record.opened.back();
  if (!openedOutput.empty()) {
    outputs->Select(openedOutput);
    ViewOutput(openedOutput);
  }
  NoteEvent("idle");
  if (isClosing)
    Close();
}

void Workbench::TellOutcome(const RequestOutcome &outcome) {
  if (!outcome.error.empty()) {
    Tell(ToWx(outcome.error), wxICON_ERROR);
    return;
  }
  const std::string counts = SummariseRun(summary);
  const bool hasFailed = outcome.status == V_ERROR_FAILED || summary.NotDone() > 0;
  if (summary.CountOf(V_JOB_CANCELLED) > 0 && summary.NotDone() == 0)
    Tell("The run was cancelled: " + ToWx(counts), wxICON_INFORMATION);
  else if (summary.Inputs() == 0 && !summary.FirstError().empty())
    Tell("Nothing was run: " + ToWx(summary.FirstError()), wxICON_WARNING);
  else if (hasFailed && outcome.record.console.empty() && !summary.FirstError().empty())
    Tell("The run failed: " + ToWx(summary.FirstError()), wxICON_WARNING); // the log is quiet
  else if (hasFailed)
    Tell("The run failed" + ToWx(counts.empty() ? counts : ": " + counts) +
             ". The log says why; F4, or a click on a file name in it, opens the place.",
         wxICON_WARNING);
}

void Workbench::RunAgain() { Send(lastRun, {}); }
void Workbench::AskForRun() { Send("XSLTAdvanceRunDlg ", {}); }
void Workbench::ManageTransformations() { Send("XSLTManageTranDlg ", {}); }
void Workbench::MakeTransformation() { Send("NewTransformationDlg ", {}); }

void Workbench::ChooseAndRun() {
  Send("XSLTChooseTranDlg ", [this](const RequestOutcome &chosen) { RunChosen(chosen); });
}

// The reply holds catalogue, name and application; without a name nothing was chosen.
void Workbench::RunChosen(const RequestOutcome &chosen) {
  if (chosen.texts.size() < 3 || chosen.texts[1].empty())
    return;
  const OpenDocument *active = documents->Active();
  if (!active) {
    Tell(wxString::Format("Open a document to run \"%s\" on it.", ToWx(chosen.texts[1])), wxICON_INFORMATION);
    return;
  }
  kit::RequestBuilder request(kit::runRequestName);
  const bool isBook = active->summary.source == host::ComponentSource::Book;
  request.Add(isBook ? "-currentfilewithchildren" : "-currentfile");
  if (chosen.texts[2].empty())
    request.Add("-trfile", {chosen.texts[0]});
  else
    request.Add("-appname", {chosen.texts[2]});
  request.Add("-trname", {chosen.texts[1]});
  if (request.Problem().empty())
    Send(request.Text(), {});
  else
    Tell(ToWx(request.Problem()), wxICON_ERROR);
}

void Workbench::CancelRun() {
  host->Cancel();
  progress->ShowCancelling();
  NoteEvent("cancelling");
}

void Workbench::ShowRun(const std::vector<RunItem> &items) {
  log->Append(items);
  for (const RunItem &item : items)
    if (const auto *event = std::get_if<host::RunEvent>(&item))
      TakeEvent(*event);
  SetStatusText(ToWx(summary.DescribeProblems()), problemsField);
}

void Workbench::TakeEvent(const host::RunEvent &event) {
  summary.TakeEvent(event);
  switch (event.kind) {
  case V_RUN_BEGINS:
    inputs.clear();
    pages->ChangeSelection(logPage);
    SetStatusText({});
    break;
  case V_JOB_BEGINS:
    inputs[event.job] = event.path;
    documents->ShowStatus(event.path, runningStatus);
    break;
  case V_RUN_OUTPUT:
    outputs->Add(event.path, event.outputKind);
    if (event.outputKind == V_OUTPUT_OPENED)
      openedOutput = event.path;
    break;
  case V_JOB_ENDS:
    documents->ShowStatus(event.path.empty() ? inputs[event.job] : event.path, DescribeStatus(event.status));
    break;
  case V_RUN_ENDS:
    SetStatusText(ToWx(SummariseRun(summary)));
    NoteEvent("summary", SummariseRun(summary));
    break;
  default:
    break;
  }
}

void Workbench::ShowProgress(const host::Progress &next) {
  if (next.count == 0) {
    progress->End();
    log->EndRequest();
    return;
  }
  NoteEvent("progress", next.path);
  if (next.index == 0)
    progress->Begin();
  progress->Show(next);
}

void Workbench::FollowNextProblem() {
  pages->ChangeSelection(logPage);
  if (!log->FollowNext())
    Tell("There is no problem with a place in a file.", wxICON_INFORMATION);
}

void Workbench::ClearLog() { log->Clear(); }

} // namespace desktop
