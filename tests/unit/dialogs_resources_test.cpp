// The client's dialog resources: bytes that other programs rely on, damage that must not hurt, and layouts that a
// person has to read.
#include "kit/dialog_resource.h"
#include "report/messages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using Bytes = kit::Resources::Bytes;
using Row = std::array<int, 3>; // id, kind, state

struct DialogReference {
  std::string_view name;
  std::string_view title;
  int width, height;
  int cancel, byDefault, focus;
  int mark;
  std::string_view text; // of every row
  std::vector<Row> rows;
};

const std::vector<DialogReference> &References() {
  static const std::vector<DialogReference> references = {
      {"CHOOSE_MANAGE_XSLT",
       "Transformations",
       218,
       264,
       9,
       8,
       4,
       0xFFFF,
       "",
       {{100, 4, 0},
        {101, 10, 1},
        {102, 10, 0},
        {103, 6, 0},
        {104, 1008, 0},
        {105, 2, 0},
        {106, 2, 0},
        {107, 2, 0},
        {108, 2, 0},
        {109, 2, 0},
        {110, 4, 0},
        {111, 10, 0},
        {112, 1009, 0},
        {113, 2, 0}}},
      {"NEW_EDIT_TRANSFORMATION",
       "New Transformation",
       296,
       380,
       27,
       26,
       1,
       0xFFFF,
       "",
       {{100, 4, 0},    {101, 9, 1},  {102, 2, 1},    {103, 4, 0},  {104, 10, 1}, {105, 1009, 0}, {106, 2, 0},
        {107, 10, 0},   {108, 2, 0},  {109, 4, 0},    {110, 6, 0},  {111, 2, 1},  {112, 4, 0},    {113, 10, 1},
        {114, 1009, 0}, {115, 2, 0},  {116, 10, 0},   {117, 10, 1}, {118, 9, 0},  {119, 10, 0},   {120, 10, 0},
        {121, 10, 0},   {122, 5, 0},  {123, 1009, 0}, {124, 4, 0},  {125, 2, 0},  {126, 2, 0},    {127, 2, 0},
        {128, 10, 0},   {129, 10, 0}, {130, 2, 0}}},
      {"ADVANCE_XSLT",
       "Advanced Run",
       279,
       210,
       15,
       14,
       1,
       0xFFFF,
       "",
       {{100, 2, 1},
        {101, 10, 1},
        {102, 10, 0},
        {103, 10, 0},
        {104, 1009, 0},
        {105, 2, 0},
        {106, 5, 0},
        {107, 2, 1},
        {108, 10, 1},
        {109, 10, 0},
        {110, 9, 0},
        {111, 2, 0},
        {112, 1009, 0},
        {113, 2, 0},
        {114, 2, 0},
        {115, 2, 0},
        {116, 5, 0}}},
      {"STYLESHEET_PARAMS",
       "Stylesheet Parameters",
       288,
       178,
       3,
       2,
       0,
       0,
       "-1",
       {{100, 1, 0}, {101, 17, 0}, {102, 2, 0}, {103, 2, 0}, {104, 2, 0}}},
  };
  return references;
}

void Append(std::string &bytes, int word) {
  bytes += static_cast<char>(word & 0xFF);
  bytes += static_cast<char>(word >> 8);
}

std::string TableBytes(const DialogReference &reference) {
  std::string bytes;
  for (const int word :
       {0xFFFF, reference.cancel, reference.byDefault, static_cast<int>(reference.rows.size()), reference.focus})
    Append(bytes, word);
  bytes.append(12, '\xFF').append("AH_").append(reference.name).append(3, '\0');
  for (const Row &row : reference.rows) {
    for (const int word : {row[0], row[1], row[2], reference.mark})
      Append(bytes, word);
    bytes.append(reference.text).append(1, '\0');
  }
  return bytes;
}

std::string ToText(Bytes bytes) { return {reinterpret_cast<const char *>(bytes.data()), bytes.size()}; }

// A copy of exactly that size, so that a read behind its end is one behind a heap block.
class HeapCopy {
public:
  HeapCopy(Bytes bytes, size_t count) : copy(std::make_unique<std::byte[]>(count)), size(count) {
    std::copy_n(bytes.begin(), count, copy.get());
  }
  [[nodiscard]] Bytes View() const { return {copy.get(), size}; }
  [[nodiscard]] std::byte &operator[](size_t at) const { return copy[at]; }

private:
  std::unique_ptr<std::byte[]> copy;
  size_t size;
};

kit::DialogTemplate Template(std::string_view name) {
  return kit::ReadDialogTemplate(report::ClientResources().DialogTemplate(name)).value_or(kit::DialogTemplate());
}

std::string AllTexts(const kit::Resources &resources) {
  std::string texts;
  for (uint16_t id = 18000; id < 18300; ++id)
    texts.append(resources.Text(id)).append("\n");
  return texts;
}

TEST(DialogResources, ItemTablesAreTheseBytes) {
  for (const DialogReference &each : References())
    EXPECT_EQ(ToText(report::ClientResources().ItemTable("AH_" + std::string(each.name))), TableBytes(each))
        << each.name;
  // Written out once, so that a fault in the function above shows too.
  constexpr std::string_view params("\xFF\xFF\x03\0\x02\0\x05\0\0\0\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"
                                    "AH_STYLESHEET_PARAMS\0\0\0"
                                    "\x64\0\x01\0\0\0\0\0-1\0\x65\0\x11\0\0\0\0\0-1\0\x66\0\x02\0\0\0\0\0-1\0"
                                    "\x67\0\x02\0\0\0\0\0-1\0\x68\0\x02\0\0\0\0\0-1\0",
                                    100);
  EXPECT_EQ(ToText(report::ClientResources().ItemTable("ah_stylesheet_params")), params);
}

TEST(DialogResources, TemplatesFitTheirTables) {
  for (const DialogReference &each : References()) {
    const kit::DialogTemplate dialog = Template(each.name);
    EXPECT_EQ(dialog.title, each.title);
    EXPECT_EQ(dialog.place.width, each.width) << each.name;
    EXPECT_EQ(dialog.place.height, each.height) << each.name;
    EXPECT_EQ(dialog.fontName, "Microsoft Sans Serif");
    EXPECT_EQ(dialog.fontSize, 8);
    std::vector<int> ids;
    for (const kit::DialogControl &control : dialog.controls)
      ids.push_back(static_cast<int>(control.id));
    std::ranges::sort(ids);
    std::vector<int> wanted;
    for (const Row &row : each.rows)
      if (row[1] != 17) // made at run time
        wanted.push_back(row[0]);
    EXPECT_EQ(ids, wanted) << each.name;
  }
}

TEST(DialogResources, TextsOfControls) {
  const struct {
    std::string_view dialog;
    std::vector<std::pair<uint32_t, std::string_view>> texts;
  } cases[] = {
      {"CHOOSE_MANAGE_XSLT",
       {{100, "Transformations:"},
        {101, "&Default Transformation File"},
        {102, "Structured Applications"},
        {105, "&Edit..."},
        {106, "&New..."},
        {107, "&Delete"},
        {108, "&OK"},
        {109, "&Close"},
        {110, "Display Transformations From:"},
        {111, "Transformation File:"},
        {113, "&Browse..."}}},
      {"NEW_EDIT_TRANSFORMATION",
       {{100, "Name:"},
        {102, "Input"},
        {103, "Use:"},
        {104, "&XSL"},
        {107, "&Processing Instruction From The Source XML File"},
        {108, "Parameters..."},
        {109, "Processor:"},
        {111, "Output"},
        {112, "Save Files:"},
        {113, "&In Folder:"},
        {116, "In the Source XML &Folder:"},
        {117, "Add &Suffix To Output File:"},
        {119, "Over&write Source File"},
        {120, "&Ask Before Saving"},
        {121, "&Do Not Save"},
        {122, "&Open Output File:"},
        {124, "Save In File:"},
        {126, "Save"},
        {127, "Close"},
        {128, "In &Vellis"},
        {129, "In Defaul&t Program"},
        {130, "Save As..."}}},
      {"ADVANCE_XSLT",
       {{100, "Scope"},
        {101, "Current &File"},
        {102, "&All Open Files"},
        {103, "F&older"},
        {106, "Include Children"},
        {107, "Choose"},
        {108, "&Transformation"},
        {109, "&XSL"},
        {114, "&Run"},
        {115, "&Cancel"},
        {116, "Include Sub-Folders"}}},
      {"STYLESHEET_PARAMS", {{102, "&OK"}, {103, "&Close"}, {104, "&Delete"}}},
  };
  for (const auto &each : cases) {
    const kit::DialogTemplate dialog = Template(each.dialog);
    for (const auto &[id, text] : each.texts) {
      const auto control = std::ranges::find(dialog.controls, id, &kit::DialogControl::id);
      ASSERT_NE(control, dialog.controls.end()) << id;
      EXPECT_EQ(control->text, text);
    }
  }
}

TEST(DialogResources, CutShortAnywhereTheyAreRefused) {
  for (const DialogReference &each : References()) {
    const Bytes layout = report::ClientResources().DialogTemplate(each.name);
    for (size_t count = 0; count < layout.size(); ++count)
      EXPECT_FALSE(kit::ReadDialogTemplate(HeapCopy(layout, count).View())) << each.name << " at " << count;
    const Bytes table = report::ClientResources().ItemTable("AH_" + std::string(each.name));
    for (size_t count = 0; count < table.size(); ++count)
      EXPECT_FALSE(kit::ReadDialogItemTable(HeapCopy(table, count).View())) << each.name << " at " << count;
  }
  // An image that is cut between two of its entries is a smaller image; then something has to be missing.
  const Bytes image = report::ResourceImage();
  for (size_t count = 0; count < image.size(); ++count) {
    const HeapCopy cut(image, count);
    const auto resources = kit::Resources::Read(cut.View());
    const bool isWhole = resources && std::ranges::all_of(References(), [&](const DialogReference &each) {
                           return !resources->DialogTemplate(each.name).empty() &&
                                  !resources->ItemTable("AH_" + std::string(each.name)).empty();
                         });
    EXPECT_FALSE(isWhole && AllTexts(*resources) == AllTexts(report::ClientResources())) << count;
  }
}

TEST(DialogResources, DamagedBytesAreReadWithinTheirBounds) {
  std::mt19937 random(20);
  const Bytes image = report::ResourceImage();
  for (int round = 0; round < 3000; ++round) {
    const HeapCopy damaged(image, image.size());
    for (int change = 0; change < 4; ++change)
      damaged[random() % image.size()] = static_cast<std::byte>(random());
    const auto resources = kit::Resources::Read(damaged.View());
    for (const DialogReference &each : References())
      if (resources) {
        const auto layout = kit::ReadDialogTemplate(resources->DialogTemplate(each.name));
        const auto table = kit::ReadDialogItemTable(resources->ItemTable("AH_" + std::string(each.name)));
        EXPECT_LE(layout ? layout->controls.size() : 0, image.size());
        EXPECT_LE(table ? table->rows.size() : 0, image.size());
      }
  }
}

// Layouts: in dialog units, a quarter of the font's average width across and an eighth of its height down.

struct Box {
  const kit::DialogControl *control;
  int left, top, right, bottom;
};

constexpr uint32_t groupBoxStyle = 7;
constexpr uint32_t buttonKindMask = 0xF;

bool IsGroupBox(const kit::DialogControl &control) {
  return control.controlClass == kit::ControlClass::Button && (control.style & buttonKindMask) == groupBoxStyle;
}

Box BoxOf(const kit::DialogControl &control) {
  constexpr int closedDropDown = 14;
  const kit::DialogRectangle &place = control.place;
  const int height = control.controlClass == kit::ControlClass::ComboBox ? closedDropDown : place.height;
  return {&control, place.x, place.y, place.x + place.width, place.y + height};
}

std::vector<Box> BoxesOf(const kit::DialogTemplate &dialog) {
  std::vector<Box> boxes;
  for (const kit::DialogControl &control : dialog.controls)
    if (control.place.width > 0)
      boxes.push_back(BoxOf(control));
  return boxes;
}

bool Overlap(const Box &one, const Box &other) {
  return one.left < other.right && other.left < one.right && one.top < other.bottom && other.top < one.bottom;
}

// Rough, and rather too wide than too narrow.
double TextWidth(std::string_view text) {
  double width = 0;
  for (const char letter : text)
    if (letter != '&')
      width += std::string_view("fijlrtI .,:'()-").find(letter) != std::string_view::npos ? 2.4
               : std::string_view("mwMWOQD").find(letter) != std::string_view::npos       ? 6.5
               : letter >= 'A' && letter <= 'Z'                                           ? 5.5
                                                                                          : 4.4;
  return width;
}

double RoomFor(const Box &box) {
  constexpr int checkMark = 12;
  constexpr int buttonMargins = 6;
  const kit::DialogControl &control = *box.control;
  const int width = box.right - box.left;
  if (control.controlClass != kit::ControlClass::Button || IsGroupBox(control))
    return width;
  const bool isPushButton = (control.style & buttonKindMask) <= 1;
  return width - (isPushButton ? buttonMargins : checkMark);
}

TEST(DialogLayout, NothingOverlapsOrLeavesItsPlace) {
  for (const DialogReference &each : References()) {
    const kit::DialogTemplate dialog = Template(each.name);
    const std::vector<Box> boxes = BoxesOf(dialog);
    for (const Box &box : boxes) {
      EXPECT_GE(std::min(box.left, box.top), 7) << each.name << box.control->id;
      EXPECT_LE(box.right, each.width - 7) << each.name << box.control->id;
      EXPECT_LE(box.bottom, each.height - 7) << each.name << box.control->id;
      EXPECT_GE(RoomFor(box), TextWidth(box.control->text)) << each.name << " clips " << box.control->text;
      for (const Box &other : boxes) {
        if (&box == &other || !Overlap(box, other))
          continue;
        // Only a group may hold others, and then with some space at its edges and under its title.
        const Box &group = IsGroupBox(*box.control) ? box : other;
        const Box &inner = IsGroupBox(*box.control) ? other : box;
        EXPECT_TRUE(IsGroupBox(*group.control)) << each.name << box.control->id << " on " << other.control->id;
        EXPECT_GE(inner.left, group.left + 7) << each.name << inner.control->id;
        EXPECT_LE(inner.right, group.right - 7) << each.name << inner.control->id;
        EXPECT_GE(inner.top, group.top + 9) << each.name << inner.control->id;
        EXPECT_LE(inner.bottom, group.bottom - 4) << each.name << inner.control->id;
      }
    }
  }
}

TEST(DialogLayout, ControlsLineUp) {
  const struct {
    std::string_view dialog;
    int Box::*edge;
    std::vector<uint32_t> ids;
  } lines[] = {
      {"CHOOSE_MANAGE_XSLT", &Box::left, {100, 104, 110}},
      {"CHOOSE_MANAGE_XSLT", &Box::left, {101, 102, 111}},
      {"CHOOSE_MANAGE_XSLT", &Box::left, {103, 112}},
      {"CHOOSE_MANAGE_XSLT", &Box::right, {104, 107, 103, 113, 109}},
      {"CHOOSE_MANAGE_XSLT", &Box::top, {105, 106, 107}},
      {"CHOOSE_MANAGE_XSLT", &Box::top, {112, 113}},
      {"CHOOSE_MANAGE_XSLT", &Box::top, {108, 109}},
      {"NEW_EDIT_TRANSFORMATION", &Box::left, {101, 104, 107, 110, 113, 116, 120, 121, 128, 129, 123}},
      {"NEW_EDIT_TRANSFORMATION", &Box::left, {105, 114, 117, 119}},
      {"NEW_EDIT_TRANSFORMATION", &Box::left, {103, 109, 112, 122}},
      {"NEW_EDIT_TRANSFORMATION", &Box::left, {106, 108, 115}},
      {"NEW_EDIT_TRANSFORMATION", &Box::right, {106, 108, 115, 118}},
      {"NEW_EDIT_TRANSFORMATION", &Box::right, {101, 102, 111, 123, 127}},
      {"NEW_EDIT_TRANSFORMATION", &Box::right, {105, 110, 114}},
      {"NEW_EDIT_TRANSFORMATION", &Box::top, {126, 127, 130}},
      {"ADVANCE_XSLT", &Box::left, {101, 102, 103, 108, 109}},
      {"ADVANCE_XSLT", &Box::left, {106, 104, 116, 110, 112}},
      {"ADVANCE_XSLT", &Box::right, {105, 111, 113}},
      {"ADVANCE_XSLT", &Box::right, {100, 107, 115}},
      {"ADVANCE_XSLT", &Box::top, {114, 115}},
      {"STYLESHEET_PARAMS", &Box::top, {102, 103, 104}},
      {"STYLESHEET_PARAMS", &Box::right, {100, 103}},
      {"STYLESHEET_PARAMS", &Box::left, {100, 104}},
  };
  for (const auto &line : lines) {
    const kit::DialogTemplate dialog = Template(line.dialog);
    const std::vector<Box> boxes = BoxesOf(dialog);
    std::vector<int> edges;
    for (const uint32_t id : line.ids)
      edges.push_back((*std::ranges::find(boxes, id, [](const Box &box) { return box.control->id; })).*line.edge);
    EXPECT_EQ(edges, std::vector<int>(edges.size(), edges.front())) << line.dialog << " from " << line.ids.front();
  }
}

TEST(DialogLayout, AccessKeysAreTakenOnce) {
  for (const DialogReference &each : References()) {
    std::string keys;
    for (const kit::DialogControl &control : Template(each.name).controls)
      if (const size_t mark = control.text.find('&'); mark != std::string::npos)
        keys += static_cast<char>(std::tolower(control.text[mark + 1]));
    std::ranges::sort(keys);
    // Delete and the default file both have D, as their users have known them.
    const std::string twice = each.name == "CHOOSE_MANAGE_XSLT" ? "d" : "";
    std::string repeated;
    for (size_t at = 1; at < keys.size(); ++at)
      if (keys[at] == keys[at - 1])
        repeated += keys[at];
    EXPECT_EQ(repeated, twice) << each.name;
  }
}

} // namespace
