#include "host/desktop/window_memory.h"

#include "host/desktop/window_texts.h"

#include <wx/filename.h>
#include <wx/log.h>
#include <wx/utils.h>

namespace desktop {

namespace {

constexpr size_t maxRecentFiles = 9;

wxString FindStore() {
  wxString folder;
  if (!wxGetEnv("XDG_STATE_HOME", &folder) || folder.empty())
    folder = wxGetHomeDir() + "/.local/state";
  return folder + "/vlxslt/desktop.conf";
}

} // namespace

WindowMemory::WindowMemory() : recent(maxRecentFiles) {
  const wxString path = FindStore();
  // In a home folder that is not writable nothing is remembered.
  const wxLogNull silence;
  wxFileName::Mkdir(wxFileName(path).GetPath(), wxS_DIR_DEFAULT, wxPATH_MKDIR_FULL);
  store = std::make_unique<wxFileConfig>("vlxslt", wxEmptyString, path, wxEmptyString, wxCONFIG_USE_LOCAL_FILE);
  store->SetPath("/recent");
  recent.Load(*store);
  store->SetPath("/");
}

WindowMemory::~WindowMemory() { Save(); }

void WindowMemory::Save() {
  const wxLogNull silence;
  store->Flush();
}

int WindowMemory::Read(const wxString &key, int otherwise) const {
  return static_cast<int>(store->ReadLong(key, otherwise));
}

void WindowMemory::Write(const wxString &key, int value) { store->Write(key, static_cast<long>(value)); }

void WindowMemory::NoteFile(const std::string &path) {
  recent.AddFileToHistory(ToWx(path));
  store->SetPath("/recent");
  recent.Save(*store);
  store->SetPath("/");
  Save();
}

} // namespace desktop
