// Any bytes as a resource image, as a dialog template and as an item table.
#include "kit/resources.h"
#include "kit/dialog_resource.h"
#include "tests/fuzz/fuzzing.h"

#include <array>

namespace {

using kit::Resources;

// Both, whatever it was meant to be.
void ReadDialog(Resources::Bytes bytes) {
  if (const auto dialog = kit::ReadDialogTemplate(bytes)) {
    fuzz::Require(fuzz::IsUtf8(dialog->title) && fuzz::IsUtf8(dialog->fontName), "texts are UTF-8");
    fuzz::Require(dialog->controls.size() <= bytes.size() / 24, "each control takes its bytes");
    for (const kit::DialogControl &control : dialog->controls)
      fuzz::Require(fuzz::IsUtf8(control.text), "texts are UTF-8");
  }
  if (const auto table = kit::ReadDialogItemTable(bytes)) {
    fuzz::Require(table->rows.size() <= bytes.size() / 9, "each row takes its bytes");
    for (size_t index = 1; index < table->rows.size(); ++index)
      fuzz::Require(table->rows[index - 1].id < table->rows[index].id, "rows are in order");
  }
}

} // namespace

void fuzz::RunInput(std::string_view input) {
  const auto bytes = std::as_bytes(std::span(input.data(), input.size()));
  ReadDialog(bytes);
  const auto resources = Resources::Read(bytes);
  if (!resources)
    return;
  for (unsigned id = 0; id < 0x10000; id += id < 18000 || id > 20000 ? 16 : 1)
    Require(IsUtf8(resources->Text(static_cast<uint16_t>(id))), "texts are UTF-8");
  for (const char *name : {"choose_manage_xslt", "ah_choose_manage_xslt", "advance_xslt", "ah_advance_xslt", "a"})
    for (const Resources::Bytes found : {resources->DialogTemplate(name), resources->ItemTable(name)})
      ReadDialog(found);
}
