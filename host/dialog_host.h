// The dialogs that a client opened, behind the object numbers that the kit's dialog calls use: the session forwards
// those calls to this class. Numbers begin at `firstHandle`, so they never meet those of documents. Host's thread only.
#ifndef HOST_DIALOGS_DIALOG_HOST_H
#define HOST_DIALOGS_DIALOG_HOST_H

#include "host/dialogs/dialog_model.h"
#include "host/fronts/front.h"
#include "kit/resources.h"
#include "kit/vdk.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace host {

class DialogHost {
public:
  static constexpr V_ObjectT firstHandle = 0x10000;
  [[nodiscard]] static bool Owns(V_ObjectT handle) { return handle >= firstHandle; }

  // Opens a dialog by its template's name; a dialog of that name that is not on screen begins anew under its old
  // number. 0 when the resources hold none, or a damaged one. The resources must outlive the dialog's use.
  [[nodiscard]] V_ObjectT Open(std::string_view name, const kit::Resources &resources);
  // 0 when the dialog has no such item.
  [[nodiscard]] V_ObjectT Item(V_ObjectT dialog, int32_t number) const;
  // Runs it modally in the front; afterwards it is closed, whatever the front did.
  void Run(int32_t number, V_ObjectT dialog, Front &front, DialogModel::EventSink sink);
  void KeepUp(V_ObjectT dialog);

  // Properties of dialogs and items; what does not exist reads as nothing and cannot be set.
  [[nodiscard]] int32_t GetInt(V_ObjectT handle, int32_t property) const;
  void SetInt(V_ObjectT handle, int32_t property, int32_t value);
  [[nodiscard]] std::string GetString(V_ObjectT handle, int32_t property) const;
  void SetString(V_ObjectT handle, int32_t property, const std::string &value);
  [[nodiscard]] std::vector<std::string> GetStrings(V_ObjectT handle, int32_t property) const;
  void SetStrings(V_ObjectT handle, int32_t property, std::vector<std::string> value);

  // The grid's number is that of the item it is; 0 when the dialog has no such items.
  [[nodiscard]] V_ObjectT MakeGrid(V_ObjectT dialog, int32_t item, int32_t frameItem, GridModel grid);
  // Null when the number is not a grid's.
  [[nodiscard]] GridModel *FindGrid(V_ObjectT handle) const;

private:
  struct OpenDialog {
    std::string name;
    std::unique_ptr<DialogModel> model;
  };

  [[nodiscard]] DialogModel *FindDialog(V_ObjectT handle) const;
  // Null for a dialog's own number.
  [[nodiscard]] const DialogItem *FindItem(V_ObjectT handle) const;

  std::vector<OpenDialog> dialogs;
};

} // namespace host

#endif
