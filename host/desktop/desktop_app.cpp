// The library's entry points: each starts the toolkit, runs the main loop while the host works on its own thread, and
// shuts the toolkit down.
#include "host/desktop/desktop_front.h"
#include "host/desktop/host_thread.h"
#include "host/desktop/run_window.h"
#include "host/desktop/shutdown.h"
#include "host/desktop/ui_thread.h"
#include "host/desktop/workbench.h"
#include "host/desktop_module.h"
#include "host/guard.h"

#include <glib.h>
#include <wx/app.h>
#include <wx/init.h>
#include <wx/log.h>
#include <wx/weakref.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>

namespace desktop {

namespace {

class DesktopApp : public wxApp {
public:
  explicit DesktopApp(std::function<void()> begin) : beginWork(std::move(begin)) {}

  bool OnInit() override {
    // Messages of the toolkit open no window. It takes ownership of the target.
    // NOLINTBEGIN(clang-analyzer-cplusplus.NewDeleteLeaks)
    delete wxLog::SetActiveTarget(new wxLogStderr);
    // NOLINTEND(clang-analyzer-cplusplus.NewDeleteLeaks)
    SetAppName("vlxslt");
    CallAfter(beginWork);
    return true;
  }

  bool OnExceptionInMainLoop() override {
    host::Guarded([] { throw; });
    return true;
  }

private:
  std::function<void()> beginWork;
};

// Warnings of the toolkit about itself do not belong on the user's standard error.
void SilenceToolkit() {
  g_log_set_default_handler([](const char *, GLogLevelFlags, const char *, void *) {}, nullptr);
  g_log_set_writer_func([](GLogLevelFlags, const GLogField *, gsize, void *) { return G_LOG_WRITER_HANDLED; }, nullptr,
                        nullptr);
}

// False without a display.
bool RunWindows(std::function<void()> begin, FinishWork finish, bool endsWithLastWindow) {
  if (!std::getenv("VLXSLT_TOOLKIT_MESSAGES"))
    SilenceToolkit();
  auto *app = new DesktopApp(std::move(begin));
  wxApp::SetInstance(app);
  int count = 1;
  char name[] = "vlxslt";
  char *arguments[] = {name, nullptr};
  const wxInitializer toolkit(count, arguments);
  if (!toolkit.IsOk())
    return false;
  app->SetExitOnFrameDelete(endsWithLastWindow);
  WatchForShutdown(std::move(finish));
  if (!app->CallOnInit())
    return false;
  app->OnRun();
  app->OnExit();
  return true;
}

} // namespace

} // namespace desktop

int VlxsltRunWorkbench(const host::WorkbenchRequest *request, int *result) {
  *result = 0;
  return host::Guarded([request] {
    wxWeakRef<desktop::Workbench> workbench;
    const auto begin = [&] {
      workbench = new desktop::Workbench(*request);
      workbench->Show();
    };
    const auto finish = [&](std::chrono::seconds maxTime) { return !workbench || workbench->FinishWithin(maxTime); };
    return desktop::RunWindows(begin, finish, true) ? 1 : 0;
  });
}

int VlxsltServeWithWindows(const host::WindowedWork *work, int *result) {
  return host::Guarded([work, result] {
    std::optional<desktop::DesktopFront> front;
    desktop::RequestView view([&] { front->Cancel(); }, [] { wxTheApp->ExitMainLoop(); });
    front.emplace(view);
    std::unique_ptr<desktop::HostThread> thread;
    bool isDone = false;
    const auto begin = [&] {
      thread = std::make_unique<desktop::HostThread>();
      thread->Post([&] {
        *result = (*work)(*front);
        if (front->IsCancelled())
          *result = static_cast<int>(host::ExitCode::Cancelled);
        desktop::ChangeShared([&] { isDone = true; });
        desktop::PostToWindows([&] {
          front->ShowWaiting();
          if (!view.StayAfterwards() || !front->HasServedPerson())
            wxTheApp->ExitMainLoop();
        });
      });
    };
    const auto finish = [&](std::chrono::seconds maxTime) {
      front->Cancel();
      return !thread || desktop::WaitFor(maxTime, [&] { return isDone; });
    };
    return desktop::RunWindows(begin, finish, false) ? 1 : 0;
  });
}
