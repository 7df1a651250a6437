#include "host/dialog_host.h"

#include "kit/dialog_resource.h"
#include "kit/text.h"

#include <algorithm>
#include <utility>

namespace host {

namespace {

// A handle holds the dialog's index and, counted from one, its item's number; zero stands for the dialog itself.
constexpr V_ObjectT itemBits = 12;
constexpr V_ObjectT itemMask = (1U << itemBits) - 1;

V_ObjectT MakeHandle(size_t dialogIndex) {
  return DialogHost::firstHandle + (static_cast<V_ObjectT>(dialogIndex) << itemBits);
}

size_t DialogIndex(V_ObjectT handle) { return (handle - DialogHost::firstHandle) >> itemBits; }
int32_t ItemNumber(V_ObjectT handle) { return static_cast<int32_t>(handle & itemMask) - 1; }

std::unique_ptr<DialogModel> ReadModel(std::string_view name, const kit::Resources &resources) {
  const auto layout = kit::ReadDialogTemplate(resources.DialogTemplate(name));
  const auto table = kit::ReadDialogItemTable(resources.ItemTable("AH_" + std::string(name)));
  return layout && table ? DialogModel::Make(*layout, *table) : nullptr;
}

} // namespace

V_ObjectT DialogHost::Open(std::string_view name, const kit::Resources &resources) {
  std::unique_ptr<DialogModel> model = ReadModel(name, resources);
  if (!model)
    return 0;
  const auto reusable = std::ranges::find_if(dialogs, [&](const OpenDialog &dialog) {
    return kit::EqualsIgnoreCase(dialog.name, name) && !dialog.model->IsOpen();
  });
  if (reusable != dialogs.end()) {
    reusable->model = std::move(model);
    return MakeHandle(static_cast<size_t>(reusable - dialogs.begin()));
  }
  dialogs.push_back({std::string(name), std::move(model)});
  return MakeHandle(dialogs.size() - 1);
}

V_ObjectT DialogHost::Item(V_ObjectT dialog, int32_t number) const {
  const DialogModel *model = FindDialog(dialog);
  return model && model->Find(number) ? MakeHandle(DialogIndex(dialog)) + static_cast<V_ObjectT>(number) + 1 : 0;
}

void DialogHost::Run(int32_t number, V_ObjectT dialog, Front &front, DialogModel::EventSink sink) {
  DialogModel *model = FindDialog(dialog);
  if (!model || model->IsOpen())
    return;
  model->Begin(number, std::move(sink));
  front.RunDialog(*model);
  if (model->IsOpen())
    static_cast<void>(model->CloseFrame());
}

void DialogHost::KeepUp(V_ObjectT dialog) {
  if (DialogModel *model = FindDialog(dialog))
    model->KeepUp();
}

int32_t DialogHost::GetInt(V_ObjectT handle, int32_t property) const {
  const DialogModel *model = FindDialog(handle);
  const DialogItem *item = FindItem(handle);
  if (property == V_OP_TYPE)
    return item ? V_TYPE_DIALOG_ITEM : model ? V_TYPE_DIALOG : 0;
  if (property == V_DP_DOUBLE_CLICK)
    return model && model->ServesDoubleClick();
  if (!item)
    return 0;
  switch (property) {
  case V_IP_STATE:
    return item->state;
  case V_IP_SENSITIVE:
    return item->sensitive;
  case V_IP_VISIBLE:
    return item->visible;
  case V_IP_REPORTS_DOUBLE_CLICK:
    return item->reportsDoubleClick;
  default:
    return 0;
  }
}

void DialogHost::SetInt(V_ObjectT handle, int32_t property, int32_t value) {
  DialogModel *model = FindDialog(handle);
  if (!model)
    return;
  const int32_t item = ItemNumber(handle);
  switch (property) {
  case V_IP_STATE:
    model->SetState(item, value);
    break;
  case V_IP_SENSITIVE:
    model->SetSensitive(item, value != 0);
    break;
  case V_IP_VISIBLE:
    model->SetVisible(item, value != 0);
    break;
  case V_IP_REPORTS_DOUBLE_CLICK:
    model->SetReportsDoubleClick(item, value != 0);
    break;
  default:
    break;
  }
}

std::string DialogHost::GetString(V_ObjectT handle, int32_t property) const {
  const DialogModel *model = FindDialog(handle);
  const DialogItem *item = FindItem(handle);
  if (model && property == V_DP_TITLE)
    return model->Title();
  return item && property == V_IP_TEXT ? item->ShownText() : std::string();
}

void DialogHost::SetString(V_ObjectT handle, int32_t property, const std::string &value) {
  DialogModel *model = FindDialog(handle);
  if (!model)
    return;
  if (property == V_DP_TITLE)
    model->SetTitle(value);
  if (property == V_IP_TEXT)
    model->SetText(ItemNumber(handle), value);
}

std::vector<std::string> DialogHost::GetStrings(V_ObjectT handle, int32_t property) const {
  const DialogItem *item = FindItem(handle);
  return item && property == V_IP_LABELS ? item->labels : std::vector<std::string>();
}

void DialogHost::SetStrings(V_ObjectT handle, int32_t property, std::vector<std::string> value) {
  DialogModel *model = FindDialog(handle);
  if (model && property == V_IP_LABELS)
    model->SetLabels(ItemNumber(handle), std::move(value));
}

V_ObjectT DialogHost::MakeGrid(V_ObjectT dialog, int32_t item, int32_t frameItem, GridModel grid) {
  DialogModel *model = FindDialog(dialog);
  if (!model)
    return 0;
  const DialogItem *place = model->Find(item);
  const DialogItem *frame = model->Find(frameItem);
  if (!place || place->kind != ItemKind::Grid || !frame || frame->kind != ItemKind::GridFrame)
    return 0;
  model->MakeGrid(item, std::move(grid));
  return Item(dialog, item);
}

GridModel *DialogHost::FindGrid(V_ObjectT handle) const {
  const DialogItem *item = FindItem(handle);
  return item && item->kind == ItemKind::Grid ? FindDialog(handle)->Grid() : nullptr;
}

DialogModel *DialogHost::FindDialog(V_ObjectT handle) const {
  return Owns(handle) && DialogIndex(handle) < dialogs.size() ? dialogs[DialogIndex(handle)].model.get() : nullptr;
}

const DialogItem *DialogHost::FindItem(V_ObjectT handle) const {
  const DialogModel *model = FindDialog(handle);
  return model ? model->Find(ItemNumber(handle)) : nullptr;
}

} // namespace host
