// The main window: open documents, commands, the log of the runs, their outputs, the progress. The session is behind
// WorkbenchHost, on another thread. While a request is served the window responds, but only Cancel can be used.
#ifndef HOST_DESKTOP_WORKBENCH_H
#define HOST_DESKTOP_WORKBENCH_H

#include "host/desktop/desktop_front.h"
#include "host/desktop/documents_panel.h"
#include "host/desktop/log_panel.h"
#include "host/desktop/outputs_panel.h"
#include "host/desktop/progress_panel.h"
#include "host/desktop/result_panel.h"
#include "host/desktop/run_summary.h"
#include "host/desktop/window_memory.h"
#include "host/desktop/workbench_host.h"

#include <wx/frame.h>
#include <wx/infobar.h>
#include <wx/notebook.h>
#include <wx/splitter.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace desktop {

class Workbench : public wxFrame, public RunView {
public:
  explicit Workbench(const host::WorkbenchRequest &request);
  ~Workbench() override;

  void ShowRun(const std::vector<RunItem> &items) override;
  void ShowProgress(const host::Progress &progress) override;
  void LaunchOutput(const std::string &path) override;

  // The files become open documents, the last one the active one.
  void OpenPaths(const std::vector<std::string> &paths);

  // Cancels the run and ends the session; false when that takes longer. Touches no window.
  [[nodiscard]] bool FinishWithin(std::chrono::seconds maxTime);

  // What the commands do.
  void AskForFiles();
  void CloseChosen();
  void RunAgain();
  void AskForRun();
  void ChooseAndRun();
  void ManageTransformations();
  void MakeTransformation();
  void CancelRun();
  void FollowNextProblem();
  void ClearLog();
  void ShowPreferences();
  void ShowAbout();
  void Leave() { Close(); }

private:
  void MakeMenus();
  void MakeToolBar();
  void MakePanels();
  void RestorePlaces();
  void PlaceSashes(wxSizeEvent &event);
  void UpdateCommands();
  void OnCommand(wxCommandEvent &event);
  void OnClose(wxCloseEvent &event);
  void AskToStop();
  void AskToQuit();
  [[nodiscard]] bool Confirm(const wxString &question, long defaultButton);
  void RememberPlaces();
  void OpenRecent(size_t index);

  void Send(const std::string &request, std::function<void(const RequestOutcome &)> then);
  void FinishRequest(const RequestOutcome &outcome);
  void RunChosen(const RequestOutcome &chosen);
  void TakeEvent(const host::RunEvent &event);
  void TellOutcome(const RequestOutcome &outcome);
  void Edit(const host::FilePlace &place);
  // False, and a message, when the file is gone.
  [[nodiscard]] bool CheckIsThere(const std::string &path);
  void ViewOutput(const std::string &path);
  void BrowseOutput(const std::string &path);
  void SaveOutput(const std::string &path);
  void OpenOutput(const std::string &path);
  void ShowInFolder(const std::string &path);
  void Tell(const wxString &text, int icon);
  void ShowDocuments(std::vector<OpenDocument> documents);

  host::WorkbenchRequest settings;
  WindowMemory memory;
  DocumentsPanel *documents = nullptr;
  wxNotebook *pages = nullptr; // log and result
  LogPanel *log = nullptr;
  ResultPanel *result = nullptr;
  OutputsPanel *outputs = nullptr;
  ProgressPanel *progress = nullptr;
  wxInfoBar *info = nullptr;
  wxSplitterWindow *columns = nullptr;
  wxSplitterWindow *rows = nullptr;

  int columnsWanted = 0; // positions of the sashes as the user left them
  int outputsWanted = 0;
  bool isBusy = false;
  bool isClosing = false; // closes when the request is served
  std::string lastRun;
  RunSummary summary;                    // of the last run
  std::map<int32_t, std::string> inputs; // of the last run, by job
  std::string openedOutput;              // the newest one of the request
  std::unique_ptr<WorkbenchHost> host;
};

} // namespace desktop

#endif
