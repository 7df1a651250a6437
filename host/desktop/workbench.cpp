#include "host/desktop/workbench.h"

#include "host/desktop/empty_page.h"
#include "host/desktop/icons.h"
#include "host/desktop/preferences.h"
#include "host/desktop/save_preferences.h"
#include "host/desktop/shutdown.h"
#include "host/desktop/top_window.h"
#include "host/desktop/window_events.h"
#include "host/desktop/window_texts.h"
#include "kit/paths.h"

#include <wx/aboutdlg.h>
#include <wx/dnd.h>
#include <wx/filedlg.h>
#include <wx/msgdlg.h>
#include <wx/sizer.h>

#include <array>
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
  constexpr std::array statusWidths = {-4, -1}; // summary, problems
  CreateStatusBar(statusWidths.size())->SetStatusWidths(statusWidths.size(), statusWidths.data());
  MakePanels();
  RestorePlaces();
  // A text control would insert the names of dropped files.
  for (wxWindow *target : {static_cast<wxWindow *>(this), log->Target(), result->Target()})
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
  pages = new wxNotebook(rows, wxID_ANY);
  log = new LogPanel(pages, [this](const host::FilePlace &place) { Edit(place); });
  log->SetEmptyPage(MakeEmpty(
      log, "Nothing has run yet", "Open a document, then choose what to do with it.\nWhat happens is shown here.",
      {{"&Advanced Run...", [this] { AskForRun(); }}, {"&New Transformation...", [this] { MakeTransformation(); }}}));
  result = new ResultPanel(pages);
  pages->AddPage(log, "Log");
  pages->AddPage(result, "Result");
  outputs = new OutputsPanel(rows, {.view =
                                        [this](const std::string &path) {
                                          ViewOutput(path);
                                          result->FocusText();
                                        },
                                    .openInBrowser = [this](const std::string &path) { BrowseOutput(path); },
                                    .saveAs = [this](const std::string &path) { SaveOutput(path); },
                                    .open = [this](const std::string &path) { OpenOutput(path); },
                                    .showInFolder = [this](const std::string &path) { ShowInFolder(path); }});
  info = new wxInfoBar(this);
  progress = new ProgressPanel(this, [this] { CancelRun(); });
  for (wxSplitterWindow *splitter : {columns, rows})
    splitter->SetMinimumPaneSize(FromDIP(120));
  columns->SplitVertically(documents, rows);
  rows->SplitHorizontally(pages, outputs);
  rows->SetSashGravity(1); // the info bar takes its space from the pages
  // CHANGED also comes with changes of size; CHANGING comes only from the user.
  columnsWanted = memory.Read("documents", 430);
  outputsWanted = memory.Read("outputs", 160);
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
