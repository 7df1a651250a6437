#include "host/desktop/icons.h"

#include <wx/settings.h>

#include <string>
#include <string_view>

namespace desktop {

namespace {

// SVG elements in a square of 24.
std::string_view ShapeOf(Icon icon) {
  switch (icon) {
  case Icon::Open:
    return R"(<path d="M3 19V6h6l2 2h8v3M3 19l3-8h16l-3 8z"/>)";
  case Icon::Run:
    return R"(<path d="M7 4l12 8-12 8z" fill="currentColor"/>)";
  case Icon::AdvancedRun:
    return R"(<path d="M4 5l8 7-8 7z" fill="currentColor"/><path d="M15 6h6M15 12h6M15 18h6"/>)";
  case Icon::Choose:
    return R"(<path d="M4 6h9M4 12h6M4 18h6"/><path d="M13 14l3.5 3.5L22 11"/>)";
  case Icon::Manage:
    return R"(<path d="M9 6h12M9 12h12M9 18h12"/><path d="M4 6h1M4 12h1M4 18h1"/>)";
  case Icon::New:
    return R"(<path d="M12 4v16M4 12h16"/>)";
  case Icon::Stop:
    return R"(<path d="M6 6h12v12H6z" fill="currentColor"/>)";
  default:
    return R"(<path d="M5 3h9l5 5v13H5z"/><path d="M9 12l-2 2.5L9 17M15 12l2 2.5-2 2.5"/>)";
  }
}

} // namespace

wxBitmapBundle DrawIcon(Icon icon, int size) {
  const std::string colour =
      wxSystemSettings::GetColour(wxSYS_COLOUR_BTNTEXT).GetAsString(wxC2S_HTML_SYNTAX).utf8_string();
  std::string shape(ShapeOf(icon));
  constexpr std::string_view placeholder = "currentColor";
  for (size_t at = shape.find(placeholder); at != std::string::npos; at = shape.find(placeholder))
    shape.replace(at, placeholder.size(), colour);
  const std::string drawing =
      R"(<svg xmlns="http://www.w3.org/2000/svg" width="24" height="24" viewBox="0 0 24 24">)"
      R"(<g fill="none" stroke-width="1.8" stroke-linejoin="round" stroke-linecap="round" stroke=")" +
      colour + "\">" + shape + "</g></svg>";
  return wxBitmapBundle::FromSVG(drawing.c_str(), wxSize(size, size));
}

} // namespace desktop
