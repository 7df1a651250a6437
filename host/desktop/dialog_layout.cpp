#include "host/desktop/dialog_layout.h"

#include <wx/window.h>

#include <algorithm>
#include <cmath>

namespace desktop {

namespace {

using host::DialogItem;
using host::ItemKind;

constexpr int16_t boxHeight = 14; // of text boxes, pop-ups and buttons in a template

bool IsBoxed(const DialogItem &item) {
  return item.HasText() || item.kind == ItemKind::PopUp || (item.kind == ItemKind::Button && !item.isGroupBox);
}

bool HasLabel(const DialogItem &item) {
  return item.IsSwitch() || item.kind == ItemKind::Label || (item.kind == ItemKind::Button && !item.isGroupBox);
}

int Scale(double unit, int length) { return static_cast<int>(std::lround(unit * length)); }

} // namespace

wxSize DialogUnits::Size(const kit::DialogRectangle &place) const {
  return {Scale(x, place.width), Scale(y, place.height)};
}

wxRect DialogUnits::Rectangle(const kit::DialogRectangle &place) const {
  // Scales edges, not lengths, so that controls that are aligned in the template stay aligned.
  const wxPoint begin(Scale(x, place.x), Scale(y, place.y));
  const wxPoint end(Scale(x, place.x + place.width), Scale(y, place.y + place.height));
  return {begin, wxSize(end.x - begin.x, end.y - begin.y)};
}

DialogUnits MeasureUnits(const wxWindow &window, const DialogSnapshot &snapshot,
                         const std::map<int32_t, wxWindow *> &controls) {
  const wxString letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  const wxSize extent = window.GetTextExtent(letters);
  DialogUnits units{extent.GetWidth() / static_cast<double>(letters.size()) / 4, extent.GetHeight() / 8.0};
  for (const DialogItem &item : snapshot.items) {
    const auto control = controls.find(item.number);
    if (control == controls.end() || !item.control || item.control->place.width == 0)
      continue;
    const wxSize best = control->second->GetBestSize();
    if (IsBoxed(item))
      units.y = std::max(units.y, best.GetHeight() / static_cast<double>(boxHeight));
    if (HasLabel(item))
      units.x = std::max(units.x, best.GetWidth() / static_cast<double>(item.control->place.width));
  }
  return units;
}

wxRect PlaceItem(const DialogUnits &units, const DialogItem &item, const wxWindow &control) {
  wxRect place = units.Rectangle(item.control->place);
  const int best = control.GetBestSize().GetHeight();
  // The template gives the height of the opened list.
  if (item.kind == ItemKind::PopUp)
    place.height = Scale(units.y, boxHeight);
  if ((IsBoxed(item) || HasLabel(item)) && place.height != best && !(IsBoxed(item) && place.height > best)) {
    place.y += (place.height - best) / 2;
    place.height = best;
  }
  return place;
}

} // namespace desktop
