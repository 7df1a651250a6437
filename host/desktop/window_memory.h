// What the windows remember between sessions: positions, sizes, recent files. Kept in the user's state folder, apart
// from the configuration, which people write.
#ifndef HOST_DESKTOP_WINDOW_MEMORY_H
#define HOST_DESKTOP_WINDOW_MEMORY_H

#include <wx/fileconf.h>
#include <wx/filehistory.h>
#include <wx/gdicmn.h>

#include <memory>
#include <string>

namespace desktop {

class WindowMemory {
public:
  WindowMemory();
  ~WindowMemory();
  WindowMemory(const WindowMemory &) = delete;
  WindowMemory &operator=(const WindowMemory &) = delete;

  [[nodiscard]] int Read(const wxString &key, int otherwise) const;
  void Write(const wxString &key, int value);
  // Writes the file now; the destructor does it otherwise.
  void Save();
  [[nodiscard]] wxFileHistory &RecentFiles() { return recent; }
  void NoteFile(const std::string &path);

private:
  std::unique_ptr<wxFileConfig> store;
  wxFileHistory recent;
};

} // namespace desktop

#endif
