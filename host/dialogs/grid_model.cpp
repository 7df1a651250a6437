#include "host/dialogs/grid_model.h"

#include <utility>

namespace host {

GridModel::GridModel(std::string gridHeader, std::string textForNoValue)
    : header(std::move(gridHeader)), noValueText(std::move(textForNoValue)) {}

const GridRow *GridModel::FindRow(int32_t row) const {
  return row >= 0 && static_cast<size_t>(row) < rows.size() ? &rows[static_cast<size_t>(row)] : nullptr;
}

bool GridModel::HasPlace(GridSelection place) const {
  const GridRow *row = FindRow(place.row);
  return row && place.cell >= -1 && place.cell < static_cast<int32_t>(row->values.size());
}

int32_t GridModel::CellCount(int32_t row) const {
  const GridRow *found = FindRow(row);
  return found ? static_cast<int32_t>(found->values.size()) : 0;
}

std::string GridModel::Shown(int32_t row, int32_t cell) const {
  if (cell < 0 || !HasPlace({row, cell}))
    return {};
  const std::string &value = rows[static_cast<size_t>(row)].values[static_cast<size_t>(cell)];
  return value.empty() ? noValueText : value;
}

int32_t GridModel::AddRow(GridRow row) {
  row.values.resize(row.titles.size());
  rows.push_back(std::move(row));
  return static_cast<int32_t>(rows.size()) - 1;
}

void GridModel::DeleteRow(int32_t row) {
  if (!FindRow(row))
    return;
  rows.erase(rows.begin() + row);
  selection = {};
}

void GridModel::Select(GridSelection place) { selection = HasPlace(place) ? place : GridSelection(); }

ActionResult GridModel::SelectPlace(GridSelection place) {
  if (!HasPlace(place))
    return ActionResult::BadValue;
  selection = place;
  return ActionResult::Done;
}

ActionResult GridModel::EditCell(int32_t row, int32_t cell, const std::string &value) {
  if (cell < 0 || !HasPlace({row, cell}))
    return ActionResult::BadValue;
  GridRow &edited = rows[static_cast<size_t>(row)];
  // What stands for "no value" is no value.
  edited.values[static_cast<size_t>(cell)] = value == noValueText ? std::string() : value;
  selection = {row, cell};
  return ActionResult::Done;
}

} // namespace host
