#include "host/desktop/outputs_panel.h"

#include "host/desktop/accessible_name.h"
#include "host/desktop/window_events.h"
#include "host/desktop/window_texts.h"
#include "kit/paths.h"
#include "kit/vdk.h"

#include <wx/sizer.h>
#include <wx/wrapsizer.h>

#include <algorithm>
#include <array>

namespace desktop {

namespace {

// The access keys differ from those of the menus, and of the other buttons of the window.
struct Button {
  const char *label;
  const char *help;
  OutputsPanel::Action OutputsPanel::Actions::*action;
};
constexpr std::array buttonRules = {
    Button{"&View", "Show the text of the file here", &OutputsPanel::Actions::view},
    Button{"Open in &Browser", "Show the file in the default browser", &OutputsPanel::Actions::openInBrowser},
    Button{"&Save As...", "Save a copy of the file", &OutputsPanel::Actions::saveAs},
    Button{"O&pen", "Open the file with the program for its type", &OutputsPanel::Actions::open},
    Button{"Show in Fol&der", "Open the folder of the file", &OutputsPanel::Actions::showInFolder},
};

struct Column {
  const char *title;
  int letters;
};
constexpr std::array columns = {Column{"Output", 22}, Column{"Kind", 12}, Column{"Folder", 36}};

const char *DescribeKind(int32_t kind) {
  switch (kind) {
  case V_OUTPUT_SECONDARY:
    return "secondary";
  case V_OUTPUT_OPENED:
    return "opened";
  case V_OUTPUT_LAUNCHED:
    return "launched";
  default:
    return "result";
  }
}

} // namespace

OutputsPanel::OutputsPanel(wxWindow *parent, const Actions &actions)
    : wxPanel(parent), viewSelected(actions.view),
      list(new wxDataViewListCtrl(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxDV_SINGLE | wxDV_ROW_LINES)) {
  SetAccessibleName(*list, "Outputs");
  for (const Column &column : columns)
    list->AppendTextColumn(column.title, wxDATAVIEW_CELL_INERT, column.letters * list->GetCharWidth(), wxALIGN_LEFT,
                           wxDATAVIEW_COL_RESIZABLE);
  auto *row = new wxWrapSizer(wxHORIZONTAL);
  for (const Button &rule : buttonRules) {
    auto *button = new wxButton(this, wxID_ANY, rule.label);
    button->SetToolTip(rule.help);
    button->Bind(wxEVT_BUTTON, [this, action = actions.*rule.action](wxCommandEvent &) { Act(action); });
    row->Add(button, wxSizerFlags().Border(wxALL, FromDIP(3)));
    buttons.push_back(button);
  }
  auto *sizer = new wxBoxSizer(wxVERTICAL);
  sizer->Add(list, wxSizerFlags(1).Expand());
  sizer->Add(row, wxSizerFlags().Expand());
  SetSizer(sizer);
  list->Bind(wxEVT_DATAVIEW_ITEM_ACTIVATED, [this](wxDataViewEvent &) { Act(viewSelected); });
  list->Bind(wxEVT_DATAVIEW_SELECTION_CHANGED, [this](wxDataViewEvent &) { UpdateButtons(); });
  UpdateButtons();
}

void OutputsPanel::Add(const std::string &path, int32_t kind) {
  if (const auto known = std::ranges::find(paths, path); known != paths.end()) {
    list->DeleteItem(static_cast<unsigned>(known - paths.begin()));
    paths.erase(known);
  }
  wxVector<wxVariant> row;
  row.push_back(ToWx(kit::FileNameOf(path)));
  row.push_back(wxString(DescribeKind(kind)));
  row.push_back(ShortenPath(kit::FolderOf(path)));
  list->InsertItem(0, row);
  paths.insert(paths.begin(), path);
  Select(path);
  NoteEvent("output", std::string(DescribeKind(kind)) + " " + path);
}

void OutputsPanel::Select(const std::string &path) {
  const auto found = std::ranges::find(paths, path);
  if (found == paths.end())
    return;
  const auto row = static_cast<unsigned>(found - paths.begin());
  list->SelectRow(row);
  list->EnsureVisible(list->RowToItem(static_cast<int>(row)));
  UpdateButtons();
}

void OutputsPanel::Act(const Action &action) {
  if (const int row = list->GetSelectedRow(); row != wxNOT_FOUND)
    action(paths[static_cast<size_t>(row)]);
}

void OutputsPanel::UpdateButtons() {
  for (wxButton *button : buttons)
    button->Enable(list->GetSelectedRow() != wxNOT_FOUND);
}

} // namespace desktop
