// The numbers under which the client runs its dialogs; events carry them back.
#ifndef DIALOGS_DIALOG_NUMBERS_H
#define DIALOGS_DIALOG_NUMBERS_H

#include <cstdint>

namespace dialogs {

constexpr int32_t advancedRunDialogNumber = 10;
constexpr int32_t chooseManageDialogNumber = 11;
constexpr int32_t newEditDialogNumber = 12;
constexpr int32_t stylesheetParamsDialogNumber = 13;

} // namespace dialogs

#endif
