#include "host/desktop/log_panel.h"

#include "host/desktop/window_texts.h"

#include <wx/settings.h>
#include <wx/sizer.h>

#include <utility>

namespace desktop {

namespace {

constexpr size_t emptyPage = 0;
constexpr size_t textPage = 1;

// Readable on light and on dark.
wxColour ColourOf(host::LogKind kind) {
  const bool isDark = wxSystemSettings::GetAppearance().IsUsingDarkBackground();
  switch (kind) {
  case host::LogKind::Error:
    return isDark ? wxColour(255, 128, 120) : wxColour(176, 0, 16);
  case host::LogKind::Warning:
    return isDark ? wxColour(245, 190, 90) : wxColour(140, 84, 0);
  case host::LogKind::Success:
    return isDark ? wxColour(120, 210, 130) : wxColour(10, 110, 40);
  default:
    return wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOWTEXT);
  }
}

wxTextAttr AttributesOf(host::LogKind kind) {
  wxTextAttr attributes(ColourOf(kind));
  attributes.SetFontUnderlined(false);
  attributes.SetFontWeight(kind == host::LogKind::Heading ? wxFONTWEIGHT_BOLD : wxFONTWEIGHT_NORMAL);
  return attributes;
}

} // namespace

LogPanel::LogPanel(wxWindow *parent, std::function<void(const host::LogPlace &)> follow)
    : wxSimplebook(parent), followPlace(std::move(follow)), sheet(new wxPanel(this)),
      text(new wxTextCtrl(sheet, wxID_ANY, {}, wxDefaultPosition, wxDefaultSize,
                          wxTE_MULTILINE | wxTE_READONLY | wxTE_RICH2 | wxTE_NOHIDESEL | wxBORDER_NONE)) {
  text->SetName("Log");
  // Boxes of many lines have no margins of their own everywhere.
  sheet->SetBackgroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW));
  auto *sizer = new wxBoxSizer(wxVERTICAL);
  sizer->Add(text, wxSizerFlags(1).Expand().Border(wxLEFT, FromDIP(8)));
  sheet->SetSizer(sizer);
  text->Bind(wxEVT_LEFT_UP, [this](wxMouseEvent &event) {
    FollowAt(event.GetPosition());
    event.Skip();
  });
  text->Bind(wxEVT_MOTION, [this](wxMouseEvent &event) {
    PointAt(event.GetPosition());
    event.Skip();
  });
}

void LogPanel::SetEmptyPage(wxWindow *page) {
  AddPage(page, {});
  AddPage(sheet, {});
  ChangeSelection(emptyPage);
}

void LogPanel::Append(const std::vector<std::string> &lines) {
  ChangeSelection(textPage);
  text->Freeze();
  for (const std::string &line : lines)
    AppendLine(line);
  text->Thaw();
  text->ShowPosition(text->GetLastPosition());
}

void LogPanel::Clear() {
  text->Clear();
  links.clear();
  lastFollowed = -1;
  ChangeSelection(emptyPage);
}

void LogPanel::AppendLine(const std::string &line) {
  const host::LogKind kind = host::ClassifyLogLine(line);
  const std::optional<host::LogPlace> place = host::FindLogPlace(line);
  text->SetDefaultStyle(AttributesOf(kind));
  if (place) {
    wxTextAttr attributes = AttributesOf(kind);
    attributes.SetFontUnderlined(true);
    text->AppendText(ToWx(line.substr(0, place->begin)));
    const long begin = text->GetLastPosition();
    text->SetDefaultStyle(attributes);
    text->AppendText(ToWx(line.substr(place->begin, place->end - place->begin)));
    links[begin] = {text->GetLastPosition(), *place};
    text->SetDefaultStyle(AttributesOf(kind));
    text->AppendText(ToWx(line.substr(place->end)) + "\n");
  } else {
    text->AppendText(ToWx(line) + "\n");
  }
}

const host::LogPlace *LogPanel::PlaceAt(const wxPoint &point) const {
  long position = 0;
  if (text->HitTest(point, &position) != wxTE_HT_ON_TEXT)
    return nullptr;
  auto link = links.upper_bound(position);
  if (link == links.begin())
    return nullptr;
  --link;
  return position < link->second.end ? &link->second.place : nullptr;
}

bool LogPanel::FollowNext() {
  if (links.empty())
    return false;
  auto next = links.upper_bound(lastFollowed);
  if (next == links.end())
    next = links.begin();
  lastFollowed = next->first;
  text->SetSelection(next->first, next->second.end);
  text->ShowPosition(next->first);
  followPlace(next->second.place);
  return true;
}

// A click that ends a selection is meant for the selection.
void LogPanel::FollowAt(const wxPoint &point) {
  long from = 0;
  long to = 0;
  text->GetSelection(&from, &to);
  if (const host::LogPlace *place = from == to ? PlaceAt(point) : nullptr)
    followPlace(*place);
}

void LogPanel::PointAt(const wxPoint &point) {
  text->SetCursor(PlaceAt(point) ? wxCursor(wxCURSOR_HAND) : wxCursor(wxCURSOR_IBEAM));
}

} // namespace desktop
