// A property grid as it stands: rows of titled cells, one selected row or cell. The client fills and reads it through
// the kit, a front shows it and passes on what a person does. Host's thread only.
#ifndef HOST_DIALOGS_GRID_MODEL_H
#define HOST_DIALOGS_GRID_MODEL_H

#include "host/dialogs/dialog_action.h"

#include <cstdint>
#include <string>
#include <vector>

namespace host {

struct GridRow {
  std::vector<std::string> titles; // one for each value
  std::vector<std::string> values;
};

struct GridSelection {
  int32_t row = -1;  // -1: nothing
  int32_t cell = -1; // -1: the row itself

  bool operator==(const GridSelection &) const = default;
};

class GridModel {
public:
  GridModel() = default;
  GridModel(std::string gridHeader, std::string textForNoValue);

  [[nodiscard]] const std::string &Header() const { return header; }
  [[nodiscard]] const std::string &NoValueText() const { return noValueText; }
  [[nodiscard]] const std::vector<GridRow> &Rows() const { return rows; }
  [[nodiscard]] GridSelection Selection() const { return selection; }
  [[nodiscard]] int32_t CellCount(int32_t row) const;
  // What the cell shows: its value, or the text for no value. Empty when there is no such cell.
  [[nodiscard]] std::string Shown(int32_t row, int32_t cell) const;

  // The new row's index.
  int32_t AddRow(GridRow row);
  void DeleteRow(int32_t row);
  // A place that does not exist selects nothing.
  void Select(GridSelection place);

  // What a person does; an edited cell is the selected one afterwards.
  [[nodiscard]] ActionResult SelectPlace(GridSelection place);
  [[nodiscard]] ActionResult EditCell(int32_t row, int32_t cell, const std::string &value);

private:
  [[nodiscard]] const GridRow *FindRow(int32_t row) const;
  [[nodiscard]] bool HasPlace(GridSelection place) const;

  std::string header;
  std::string noValueText;
  std::vector<GridRow> rows;
  GridSelection selection;
};

} // namespace host

#endif
