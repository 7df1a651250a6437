#include "dialogs/dialogs.h"

#include "dialogs/advanced_run_dialog.h"
#include "dialogs/choose_manage_dialog.h"
#include "dialogs/dialog_numbers.h"
#include "dialogs/new_edit_dialog.h"
#include "dialogs/stylesheet_params_dialog.h"

#include <algorithm>
#include <array>

namespace dialogs {

namespace {

struct Entry {
  int32_t dialog;
  void (*serve)(int32_t item);
  void (*forgetState)();
};

constexpr std::array entries = {
    Entry{advancedRunDialogNumber, ServeAdvancedRunEvent, ForgetAdvancedRunState},
    Entry{chooseManageDialogNumber, ServeChooseManageEvent, ForgetChooseManageState},
    Entry{newEditDialogNumber, ServeNewEditEvent, ForgetNewEditState},
    Entry{stylesheetParamsDialogNumber, ServeStylesheetParamsEvent, ForgetStylesheetParamsState},
};

} // namespace

kit::TypedValues OpenChooseDialog() {
  const ChosenTransformation chosen = OpenChooseManageDialog(ChooseMode::ForActiveDocument);
  kit::TypedValues reply;
  reply.AddStrings({chosen.trFilePath, chosen.trName, chosen.appName});
  return reply;
}

void OpenManageDialog() { static_cast<void>(OpenChooseManageDialog(ChooseMode::Manage)); }

void OpenNewDialog() { MakeNewTransformation({}); }

std::string OpenAdvancedRunDialog() { return AskForRunRequest(); }

void DialogEvent(int32_t dialog, int32_t item, int32_t) {
  const auto entry = std::ranges::find(entries, dialog, &Entry::dialog);
  if (entry != entries.end())
    entry->serve(item);
}

void ShutDownDialogs() {
  for (const Entry &entry : entries)
    entry.forgetState();
}

} // namespace dialogs
