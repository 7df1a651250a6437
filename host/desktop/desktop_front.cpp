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

void PrintLines(const std::vector<std::string> &lines) {
  for (const std::string &line : lines)
    std::fputs((line + "\n").c_str(), stderr);
}

host::Answer DesktopFront::Alert(host::AlertKind kind, const std::string &text) {
  // AskWindows then declines.
  if (AreWindowsGone())
    PrintLines({text});
  return AskWindows([&] {
    FlushConsole();
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

void DesktopFront::WriteConsole(std::string_view text) {
  bool isFirst = false;
  ChangeShared([&] {
    waiting.emplace_back(host::WithoutLineEnd(text));
    isFirst = waiting.size() == 1;
  });
  if (AreWindowsGone())
    PrintLines(TakeLines());
  else if (isFirst)
    windows.Post([this] { FlushConsole(); });
}

std::vector<std::string> DesktopFront::TakeLines() {
  std::vector<std::string> lines;
  ChangeShared([&] { lines.swap(waiting); });
  return lines;
}

void DesktopFront::FlushConsole() {
  if (const std::vector<std::string> lines = TakeLines(); !lines.empty())
    view.ShowConsole(lines);
}

void DesktopFront::ReportProgress(const host::Progress &progress) {
  windows.Post([this, progress] {
    FlushConsole();
    view.ShowProgress(progress);
  });
}

void DesktopFront::LaunchOutput(const std::string &path) {
  windows.Post([this, path] { view.LaunchOutput(path); });
}

} // namespace desktop
