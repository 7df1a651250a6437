// The client's dialog resources: bytes that other programs rely on, damage that must not hurt, and layouts that a
// person has to read.
#include "kit/dialog_resource.h"
#include "report/messages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using Bytes = kit::Resources::Bytes;
constexpr int isOn = 0x10000;

struct DialogReference {
  std::string_view name;
  std::string_view title;
  struct {
    int width, height, cancel, byDefault, focus, mark;
  } numbers;
  std::string_view rowText;
  std::vector<int> kinds; // of the items from 100 on; or-ed with isOn
  std::string_view texts; // of the controls that have one, by their ids
};

const std::vector<DialogReference> &References() {
  static const std::vector<DialogReference> references = {
      {"CHOOSE_MANAGE_XSLT",
       "Transformations",
       {218, 264, 9, 8, 4, 0xFFFF},
       "",
       {4, 10 | isOn, 10, 6, 1008, 2, 2, 2, 2, 2, 4, 10, 1009, 2},
       "Transformations:|&Default Transformation File|Structured Applications|&Edit...|&New...|&Delete|&OK|&Close|"
       "Display Transformations From:|Transformation File:|&Browse...|"},
      {"NEW_EDIT_TRANSFORMATION",
       "New Transformation",
       {296, 380, 27, 26, 1, 0xFFFF},
       "",
       {4,  9 | isOn,  2 | isOn, 4,  10 | isOn, 1009, 2, 10,   2, 4, 6, 2 | isOn, 4,  10 | isOn, 1009, 2,
        10, 10 | isOn, 9,        10, 10,        10,   5, 1009, 4, 2, 2, 2,        10, 10,        2},
       "Name:|Input|Use:|&XSL|Browse...|&Processing Instruction From The Source XML File|Parameters...|Processor:|"
       "Output|Save Files:|&In Folder:|Browse...|In the Source XML &Folder:|Add &Suffix To Output File:|"
       "Over&write Source File|&Ask Before Saving|&Do Not Save|&Open Output File:|Save In File:|Browse...|Save|Close|"
       "In &Vellis|In Defaul&t Program|Save As...|"},
      {"ADVANCE_XSLT",
       "Advanced Run",
       {279, 210, 15, 14, 1, 0xFFFF},
       "",
       {2 | isOn, 10 | isOn, 10, 10, 1009, 2, 5, 2 | isOn, 10 | isOn, 10, 9, 2, 1009, 2, 2, 2, 5},
       "Scope|Current &File|&All Open Files|F&older|Browse...|Include Children|Choose|&Transformation|&XSL|Browse...|"
       "Browse...|&Run|&Cancel|Include Sub-Folders|"},
      {"STYLESHEET_PARAMS",
       "Stylesheet Parameters",
       {288, 178, 3, 2, 0, 0},
       "-1",
       {1, 17, 2, 2, 2},
       "&OK|&Close|&Delete|"},
  };
  return references;
}

void Append(std::string &bytes, int word) {
  bytes += static_cast<char>(word & 0xFF);
  bytes += static_cast<char>(word >> 8);
}

std::string TableBytes(const DialogReference &reference) {
  std::string bytes;
  for (const int word : {0xFFFF, reference.numbers.cancel, reference.numbers.byDefault,
                         static_cast<int>(reference.kinds.size()), reference.numbers.focus})
    Append(bytes, word);
  bytes.append(12, '\xFF').append("AH_").append(reference.name).append(3, '\0');
  for (int id = kit::firstItemId; const int kind : reference.kinds) {
    for (const int word : {id++, kind & ~isOn, kind & isOn ? 1 : 0, reference.numbers.mark})
      Append(bytes, word);
    bytes.append(reference.rowText).append(1, '\0');
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
  for (uint16_t id = 18000; id < 19000; ++id)
    texts.append(resources.Text(id)).append("\n");
  return texts;
}

TEST(DialogResources, ItemTablesAreTheseBytes) {
  for (const DialogReference &each : References())
    EXPECT_EQ(ToText(report::ClientResources().ItemTable("AH_" + std::string(each.name))), TableBytes(each))
        << each.name;
  // Written out once, so that an error in the function above would show, too.
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
    EXPECT_EQ(dialog.place.width, each.numbers.width) << each.name;
    EXPECT_EQ(dialog.place.height, each.numbers.height) << each.name;
    EXPECT_EQ(dialog.fontName, "Microsoft Sans Serif");
    EXPECT_EQ(dialog.fontSize, 8);
    std::map<uint32_t, std::string> texts; // by id
    for (const kit::DialogControl &control : dialog.controls)
      texts[control.id] = control.text;
    uint32_t id = kit::firstItemId;
    std::string allTexts;
    for (const int kind : each.kinds) {
      EXPECT_EQ(texts.contains(id), kind != 17) << "the grid is made at run time: " << id;
      allTexts += texts[id].empty() ? "" : texts[id] + "|";
      ++id;
    }
    EXPECT_EQ(allTexts, each.texts);
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
      EXPECT_LE(box.right, each.numbers.width - 7) << each.name << box.control->id;
      EXPECT_LE(box.bottom, each.numbers.height - 7) << each.name << box.control->id;
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

// Edges that are almost in line are a slip; only a label stands a little lower than what it names.
TEST(DialogLayout, ControlsLineUp) {
  const auto almost = [](int one, int other) { return one != other && std::abs(one - other) <= 3; };
  for (const DialogReference &each : References()) {
    const kit::DialogTemplate dialog = Template(each.name);
    for (const Box &one : BoxesOf(dialog))
      for (const Box &other : BoxesOf(dialog))
        EXPECT_FALSE(almost(one.left, other.left) || almost(one.right, other.right) ||
                     (one.control->controlClass == other.control->controlClass && almost(one.top, other.top)))
            << each.name << one.control->id << " and " << other.control->id;
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
