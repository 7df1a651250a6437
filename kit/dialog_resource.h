// What a client's resources say about a dialog: the template (controls, texts, places in dialog units) and the item
// table beside it (the kind and first state of every item). Values read from bytes; damaged bytes give nothing.
#ifndef KIT_DIALOG_RESOURCE_H
#define KIT_DIALOG_RESOURCE_H

#include "kit/resources.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kit {

// A control's class, as templates number the system's own ones.
enum class ControlClass : uint16_t {
  Other = 0,
  Button = 0x80,
  Edit = 0x81,
  Static = 0x82,
  ListBox = 0x83,
  ComboBox = 0x85
};

// The styles that mean something beyond looks.
enum ControlStyle : uint32_t {
  StyleTabStop = 0x10000,
  StyleGroup = 0x20000,
  StyleDisabled = 0x08000000,
  StyleVisible = 0x10000000,
  StyleReadOnly = 0x800, // of an edit control
};

struct DialogRectangle {
  int16_t x = 0;
  int16_t y = 0;
  int16_t width = 0;
  int16_t height = 0;
};

struct DialogControl {
  uint32_t id = 0;
  uint32_t style = 0;
  uint32_t extendedStyle = 0;
  ControlClass controlClass = ControlClass::Other;
  DialogRectangle place;
  std::string text; // with the & of its access key
};

struct DialogTemplate {
  std::string title;
  uint32_t style = 0;
  DialogRectangle place;
  uint16_t fontSize = 0; // in points; 0 when the template names no font
  std::string fontName;
  std::vector<DialogControl> controls; // in tab order
};

struct DialogItemRow {
  uint16_t id = 0;
  uint16_t kind = 0;
  uint16_t state = 0;
  uint16_t mark = 0;
  std::string text;
};

// An item's number is its id less this.
constexpr int32_t firstItemId = 100;

struct DialogItemTable {
  uint16_t cancelItem = 0;
  uint16_t defaultItem = 0;
  uint16_t firstFocus = 0;
  std::string name;
  std::vector<DialogItemRow> rows; // by id, ascending
};

[[nodiscard]] std::optional<DialogTemplate> ReadDialogTemplate(Resources::Bytes bytes);
[[nodiscard]] std::optional<DialogItemTable> ReadDialogItemTable(Resources::Bytes bytes);

} // namespace kit

#endif
