#include "dialogs/item_access.h"

#include "kit/values.h"

namespace dialogs {

namespace {

void SetIfDifferent(V_ObjectT item, int32_t property, int32_t value) {
  if (V_ApiGetInt(item, property) != value)
    V_ApiSetInt(item, property, value);
}

} // namespace

int32_t ItemState(V_ObjectT dialog, int32_t item) { return V_ApiGetInt(V_ApiDialogItem(dialog, item), V_IP_STATE); }

std::string ItemText(V_ObjectT dialog, int32_t item) {
  return kit::GetString(V_ApiDialogItem(dialog, item), V_IP_TEXT);
}

void SetItemState(V_ObjectT dialog, int32_t item, int32_t state) {
  SetIfDifferent(V_ApiDialogItem(dialog, item), V_IP_STATE, state);
}

void SetItemText(V_ObjectT dialog, int32_t item, const std::string &text) {
  if (ItemText(dialog, item) != text)
    V_ApiSetString(V_ApiDialogItem(dialog, item), V_IP_TEXT, text.c_str());
}

void SetItemChoices(V_ObjectT dialog, int32_t item, const std::vector<std::string> &labels, int32_t chosen) {
  const V_ObjectT handle = V_ApiDialogItem(dialog, item);
  if (kit::GetStrings(handle, V_IP_LABELS) != labels)
    kit::SetStrings(handle, V_IP_LABELS, labels);
  SetIfDifferent(handle, V_IP_STATE, chosen);
}

void SetItemSensitive(V_ObjectT dialog, int32_t item, bool on) {
  SetIfDifferent(V_ApiDialogItem(dialog, item), V_IP_SENSITIVE, on);
}

void SetItemVisible(V_ObjectT dialog, int32_t item, bool on) {
  SetIfDifferent(V_ApiDialogItem(dialog, item), V_IP_VISIBLE, on);
}

V_ObjectT OpenDialog(const char *name) {
  const V_ObjectT dialog = V_ApiOpenDialog(name);
  if (!dialog)
    static_cast<void>(V_ApiAlert(report::LoadMessage(report::MessageId::DialogNotOpened).c_str(), V_ALERT_PLAIN));
  return dialog;
}

std::string ChoosePath(int32_t kind, report::MessageId title, std::optional<report::MessageId> filter) {
  const std::string filterText = filter ? report::LoadMessage(*filter) : std::string();
  return kit::HostString::Adopt(
             V_ApiChooseFile(kind, report::LoadMessage(title).c_str(), kit::OrNull(filterText), nullptr))
      .Text();
}

} // namespace dialogs
