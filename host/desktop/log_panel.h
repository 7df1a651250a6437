// The log of the runs as it arrives, with links to the places of diagnostics.
#ifndef HOST_DESKTOP_LOG_PANEL_H
#define HOST_DESKTOP_LOG_PANEL_H

#include "host/desktop/desktop_front.h"
#include "host/desktop/log_lines.h"

#include <wx/panel.h>
#include <wx/simplebook.h>
#include <wx/textctrl.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace desktop {

class LogPanel : public wxSimplebook {
public:
  // `follow` opens a place.
  LogPanel(wxWindow *parent, std::function<void(const host::FilePlace &)> follow);

  // The page that is shown while the log is empty. Takes a window whose parent is this panel.
  void SetEmptyPage(wxWindow *page);
  void Append(const std::vector<RunItem> &items);
  // The lines that follow belong to no run.
  void EndRequest() { lines.EndRequest(); }
  void Clear();
  // The window that files may be dropped on.
  [[nodiscard]] wxWindow *Target() const { return text; }
  // Follows the next problem's place, after the last one the first again, and selects it in the log; false without any.
  bool FollowNext();

private:
  struct Link {
    long end;
    size_t problem;
  };

  void AppendLine(const std::string &line);
  void FollowAt(const wxPoint &point);
  void PointAt(const wxPoint &point);
  [[nodiscard]] const host::FilePlace *PlaceAt(const wxPoint &point) const;

  std::function<void(const host::FilePlace &)> followPlace;
  wxPanel *sheet; // the margins around the text
  wxTextCtrl *text;
  LogLines lines;
  std::map<long, Link> links; // by where they begin in the text
  std::optional<size_t> lastFollowed;
};

} // namespace desktop

#endif
