#include "host/desktop/desktop_front.h"

#include "host/desktop/shown_dialog.h"
#include "host/desktop/top_window.h"
#include "host/desktop/ui_thread.h"
#include "host/desktop/window_events.h"
#include "host/desktop/window_texts.h"
#include "kit/paths.h"

#include <wx/dirdlg.h>
#include <wx/filedlg.h>
#include <wx/msgdlg.h>

#include <cstdio>
#include <utility>

namespace desktop {

namespace {

long StyleOf(host::AlertKind kind) {
  switch (kind) {
  case host::AlertKind::YesNo:
    return wxYES_NO | wxYES_DEFAULT | wxICON_QUESTION;
  case host::AlertKind::YesNoDefaultNo:
    return wxYES_NO | wxNO_DEFAULT | wxICON_QUESTION;
  case host::AlertKind::OkCancel:
    return wxOK | wxCANCEL | wxOK_DEFAULT | wxICON_QUESTION;
  default:
    return wxOK | wxICON_INFORMATION;
  }
}

host::Answer ShowAlert(host::AlertKind kind, const std::string &text) {
  NoteEvent("alert", text);
  wxMessageDialog window(TopWindow(), ToWx(text), "XSLT", StyleOf(kind) | wxCENTRE);
  const int pressed = window.ShowModal();
  return pressed == wxID_YES || pressed == wxID_OK ? host::Answer::Proceed : host::Answer::Decline;
}

// From "Name|pattern|Name|pattern|": the toolkit allows no bar at the end, and "*.*" does not match names without a
// dot.
wxString WildcardOf(std::string filter) {
  if (filter.ends_with('|'))
    filter.pop_back();
  wxString wildcard = ToWx(filter);
  wildcard.Replace("|*.*", "|*");
  return wildcard.empty() ? wxString("*") : wildcard;
}

std::optional<std::string> ShowChooser(const host::FileChooser &chooser) {
  NoteEvent("chooser", chooser.title);
  const wxString title = ToWx(chooser.title);
  const wxString folder = ToWx(chooser.startFolder);
  if (chooser.kind == host::ChooserKind::Folder) {
    wxDirDialog window(TopWindow(), title, folder);
    return window.ShowModal() == wxID_OK ? std::optional(FromWx(window.GetPath())) : std::nullopt;
  }
  const long style = chooser.kind == host::ChooserKind::Save ? wxFD_SAVE : wxFD_OPEN | wxFD_FILE_MUST_EXIST;
  wxFileDialog window(TopWindow(), title, folder, {}, WildcardOf(chooser.filter), style);
  return window.ShowModal() == wxID_OK ? std::optional(FromWx(window.GetPath())) : std::nullopt;
}

} // namespace

void PrintLines(const std::vector<RunItem> &items) {
  for (const RunItem &item : items)
    if (const auto *line = std::get_if<std::string>(&item))
      std::fputs((*line + "\n").c_str(), stderr);
}

host::Answer DesktopFront::Alert(host::AlertKind kind, const std::string &text) {
  // AskWindows then declines.
  if (AreWindowsGone())
    PrintLines({text});
  return AskWindows([&] {
    ShowWaiting();
    return ShowAlert(kind, text);
  });
}

std::optional<std::string> DesktopFront::ChooseFile(const host::FileChooser &chooser) {
  return AskWindows([&] { return ShowChooser(chooser); });
}

void DesktopFront::RunDialog(host::DialogModel &dialog) {
  hasServedPerson = true;
  ShownDialog shown(dialog);
  // When the windows are gone, the host closes the dialog.
  while (dialog.IsOpen() && shown.ServeNext()) {
  }
}

void DesktopFront::PlayDialog(host::DialogModel &dialog,
                              const std::function<void(host::DialogDriver &driver)> &player) {
  ShownDialog shown(dialog);
  const std::unique_ptr<host::DialogDriver> driver = shown.MakeDriver();
  player(*driver);
}

void DesktopFront::WriteConsole(std::string_view text) { Queue(std::string(host::WithoutLineEnd(text))); }

void DesktopFront::ReportRunEvent(const host::RunEvent &event) {
  // Hundreds a document, and no window shows them.
  if (event.kind != V_RUN_FILE_READ)
    Queue(event);
}

void DesktopFront::Queue(RunItem item) {
  bool isFirst = false;
  ChangeShared([&] {
    waiting.push_back(std::move(item));
    isFirst = waiting.size() == 1;
  });
  if (AreWindowsGone())
    PrintLines(TakeWaiting());
  else if (isFirst)
    windows.Post([this] { ShowWaiting(); });
}

std::vector<RunItem> DesktopFront::TakeWaiting() {
  std::vector<RunItem> items;
  ChangeShared([&] { items.swap(waiting); });
  return items;
}

void DesktopFront::ShowWaiting() {
  if (const std::vector<RunItem> items = TakeWaiting(); !items.empty())
    view.ShowRun(items);
}

void DesktopFront::ReportProgress(const host::Progress &progress) {
  windows.Post([this, progress] {
    ShowWaiting();
    view.ShowProgress(progress);
  });
}

void DesktopFront::LaunchOutput(const std::string &path) {
  windows.Post([this, path] { view.LaunchOutput(path); });
}

} // namespace desktop
