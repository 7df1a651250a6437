// The log of the runs as it arrives, with places in files that lead there.
#ifndef HOST_DESKTOP_LOG_PANEL_H
#define HOST_DESKTOP_LOG_PANEL_H

#include "host/log_place.h"

#include <wx/panel.h>
#include <wx/simplebook.h>
#include <wx/textctrl.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace desktop {

class LogPanel : public wxSimplebook {
public:
  // `follow` opens a place; `emptyPage` shows what to do while there is no log.
  LogPanel(wxWindow *parent, std::function<void(const host::LogPlace &)> follow);

  // Takes a window whose parent is this panel.
  void SetEmptyPage(wxWindow *page);
  void Append(const std::vector<std::string> &lines);
  void Clear();
  // What files may be dropped on.
  [[nodiscard]] wxWindow *Target() const { return text; }
  // Shows the next place that the log names and follows it, from the last one followed on and round again; false when
  // there is none.
  bool FollowNext();

private:
  void AppendLine(const std::string &line);
  void FollowAt(const wxPoint &point);
  void PointAt(const wxPoint &point);
  [[nodiscard]] const host::LogPlace *PlaceAt(const wxPoint &point) const;

  std::function<void(const host::LogPlace &)> followPlace;
  wxPanel *sheet; // the margins around the text
  wxTextCtrl *text;
  struct Link {
    long end;
    host::LogPlace place;
  };
  std::map<long, Link> links; // by where they begin in the text
  long lastFollowed = -1;     // of these beginnings
};

} // namespace desktop

#endif
