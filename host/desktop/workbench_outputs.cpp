// The part of the workbench that shows results and sources: itself, or with other programs.
#include "host/desktop/browser.h"
#include "host/desktop/window_events.h"
#include "host/desktop/window_texts.h"
#include "host/desktop/workbench.h"
#include "host/editor_command.h"
#include "kit/atomic_file.h"
#include "kit/paths.h"

#include <wx/filedlg.h>
#include <wx/msgdlg.h>

namespace desktop {

namespace {

constexpr size_t resultPage = 1;

} // namespace

void Workbench::Edit(const host::FilePlace &place) {
  NoteEvent("edit", place.path);
  if (!kit::Exists(place.path))
    Tell(ToWx("There is no file " + place.path), wxICON_WARNING);
  else if (!host::StartProgram(host::ComposeEditorCommand(settings.configuration.editor, place)))
    Tell("The editor cannot be started. The preferences say which program it is.", wxICON_ERROR);
}

bool Workbench::CheckIsThere(const std::string &path) {
  const bool isThere = kit::IsFile(path);
  if (!isThere)
    Tell(ToWx(path + " is gone."), wxICON_WARNING);
  return isThere;
}

void Workbench::ViewOutput(const std::string &path) {
  if (!CheckIsThere(path))
    return;
  pages->ChangeSelection(resultPage);
  result->ShowFile(path);
}

void Workbench::BrowseOutput(const std::string &path) {
  if (CheckIsThere(path) && !OpenInBrowser(path))
    Tell("No browser can be started.", wxICON_ERROR);
}

// An existing file is replaced only after a question, and whole.
void Workbench::SaveOutput(const std::string &path) {
  if (!CheckIsThere(path))
    return;
  const OpenDocument *active = documents->Active();
  wxFileDialog chooser(this, "Save Result", active ? ToWx(kit::FolderOf(active->summary.path)) : wxString(),
                       ToWx(kit::FileNameOf(path)), "All files|*", wxFD_SAVE);
  NoteEvent("chooser", "Save Result");
  while (chooser.ShowModal() == wxID_OK) {
    const std::string target = FromWx(chooser.GetPath());
    if (kit::Exists(target) && !Confirm(ToWx("Replace the existing file " + target + "?"), wxNO_DEFAULT))
      continue;
    kit::AtomicFile copy(target);
    if (copy.WriteFile(path) && copy.Commit())
      Tell("Saved as " + ShortenPath(target), wxICON_INFORMATION);
    else
      Tell("Not saved: " + ToWx(copy.Error()), wxICON_ERROR);
    return;
  }
}

void Workbench::OpenOutput(const std::string &path) {
  if (CheckIsThere(path))
    LaunchOutput(path);
}

void Workbench::LaunchOutput(const std::string &path) {
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

} // namespace desktop
