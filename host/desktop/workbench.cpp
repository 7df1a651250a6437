#include "host/desktop/workbench.h"

#include "host/desktop/empty_page.h"
#include "host/desktop/icons.h"
#include "host/desktop/preferences.h"
#include "host/desktop/save_preferences.h"
#include "host/desktop/shutdown.h"
#include "host/desktop/top_window.h"
#include "host/desktop/window_events.h"
#include "host/desktop/window_texts.h"
#include "host/editor_command.h"
#include "kit/paths.h"
#include "kit/request_builder.h"

#include <wx/aboutdlg.h>
#include <wx/dnd.h>
#include <wx/filedlg.h>
#include <wx/msgdlg.h>
#include <wx/sizer.h>

#include <utility>

namespace desktop {

namespace {

class FileDrop : public wxFileDropTarget {
public:
  explicit FileDrop(Workbench &target) : workbench(target) {}

  bool OnDropFiles(wxCoord, wxCoord, const wxArrayString &names) override {
    std::vector<std::string> paths;
    for (const wxString &name : names)
      paths.push_back(FromWx(name));
    workbench.OpenPaths(paths);
    return true;
  }

private:
  Workbench &workbench;
};

constexpr std::string_view runRequestName = "XSLTRunTrScenario ";

} // namespace

Workbench::Workbench(const host::WorkbenchRequest &request)
    : wxFrame(nullptr, wxID_ANY, "XSLT Workbench"), settings(request) {
  SetIcons([] {
    wxIconBundle icons;
    for (const int size : {16, 32, 64})
      icons.AddIcon(DrawIcon(Icon::Program, size).GetIcon(wxSize(size, size)));
    return icons;
  }());
  MakeMenus();
  MakeToolBar();
  CreateStatusBar();
  MakePanels();
  RestorePlaces();
  // A text control would insert the names of dropped files.
  for (wxWindow *target : {static_cast<wxWindow *>(this), log->Target()})
    target->SetDropTarget(new FileDrop(*this));
  Bind(wxEVT_CLOSE_WINDOW, &Workbench::OnClose, this);
  Bind(wxEVT_SIZE, &Workbench::PlaceSashes, this);
  UpdateCommands();
  host = std::make_unique<WorkbenchHost>(settings, *this,
                                         [this](std::vector<OpenDocument> open) { ShowDocuments(std::move(open)); });
  // Files may have changed while another window was active.
  Bind(wxEVT_ACTIVATE, [this](wxActivateEvent &event) {
    if (event.GetActive())
      NoteEvent("active", "workbench");
    if (event.GetActive() && !isBusy)
      host->Refresh();
    event.Skip();
  });
}

Workbench::~Workbench() = default;

void Workbench::MakePanels() {
  columns = new wxSplitterWindow(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxSP_LIVE_UPDATE | wxSP_THIN_SASH);
  rows = new wxSplitterWindow(columns, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxSP_LIVE_UPDATE | wxSP_THIN_SASH);
  documents = new DocumentsPanel(columns, {.open = [this] { AskForFiles(); },
                                           .activate = [this](V_ObjectT object) { host->Activate(object); },
                                           .close = [this](V_ObjectT object) { host->Close(object); },
                                           .openComponent = [this](const std::string &path) { OpenPaths({path}); },
                                           .edit = [this](const std::string &path) { Edit({path}); }});
  log = new LogPanel(rows, [this](const host::LogPlace &place) { Edit(place); });
  log->SetEmptyPage(MakeEmpty(
      log, "Nothing has run yet", "Open a document, then choose what to do with it.\nWhat happens is shown here.",
      {{"&Advanced Run...", [this] { AskForRun(); }}, {"&New Transformation...", [this] { MakeTransformation(); }}}));
  outputs = new OutputsPanel(rows, {.open = [this](const std::string &path) { OpenOutput(path); },
                                    .showInFolder = [this](const std::string &path) { ShowInFolder(path); }});
  info = new wxInfoBar(this);
  progress = new ProgressPanel(this, [this] { CancelRun(); });
  for (wxSplitterWindow *splitter : {columns, rows})
    splitter->SetMinimumPaneSize(FromDIP(120));
  columns->SplitVertically(documents, rows);
  rows->SplitHorizontally(log, outputs);
  // CHANGED also comes with changes of size; CHANGING comes only from the user.
  columnsWanted = memory.Read("documents", 430);
  outputsWanted = memory.Read("outputs", 150);
  columns->Bind(wxEVT_SPLITTER_SASH_POS_CHANGING,
                [this](wxSplitterEvent &event) { columnsWanted = ToDIP(event.GetSashPosition()); });
  rows->Bind(wxEVT_SPLITTER_SASH_POS_CHANGING, [this](wxSplitterEvent &event) {
    outputsWanted = ToDIP(rows->GetClientSize().GetHeight() - event.GetSashPosition());
    event.StopPropagation();
  });
  auto *sizer = new wxBoxSizer(wxVERTICAL);
  sizer->Add(info, wxSizerFlags().Expand());
  sizer->Add(columns, wxSizerFlags(1).Expand());
  sizer->Add(progress, wxSizerFlags().Expand());
  SetSizer(sizer);
}

void Workbench::RestorePlaces() {
  SetSize(FromDIP(wxSize(memory.Read("width", 1040), memory.Read("height", 700))));
  Maximize(memory.Read("maximized", 0) != 0);
}

// At every change of size: a window that is not mapped yet is tiny, which moves the sashes.
void Workbench::PlaceSashes(wxSizeEvent &event) {
  event.Skip();
  Layout();
  columns->SetSashPosition(FromDIP(columnsWanted));
  rows->SetSashPosition(rows->GetClientSize().GetHeight() - FromDIP(outputsWanted));
}

void Workbench::OnClose(wxCloseEvent &event) {
  if (isBusy && event.CanVeto()) {
    event.Veto();
    isClosing ? AskToQuit() : AskToStop();
    return;
  }
  RememberPlaces();
  if (isBusy) // the desktop session ends and does not wait
    ShutDown("closed during a run", host::ExitCode::Failed, std::chrono::seconds(2));
  Destroy();
}

void Workbench::AskToStop() {
  if (!Confirm("A run is going on. Stop it after the current input, and close?", wxYES_DEFAULT))
    return;
  isClosing = true;
  // The run may have ended while the question was open.
  if (isBusy)
    CancelRun();
  else
    CallAfter([this] { Close(); });
}

// A stylesheet may loop endlessly.
void Workbench::AskToQuit() {
  if (!Confirm("The current input is not done yet. Quit at once, without its output?", wxNO_DEFAULT) || !isBusy)
    return;
  RememberPlaces();
  ShutDown("closed during a run", host::ExitCode::Failed, std::chrono::seconds(0));
}

bool Workbench::Confirm(const wxString &question, long defaultButton) {
  NoteEvent("alert", FromWx(question));
  wxMessageDialog window(this, question, "XSLT Workbench", wxYES_NO | defaultButton | wxICON_QUESTION);
  const InnermostWindow innermost(&window);
  return window.ShowModal() == wxID_YES;
}

void Workbench::RememberPlaces() {
  const bool isMaximized = IsMaximized();
  memory.Write("maximized", isMaximized ? 1 : 0);
  if (!isMaximized) {
    memory.Write("width", ToDIP(GetSize()).GetWidth());
    memory.Write("height", ToDIP(GetSize()).GetHeight());
  }
  memory.Write("documents", columnsWanted);
  memory.Write("outputs", outputsWanted);
  memory.Save();
}

bool Workbench::FinishWithin(std::chrono::seconds maxTime) { return host->EndWithin(maxTime); }

void Workbench::ShowDocuments(std::vector<OpenDocument> open) {
  documents->Show(std::move(open));
  const OpenDocument *active = documents->Active();
  SetTitle(active ? ToWx(active->summary.name) + wxString::FromUTF8(" \u2013 XSLT Workbench")
                  : wxString("XSLT Workbench"));
  UpdateCommands();
  NoteEvent("documents", active ? active->summary.name : "");
}

void Workbench::Tell(const wxString &text, int icon) {
  info->ShowMessage(text, icon);
  NoteEvent("told", FromWx(text));
}

// ---- Documents

void Workbench::AskForFiles() {
  wxFileDialog chooser(this, "Open Documents", {}, {},
                       "XML documents (*.xml;*.dita;*.ditamap;*.book)|*.xml;*.dita;*.ditamap;*.book|All files|*",
                       wxFD_OPEN | wxFD_FILE_MUST_EXIST | wxFD_MULTIPLE);
  if (chooser.ShowModal() != wxID_OK)
    return;
  wxArrayString names;
  chooser.GetPaths(names);
  std::vector<std::string> paths;
  for (const wxString &name : names)
    paths.push_back(FromWx(name));
  OpenPaths(paths);
}

void Workbench::OpenPaths(const std::vector<std::string> &paths) {
  if (isBusy) {
    Tell("Documents can be opened when the run is over.", wxICON_INFORMATION);
    return;
  }
  host->Open(paths, [this, paths](const std::string &problems) {
    if (!problems.empty())
      Tell("Cannot open: " + ToWx(problems), wxICON_ERROR);
    for (const std::string &path : paths)
      if (kit::IsFile(path))
        memory.NoteFile(path);
  });
}

void Workbench::OpenRecent(size_t index) {
  const wxString name = memory.RecentFiles().GetHistoryFile(index);
  if (!name.empty())
    OpenPaths({FromWx(name)});
}

void Workbench::CloseChosen() {
  if (const auto chosen = documents->Chosen())
    host->Close(*chosen);
  else if (const OpenDocument *active = documents->Active())
    host->Close(active->summary.object);
}

// ---- Requests

void Workbench::Send(const std::string &request, std::function<void(const RequestOutcome &)> then) {
  if (isBusy)
    return;
  isBusy = true;
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
    if (request.starts_with(runRequestName))
      lastRun = request;
  for (const std::string &path : outcome.record.opened)
    outputs->Add(path);
  UpdateCommands();
  if (!outcome.error.empty())
    Tell(ToWx(outcome.error), wxICON_ERROR);
  else if (outcome.status == V_ERROR_FAILED)
    Tell("The run failed. The log says why; F4, or a click on a file name in it, opens the place.", wxICON_WARNING);
  NoteEvent("idle");
  if (isClosing)
    Close();
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
  kit::RequestBuilder request(runRequestName);
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

void Workbench::ShowConsole(const std::vector<std::string> &lines) {
  log->Append(lines);
  for (const std::string &line : lines) {
    NoteEvent("log", line);
    NoteOutputs(line);
  }
}

void Workbench::ShowProgress(const host::Progress &next) {
  if (next.count == 0) {
    progress->End();
    return;
  }
  NoteEvent("progress", next.path);
  if (next.index == 0)
    progress->Begin();
  progress->Show(next);
}

void Workbench::NoteOutputs(const std::string &line) {
  constexpr std::string_view announcement = "Output:";
  constexpr std::string_view success = "Transformation Successful.";
  if (line.starts_with(announcement))
    announcedOutput = line.substr(announcement.size());
  if (line.starts_with(success) && kit::IsFile(announcedOutput))
    outputs->Add(std::exchange(announcedOutput, {}));
}

void Workbench::FollowNextProblem() {
  if (!log->FollowNext())
    Tell("The log names no place in a file.", wxICON_INFORMATION);
}

void Workbench::ClearLog() { log->Clear(); }

// ---- Other programs

void Workbench::Edit(const host::LogPlace &place) {
  NoteEvent("edit", place.path);
  if (!kit::Exists(place.path))
    Tell(ToWx("There is no file " + place.path), wxICON_WARNING);
  else if (!host::StartProgram(host::ComposeEditorCommand(settings.configuration.editor, place)))
    Tell("The editor cannot be started. The preferences say which program it is.", wxICON_ERROR);
}

void Workbench::OpenOutput(const std::string &path) {
  if (!kit::IsFile(path))
    Tell(ToWx(path + " is gone."), wxICON_WARNING);
  else
    LaunchOutput(path);
}

void Workbench::LaunchOutput(const std::string &path) {
  outputs->Add(path);
  if (!host::StartProgram(host::ComposeOpenCommand(path)))
    Tell(ToWx("No program can be started for " + path), wxICON_ERROR);
}

void Workbench::ShowInFolder(const std::string &path) {
  const std::string folder = kit::FolderOf(path);
  if (!kit::IsFolder(folder))
    Tell(ToWx("The folder " + folder + " is gone."), wxICON_WARNING);
  else if (!host::StartProgram(host::ComposeOpenCommand(folder)))
    Tell("No file manager can be started.", wxICON_ERROR);
}

void Workbench::ShowPreferences() {
  const auto change = AskForPreferences(this, settings.configuration);
  if (!change)
    return;
  const SavedPreferences saved = SavePreferences(*change, settings.installation);
  if (!saved.error.empty()) {
    Tell("The preferences were not saved: " + ToWx(saved.error), wxICON_ERROR);
    return;
  }
  settings.configuration = saved.configuration;
  host->Reconfigure(saved.configuration, [this] {
    Tell("Saved in " + ShortenPath(settings.configuration.source) +
             ". Java keeps the settings that it was started with until vlxslt is opened again.",
         wxICON_INFORMATION);
  });
}

void Workbench::ShowAbout() {
  wxAboutDialogInfo about;
  about.SetName("vlxslt");
  about.SetVersion(VLXSLT_VERSION);
  about.SetDescription("Applies XSLT stylesheets to XML: documents, books, DITA maps, folders.");
  wxAboutBox(about, this);
}

} // namespace desktop
