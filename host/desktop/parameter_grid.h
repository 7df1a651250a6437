// A client's property grid: a group for each row, headed by its first value, and in it the row's cells.
#ifndef HOST_DESKTOP_PARAMETER_GRID_H
#define HOST_DESKTOP_PARAMETER_GRID_H

#include "host/dialogs/grid_model.h"

#include <wx/propgrid/manager.h>

#include <functional>
#include <string>
#include <vector>

namespace desktop {

class ParameterGrid : public wxPropertyGridManager {
public:
  struct Actions {
    std::function<void(host::GridSelection)> select;
    std::function<void(int32_t row, int32_t cell, const std::string &value)> edit;
  };
  ParameterGrid(wxWindow *parent, Actions actions);

  void ShowModel(const host::GridModel &model);
  // Takes over what is being typed into a cell.
  void Commit();

  // For scripts.
  [[nodiscard]] host::ActionResult SelectPlace(host::GridSelection place);
  [[nodiscard]] host::ActionResult EditCell(int32_t row, int32_t cell, const std::string &value);
  // The grid as the window shows it.
  [[nodiscard]] host::GridModel Look() const;

private:
  void Rebuild(const host::GridModel &model);
  void AppendRows(const host::GridModel &model);
  void ShowValues(const host::GridModel &model);
  void WatchTyping();
  void TypeOver(wxKeyEvent &event);
  [[nodiscard]] host::GridSelection PlaceOf(const wxPGProperty *property) const;
  [[nodiscard]] wxPGProperty *PropertyAt(host::GridSelection place) const;
  [[nodiscard]] static wxString HeadingOf(const host::GridRow &row);

  Actions onAction;
  std::vector<wxPGProperty *> rows;
  host::GridModel shown;
  bool isShowing = false;
};

} // namespace desktop

#endif
