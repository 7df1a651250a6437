// Shows the text of one result. Windows' thread only.
#ifndef HOST_DESKTOP_RESULT_PANEL_H
#define HOST_DESKTOP_RESULT_PANEL_H

#include <wx/panel.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <string>

namespace desktop {

class ResultPanel : public wxPanel {
public:
  explicit ResultPanel(wxWindow *parent);

  // Reads the file; a note says why there is no text, or only a part of it.
  void ShowFile(const std::string &path);
  // The window that files may be dropped on.
  [[nodiscard]] wxWindow *Target() const { return text; }
  void FocusText() { text->SetFocus(); }

private:
  wxStaticText *heading;
  wxStaticText *note;
  wxTextCtrl *text;
};

} // namespace desktop

#endif
