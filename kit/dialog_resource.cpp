#include "kit/dialog_resource.h"

#include "kit/byte_cursor.h"

#include <algorithm>

namespace kit {

namespace {

constexpr uint16_t extendedVersion = 1;
constexpr uint16_t extendedSignature = 0xFFFF;
constexpr uint32_t styleNamesFont = 0x40;
constexpr uint16_t tableMark = 0xFFFF;
constexpr size_t tableFiller = 12;

DialogRectangle ReadRectangle(ByteCursor &cursor) {
  DialogRectangle rectangle;
  for (int16_t *each : {&rectangle.x, &rectangle.y, &rectangle.width, &rectangle.height})
    *each = static_cast<int16_t>(cursor.Word());
  return rectangle;
}

ControlClass ToControlClass(uint16_t number) {
  constexpr ControlClass known[] = {ControlClass::Button, ControlClass::Edit, ControlClass::Static,
                                    ControlClass::ListBox, ControlClass::ComboBox};
  const auto *found = std::ranges::find(known, static_cast<ControlClass>(number));
  return found == std::end(known) ? ControlClass::Other : *found;
}

DialogControl ReadControl(ByteCursor &cursor) {
  cursor.AlignTo(4);
  DialogControl control;
  static_cast<void>(cursor.DoubleWord()); // help id
  control.extendedStyle = cursor.DoubleWord();
  control.style = cursor.DoubleWord();
  control.place = ReadRectangle(cursor);
  control.id = cursor.DoubleWord();
  control.controlClass = ToControlClass(cursor.Identifier().number);
  control.text = cursor.Identifier().text;
  cursor.Take(cursor.Word()); // creation data
  return control;
}

void ReadFont(ByteCursor &cursor, DialogTemplate &dialog) {
  dialog.fontSize = cursor.Word();
  static_cast<void>(cursor.Word()); // weight
  static_cast<void>(cursor.Byte()); // italic
  static_cast<void>(cursor.Byte()); // character set
  dialog.fontName = cursor.WideText();
}

} // namespace

std::optional<DialogTemplate> ReadDialogTemplate(Resources::Bytes bytes) {
  ByteCursor cursor(bytes);
  const uint16_t version = cursor.Word();
  if (const uint16_t signature = cursor.Word(); version != extendedVersion || signature != extendedSignature)
    return std::nullopt;
  DialogTemplate dialog;
  static_cast<void>(cursor.DoubleWord()); // help id
  static_cast<void>(cursor.DoubleWord()); // extended style
  dialog.style = cursor.DoubleWord();
  const uint16_t count = cursor.Word();
  dialog.place = ReadRectangle(cursor);
  static_cast<void>(cursor.Identifier()); // menu
  static_cast<void>(cursor.Identifier()); // window class
  dialog.title = cursor.WideText();
  if (dialog.style & styleNamesFont)
    ReadFont(cursor, dialog);
  while (cursor.IsGood() && dialog.controls.size() < count)
    dialog.controls.push_back(ReadControl(cursor));
  if (!cursor.IsGood() || !cursor.AtEnd())
    return std::nullopt;
  return dialog;
}

std::optional<DialogItemTable> ReadDialogItemTable(Resources::Bytes bytes) {
  ByteCursor cursor(bytes);
  if (cursor.Word() != tableMark)
    return std::nullopt;
  DialogItemTable table;
  table.cancelItem = cursor.Word();
  table.defaultItem = cursor.Word();
  const uint16_t count = cursor.Word();
  table.firstFocus = cursor.Word();
  const Resources::Bytes filler = cursor.Take(tableFiller);
  table.name = cursor.NarrowText();
  const uint16_t end = cursor.Word();
  if (!cursor.IsGood() || end != 0 ||
      !std::ranges::all_of(filler, [](std::byte each) { return each == std::byte{0xFF}; }))
    return std::nullopt;
  for (size_t index = 0; cursor.IsGood() && index < count; ++index) {
    DialogItemRow row;
    for (uint16_t *each : {&row.id, &row.kind, &row.state, &row.mark})
      *each = cursor.Word();
    row.text = cursor.NarrowText();
    table.rows.push_back(std::move(row));
  }
  const bool ascending =
      std::ranges::adjacent_find(table.rows, std::ranges::greater_equal{}, &DialogItemRow::id) == table.rows.end();
  if (!cursor.IsGood() || !cursor.AtEnd() || !ascending)
    return std::nullopt;
  return table;
}

} // namespace kit
