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

// "Name|pattern|Name|pattern|": the toolkit wants no bar at the end, and "*.*" would leave out names without a dot.
wxString WildcardOf(std::string filter) {
  if (filter.ends_with('|'))
    filter.pop_back();
  wxString wildcard = ToWx(filter);
  wildcard.Replace("|*.*", "|*");
  return wildcard.empty() ? wxString("*") : wildcard;
}

std::optional<std::string> ShowChooser(const host::FileChooser &chooser) {
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

host::Answer DesktopFront::Alert(host::AlertKind kind, const std::string &text) {
  return AskWindows([&] {
    FlushConsole();
    return ShowAlert(kind, text);
  });
}

std::optional<std::string> DesktopFront::ChooseFile(const host::FileChooser &chooser) {
  return AskWindows([&] { return ShowChooser(chooser); });
}

void DesktopFront::RunDialog(host::DialogModel &dialog) {
  ShownDialog shown(dialog);
  while (dialog.IsOpen())
    static_cast<void>(shown.ServeNext());
}

void DesktopFront::PlayDialog(host::DialogModel &dialog, const std::function<void(host::DialogHand &hand)> &player) {
  ShownDialog shown(dialog);
  const std::unique_ptr<host::DialogHand> hand = shown.MakeHand();
  player(*hand);
}

void DesktopFront::WriteConsole(std::string_view text) {
  const std::lock_guard lock(mutex);
  waiting.emplace_back(text == "\n" ? std::string_view() : text);
  if (waiting.size() == 1)
    PostToWindows([this] { FlushConsole(); });
}

void DesktopFront::FlushConsole() {
  std::vector<std::string> lines;
  {
    const std::lock_guard lock(mutex);
    lines.swap(waiting);
  }
  if (!lines.empty())
    view.ShowConsole(lines);
}

void DesktopFront::ReportProgress(const host::Progress &progress) {
  PostToWindows([this, progress] {
    FlushConsole();
    view.ShowProgress(progress);
  });
}

void DesktopFront::LaunchOutput(const std::string &path) {
  PostToWindows([this, path] { view.LaunchOutput(path); });
}

} // namespace desktop
