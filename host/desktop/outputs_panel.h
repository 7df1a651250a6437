// The files that runs wrote, newest first, to open them or to find them.
#ifndef HOST_DESKTOP_OUTPUTS_PANEL_H
#define HOST_DESKTOP_OUTPUTS_PANEL_H

#include <wx/button.h>
#include <wx/dataview.h>
#include <wx/panel.h>
#include <wx/stattext.h>

#include <functional>
#include <string>
#include <vector>

namespace desktop {

class OutputsPanel : public wxPanel {
public:
  struct Actions {
    std::function<void(const std::string &path)> open;
    std::function<void(const std::string &path)> showInFolder;
  };
  OutputsPanel(wxWindow *parent, Actions actions);

  void Add(const std::string &path);

private:
  void Act(const std::function<void(const std::string &)> &action);
  void UpdateButtons();

  Actions onAction;
  std::vector<std::string> paths; // as the rows
  wxDataViewListCtrl *list;
  wxButton *open;
  wxButton *show;
};

} // namespace desktop

#endif
