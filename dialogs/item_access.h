// Items of an open dialog by number. Setting what an item already holds does nothing, so that a box in which a person
// is writing is not disturbed. Host's thread only.
#ifndef DIALOGS_ITEM_ACCESS_H
#define DIALOGS_ITEM_ACCESS_H

#include "kit/vdk.h"
#include "report/messages.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace dialogs {

[[nodiscard]] int32_t ItemState(V_ObjectT dialog, int32_t item);
[[nodiscard]] std::string ItemText(V_ObjectT dialog, int32_t item);
void SetItemState(V_ObjectT dialog, int32_t item, int32_t state);
void SetItemText(V_ObjectT dialog, int32_t item, const std::string &text);
// The labels and the chosen one, -1 for none.
void SetItemChoices(V_ObjectT dialog, int32_t item, const std::vector<std::string> &labels, int32_t chosen);
void SetItemSensitive(V_ObjectT dialog, int32_t item, bool on);
void SetItemVisible(V_ObjectT dialog, int32_t item, bool on);

// Opens a dialog's resource; 0, after an alert, when the host cannot.
[[nodiscard]] V_ObjectT OpenDialog(const char *name);

// Asks for a path (V_CHOOSE_...); empty when the person dismissed the question.
[[nodiscard]] std::string ChoosePath(int32_t kind, report::MessageId title,
                                     std::optional<report::MessageId> filter = std::nullopt);

} // namespace dialogs

#endif
