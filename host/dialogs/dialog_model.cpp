#include "host/dialogs/dialog_model.h"

#include "kit/vdk.h"

#include <algorithm>
#include <array>
#include <utility>

namespace host {

namespace {

constexpr std::array knownKinds = {ItemKind::GridFrame, ItemKind::Button,  ItemKind::Label, ItemKind::CheckBox,
                                   ItemKind::PopUp,     ItemKind::TextBox, ItemKind::Radio, ItemKind::Grid,
                                   ItemKind::List,      ItemKind::PathBox};

std::optional<kit::DialogControl> FindControl(const kit::DialogTemplate &layout, uint32_t id) {
  const auto found = std::ranges::find(layout.controls, id, &kit::DialogControl::id);
  return found == layout.controls.end() ? std::nullopt : std::optional(*found);
}

DialogItem MakeItem(const kit::DialogItemRow &row, std::optional<kit::DialogControl> control) {
  DialogItem item;
  item.number = row.id - kit::firstItemId;
  item.kind = static_cast<ItemKind>(row.kind);
  item.isGroupBox = item.kind == ItemKind::Button && row.state != 0;
  item.control = std::move(control);
  if (item.IsSwitch())
    item.state = row.state != 0;
  if (item.HasChoices())
    item.state = -1;
  if (item.control) {
    item.text = item.control->text;
    item.sensitive = !(item.control->style & kit::StyleDisabled);
    item.visible = (item.control->style & kit::StyleVisible) != 0;
  }
  return item;
}

} // namespace

std::string_view DescribeResult(ActionResult result) {
  constexpr std::array<std::string_view, 9> texts = {"is done",
                                                     "cannot be used: no dialog is open",
                                                     "cannot be used while another dialog is open",
                                                     "does not exist",
                                                     "is hidden",
                                                     "is insensitive",
                                                     "is read-only",
                                                     "cannot do that",
                                                     "has no such value"};
  return texts[static_cast<size_t>(result)];
}

bool DialogItem::IsShown() const {
  return visible && (!control || (control->place.width > 0 && control->place.height > 0));
}

bool DialogItem::IsReadOnly() const { return HasText() && control && (control->style & kit::StyleReadOnly) != 0; }

std::string DialogItem::ShownText() const {
  if (!HasChoices())
    return text;
  return state >= 0 ? labels[static_cast<size_t>(state)] : std::string();
}

std::unique_ptr<DialogModel> DialogModel::Make(kit::DialogTemplate dialogTemplate, const kit::DialogItemTable &table) {
  std::unique_ptr<DialogModel> model(new DialogModel);
  model->layout = std::move(dialogTemplate);
  model->title = model->layout.title;
  model->defaultItem = table.defaultItem;
  model->cancelItem = table.cancelItem;
  model->firstFocus = model->focus = table.firstFocus;
  if (!model->AddItems(table))
    return nullptr;
  model->GroupRadios();
  return model;
}

bool DialogModel::AddItems(const kit::DialogItemTable &table) {
  for (const kit::DialogItemRow &row : table.rows) {
    DialogItem item = MakeItem(row, FindControl(layout, row.id));
    if (std::ranges::find(knownKinds, item.kind) == knownKinds.end() ||
        item.control.has_value() == (item.kind == ItemKind::Grid))
      return false;
    items.push_back(std::move(item));
  }
  const bool everyControlHasARow = std::ranges::all_of(layout.controls, [&](const kit::DialogControl &control) {
    return Find(static_cast<int32_t>(control.id) - kit::firstItemId) != nullptr;
  });
  return everyControlHasARow && Find(defaultItem) && Find(cancelItem) && Find(firstFocus);
}

// A group runs from a control with the group style to the next such one, in tab order.
void DialogModel::GroupRadios() {
  int32_t group = 0;
  for (const kit::DialogControl &control : layout.controls) {
    group += (control.style & kit::StyleGroup) != 0;
    std::ranges::find(items, static_cast<int32_t>(control.id) - kit::firstItemId, &DialogItem::number)->radioGroup =
        group;
  }
}

const DialogItem *DialogModel::Find(int32_t itemNumber) const {
  const auto found = std::ranges::find(items, itemNumber, &DialogItem::number);
  return found == items.end() ? nullptr : &*found;
}

DialogItem *DialogModel::Reach(int32_t itemNumber) {
  const auto found = std::ranges::find(items, itemNumber, &DialogItem::number);
  return found == items.end() ? nullptr : &*found;
}

ActionResult DialogModel::CheckReach(const DialogItem *item) const {
  if (!open)
    return ActionResult::NotOpen;
  if (serving)
    return ActionResult::Busy;
  if (!item)
    return ActionResult::NoSuchItem;
  if (!item->IsShown())
    return ActionResult::Hidden;
  return item->sensitive ? ActionResult::Done : ActionResult::Insensitive;
}

void DialogModel::Send(int32_t event) {
  keptUp = false;
  serving = true;
  sink(number, event);
  serving = false;
}

template <class Body> ActionResult DialogModel::Act(int32_t itemNumber, Body body) {
  DialogItem *item = Reach(itemNumber);
  if (const ActionResult reach = CheckReach(item); reach != ActionResult::Done)
    return reach;
  const ActionResult result = body(*item);
  if (result == ActionResult::Done)
    focus = itemNumber;
  return result;
}

ActionResult DialogModel::Click(int32_t itemNumber) {
  return Act(itemNumber, [&](DialogItem &item) {
    if (item.IsSwitch())
      return TurnSwitch(item, item.kind == ItemKind::Radio || item.state == 0);
    if (item.kind != ItemKind::Button || item.isGroupBox)
      return ActionResult::WrongKind;
    Send(item.number);
    open = keptUp;
    return ActionResult::Done;
  });
}

ActionResult DialogModel::DoubleClick(int32_t itemNumber) {
  const ActionResult result = Act(itemNumber, [&](const DialogItem &item) {
    if (item.kind != ItemKind::List)
      return ActionResult::WrongKind;
    if (item.state < 0)
      return ActionResult::BadValue;
    keptUp = false;
    doubleClick = item.reportsDoubleClick;
    if (doubleClick)
      Send(item.number);
    doubleClick = false;
    return ActionResult::Done;
  });
  if (result == ActionResult::Done && !keptUp)
    static_cast<void>(Click(defaultItem));
  return result;
}

ActionResult DialogModel::EnterText(int32_t itemNumber, const std::string &text) {
  return Act(itemNumber, [&](DialogItem &item) {
    if (!item.HasText())
      return ActionResult::WrongKind;
    if (item.IsReadOnly())
      return ActionResult::ReadOnly;
    if (item.text != text) {
      item.text = text;
      Send(item.number);
    }
    return ActionResult::Done;
  });
}

ActionResult DialogModel::Choose(int32_t itemNumber, int32_t index) {
  return Act(itemNumber, [&](DialogItem &item) {
    if (!item.HasChoices())
      return ActionResult::WrongKind;
    if (index < 0 || static_cast<size_t>(index) >= item.labels.size())
      return ActionResult::BadValue;
    item.state = index;
    Send(item.number);
    return ActionResult::Done;
  });
}

ActionResult DialogModel::Switch(int32_t itemNumber, bool on) {
  return Act(itemNumber, [&](DialogItem &item) { return TurnSwitch(item, on); });
}

ActionResult DialogModel::TurnSwitch(const DialogItem &item, bool on) {
  if (!item.IsSwitch())
    return ActionResult::WrongKind;
  const bool wasOn = item.state != 0;
  if (item.kind == ItemKind::Radio && !on) // only another button of the group turns it off
    return wasOn ? ActionResult::BadValue : ActionResult::Done;
  if (item.kind == ItemKind::CheckBox && wasOn == on)
    return ActionResult::Done;
  SetState(item.number, on);
  Send(item.number);
  return ActionResult::Done;
}

ActionResult DialogModel::SelectInGrid(GridSelection place) {
  return Act(gridItem, [&](const DialogItem &item) {
    const ActionResult result = grid->SelectPlace(place);
    if (result == ActionResult::Done)
      Send(item.number);
    return result;
  });
}

ActionResult DialogModel::EditGrid(int32_t row, int32_t cell, const std::string &value) {
  return Act(gridItem, [&](const DialogItem &item) {
    const ActionResult result = grid->EditCell(row, cell, value);
    if (result == ActionResult::Done)
      Send(item.number);
    return result;
  });
}

ActionResult DialogModel::CloseFrame() {
  if (!open)
    return ActionResult::NotOpen;
  if (serving)
    return ActionResult::Busy;
  Send(V_ITEM_FRAME_CLOSED);
  open = false;
  return ActionResult::Done;
}

void DialogModel::SetState(int32_t itemNumber, int32_t state) {
  DialogItem *item = Reach(itemNumber);
  if (!item)
    return;
  if (item->HasChoices())
    item->state = state >= 0 && static_cast<size_t>(state) < item->labels.size() ? state : -1;
  else
    item->state = item->IsSwitch() ? state != 0 : state;
  if (item->kind != ItemKind::Radio || !item->state)
    return;
  for (DialogItem &other : items)
    if (&other != item && other.kind == ItemKind::Radio && other.radioGroup == item->radioGroup)
      other.state = 0;
}

void DialogModel::SetText(int32_t itemNumber, const std::string &text) {
  if (DialogItem *item = Reach(itemNumber))
    item->text = text;
}

void DialogModel::SetLabels(int32_t itemNumber, std::vector<std::string> labels) {
  DialogItem *item = Reach(itemNumber);
  if (!item || !item->HasChoices())
    return;
  item->labels = std::move(labels);
  item->state = -1;
}

void DialogModel::SetSensitive(int32_t itemNumber, bool on) {
  if (DialogItem *item = Reach(itemNumber))
    item->sensitive = on;
}

void DialogModel::SetVisible(int32_t itemNumber, bool on) {
  if (DialogItem *item = Reach(itemNumber))
    item->visible = on;
}

void DialogModel::SetReportsDoubleClick(int32_t itemNumber, bool on) {
  if (DialogItem *item = Reach(itemNumber))
    item->reportsDoubleClick = on;
}

void DialogModel::MakeGrid(int32_t itemNumber, GridModel made) {
  gridItem = itemNumber;
  grid = std::make_unique<GridModel>(std::move(made));
}

void DialogModel::Begin(int32_t dialogNumber, EventSink eventSink) {
  number = dialogNumber;
  sink = std::move(eventSink);
  focus = firstFocus;
  open = true;
  Send(V_ITEM_INITIALISE);
}

} // namespace host
