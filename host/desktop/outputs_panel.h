// The files that runs wrote, newest first, and what can be done with the selected one. Windows' thread only.
#ifndef HOST_DESKTOP_OUTPUTS_PANEL_H
#define HOST_DESKTOP_OUTPUTS_PANEL_H

#include <wx/button.h>
#include <wx/dataview.h>
#include <wx/panel.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace desktop {

class OutputsPanel : public wxPanel {
public:
  using Action = std::function<void(const std::string &path)>;
  struct Actions {
    Action view;
    Action openInBrowser;
    Action saveAs;
    Action open;
    Action showInFolder;
  };
  OutputsPanel(wxWindow *parent, const Actions &actions);

  // Selects the new row, which replaces an earlier one of the same file. `kind` is V_OUTPUT_….
  void Add(const std::string &path, int32_t kind);
  // Selects the row of the file, if there is one.
  void Select(const std::string &path);

private:
  void Act(const Action &action);
  void UpdateButtons();

  Action viewSelected;
  std::vector<std::string> paths; // as the rows
  wxDataViewListCtrl *list;
  std::vector<wxButton *> buttons;
};

} // namespace desktop

#endif
