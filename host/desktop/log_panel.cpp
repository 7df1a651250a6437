#include "host/desktop/log_panel.h"

#include "host/desktop/accessible_name.h"
#include "host/desktop/window_events.h"
#include "host/desktop/window_texts.h"

#include <wx/settings.h>
#include <wx/sizer.h>

#include <algorithm>
#include <utility>

namespace desktop {

namespace {

constexpr size_t emptyPage = 0;
constexpr size_t textPage = 1;

const char *NameOf(LineStyle style) {
  switch (style) {
  case LineStyle::Heading:
    return "heading";
  case LineStyle::Success:
    return "success";
  case LineStyle::Warning:
    return "warning";
  case LineStyle::Error:
    return "error";
  default:
    return "plain";
  }
}

// Legible on light and on dark backgrounds.
wxColour ColourOf(LineStyle style) {
  const bool isDark = wxSystemSettings::GetAppearance().IsUsingDarkBackground();
  switch (style) {
  case LineStyle::Error:
    return isDark ? wxColour(255, 128, 120) : wxColour(176, 0, 16);
  case LineStyle::Warning:
    return isDark ? wxColour(245, 190, 90) : wxColour(140, 84, 0);
  case LineStyle::Success:
    return isDark ? wxColour(120, 210, 130) : wxColour(10, 110, 40);
  default:
    return wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOWTEXT);
  }
}

// With the whole font: the toolkit replaces parts that are not set with its own defaults.
wxTextAttr AttributesOf(LineStyle style, wxFont font, bool isLink = false) {
  if (style == LineStyle::Heading)
    font.MakeBold();
  if (isLink)
    font.MakeUnderlined();
  return {ColourOf(style), wxNullColour, font};
}

} // namespace

LogPanel::LogPanel(wxWindow *parent, std::function<void(const host::FilePlace &)> follow)
    : wxSimplebook(parent), followPlace(std::move(follow)), sheet(new wxPanel(this)),
      text(new wxTextCtrl(sheet, wxID_ANY, {}, wxDefaultPosition, wxDefaultSize,
                          wxTE_MULTILINE | wxTE_READONLY | wxTE_RICH2 | wxTE_NOHIDESEL | wxBORDER_NONE)) {
  SetAccessibleName(*text, "Log");
  // Text controls of several lines have no margins on some platforms.
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

void LogPanel::Append(const std::vector<RunItem> &items) {
  text->Freeze();
  for (const RunItem &item : items)
    if (const auto *line = std::get_if<std::string>(&item))
      AppendLine(*line);
    else
      lines.TakeEvent(std::get<host::RunEvent>(item));
  text->Thaw();
  if (text->IsEmpty())
    return;
  ChangeSelection(textPage);
  text->ShowPosition(text->GetLastPosition());
}

void LogPanel::Clear() {
  text->Clear();
  links.clear();
  lines.Clear();
  lastFollowed.reset();
  ChangeSelection(emptyPage);
}

void LogPanel::AppendLine(const std::string &line) {
  const LogLine shown = lines.TakeLine(line);
  const wxFont font = text->GetFont();
  text->SetDefaultStyle(AttributesOf(shown.style, font));
  text->AppendText(ToWx(line.substr(0, shown.linkBegin)));
  const bool isLink = shown.problem && shown.linkBegin < shown.linkEnd;
  if (isLink) {
    const long begin = text->GetLastPosition();
    text->SetDefaultStyle(AttributesOf(shown.style, font, true));
    text->AppendText(ToWx(line.substr(shown.linkBegin, shown.linkEnd - shown.linkBegin)));
    links[begin] = {text->GetLastPosition(), *shown.problem};
    text->SetDefaultStyle(AttributesOf(shown.style, font));
  }
  text->AppendText(ToWx(line.substr(shown.linkEnd)) + "\n");
  NoteEvent(std::string("log ") + NameOf(shown.style) + (isLink ? " link" : ""), line);
}

const host::FilePlace *LogPanel::PlaceAt(const wxPoint &point) const {
  long position = 0;
  if (text->HitTest(point, &position) != wxTE_HT_ON_TEXT)
    return nullptr;
  auto link = links.upper_bound(position);
  if (link == links.begin())
    return nullptr;
  --link;
  return position < link->second.end ? &lines.Problems()[link->second.problem] : nullptr;
}

bool LogPanel::FollowNext() {
  const size_t count = lines.Problems().size();
  if (count == 0)
    return false;
  const size_t next = lastFollowed ? (*lastFollowed + 1) % count : 0;
  lastFollowed = next;
  const auto link = std::ranges::find(links, next, [](const auto &each) { return each.second.problem; });
  if (link != links.end()) {
    text->SetSelection(link->first, link->second.end);
    text->ShowPosition(link->first);
  }
  followPlace(lines.Problems()[next]);
  return true;
}

// A click at the end of a selection selects only.
void LogPanel::FollowAt(const wxPoint &point) {
  long from = 0;
  long to = 0;
  text->GetSelection(&from, &to);
  if (const host::FilePlace *place = from == to ? PlaceAt(point) : nullptr)
    followPlace(*place);
}

void LogPanel::PointAt(const wxPoint &point) {
  text->SetCursor(PlaceAt(point) ? wxCursor(wxCURSOR_HAND) : wxCursor(wxCURSOR_IBEAM));
}

} // namespace desktop
