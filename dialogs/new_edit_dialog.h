// The dialog that makes a transformation or edits one, field by field, and saves it into a catalogue. Modal, host's
// thread only.
#ifndef DIALOGS_NEW_EDIT_DIALOG_H
#define DIALOGS_NEW_EDIT_DIALOG_H

#include <cstdint>
#include <string>

namespace dialogs {

// Without a catalogue only Save As can store the transformation. Both return when the dialog is gone.
void MakeNewTransformation(const std::string &trFilePath);
// An empty form when the catalogue has no transformation of that name.
void ChangeTransformation(const std::string &trFilePath, const std::string &trName);
void ServeNewEditEvent(int32_t item);
void ForgetNewEditState();

} // namespace dialogs

#endif
