#include "host/desktop/run_window.h"

#include "host/desktop/log_panel.h"
#include "host/desktop/progress_panel.h"
#include "host/desktop/window_events.h"
#include "host/editor_command.h"

#include <wx/frame.h>
#include <wx/sizer.h>

#include <utility>

namespace desktop {

class RunWindow : public wxFrame {
public:
  RunWindow(std::function<void()> cancel, std::function<void()> close)
      : wxFrame(nullptr, wxID_ANY, "XSLT Run"), cancelRun(std::move(cancel)), closed(std::move(close)),
        log(new LogPanel(this,
                         [](const host::FilePlace &place) {
                           static_cast<void>(host::StartProgram(host::ComposeEditorCommand({}, place)));
                         })),
        progress(new ProgressPanel(this, [this] { Cancel(); })) {
    log->SetEmptyPage(new wxPanel(log));
    auto *sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(log, wxSizerFlags(1).Expand());
    sizer->Add(progress, wxSizerFlags().Expand());
    SetSizer(sizer);
    SetSize(FromDIP(wxSize(640, 360)));
    Bind(wxEVT_CLOSE_WINDOW, &RunWindow::OnClose, this);
    NoteActivation(*this);
    progress->Begin();
    wxFrame::Show();
  }

  void Append(const std::vector<RunItem> &items) { log->Append(items); }
  void ShowInput(const host::Progress &next) { progress->Show(next); }
  void Finish() {
    isDone = true;
    progress->End();
  }

private:
  // During a run the window cancels it, and closes when it has ended.
  void OnClose(wxCloseEvent &event) {
    if (isDone) {
      closed();
      return;
    }
    event.Veto();
    Cancel();
  }

  void Cancel() {
    cancelRun();
    progress->ShowCancelling();
    NoteEvent("cancelling");
  }

  std::function<void()> cancelRun;
  std::function<void()> closed;
  LogPanel *log;
  ProgressPanel *progress;
  bool isDone = false;
};

RequestView::RequestView(std::function<void()> cancel, std::function<void()> close)
    : cancelRun(std::move(cancel)), closed(std::move(close)) {}

void RequestView::ShowRun(const std::vector<RunItem> &items) {
  PrintLines(items);
  for (const RunItem &item : items)
    if (const auto *event = std::get_if<host::RunEvent>(&item)) {
      summary.TakeEvent(*event);
      hasErrors = hasErrors || summary.HasErrors();
    }
  if (window)
    window->Append(items);
  else
    early.insert(early.end(), items.begin(), items.end());
}

void RequestView::ShowProgress(const host::Progress &progress) {
  if (progress.count == 0)
    return;
  if (!window) {
    window = new RunWindow(cancelRun, closed);
    window->Append(early);
  }
  window->ShowInput(progress);
  NoteEvent("progress", progress.path);
}

void RequestView::LaunchOutput(const std::string &path) { PrintLines({"Output: " + path}); }

bool RequestView::StayAfterwards() {
  if (window)
    window->Finish();
  NoteEvent("idle");
  return window && hasErrors;
}

} // namespace desktop
