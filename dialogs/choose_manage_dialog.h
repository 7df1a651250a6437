// The dialog that lists the transformations of a catalogue: to choose one, or to manage them. It opens with the
// catalogue and the selection of the last time. Modal, host's thread only.
#ifndef DIALOGS_CHOOSE_MANAGE_DIALOG_H
#define DIALOGS_CHOOSE_MANAGE_DIALOG_H

#include <cstdint>
#include <string>

namespace dialogs {

enum class ChooseMode : uint32_t { ForActiveDocument = 0, AmongAll = 1, Manage = 2 };

// An empty name says that nothing was chosen.
struct ChosenTransformation {
  std::string trFilePath;
  std::string trName;
  std::string appName; // empty unless the catalogue was chosen by application
};

// Returns when the dialog is gone.
[[nodiscard]] ChosenTransformation OpenChooseManageDialog(ChooseMode mode);
void ServeChooseManageEvent(int32_t item);
void ForgetChooseManageState();

} // namespace dialogs

#endif
