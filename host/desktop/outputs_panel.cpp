#include "host/desktop/outputs_panel.h"

#include "host/desktop/window_texts.h"
#include "kit/paths.h"

#include <wx/sizer.h>

#include <algorithm>
#include <utility>

namespace desktop {

OutputsPanel::OutputsPanel(wxWindow *parent, Actions actions)
    : wxPanel(parent), onAction(std::move(actions)),
      list(new wxDataViewListCtrl(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxDV_SINGLE | wxDV_ROW_LINES)),
      open(new wxButton(this, wxID_ANY, "O&pen")), show(new wxButton(this, wxID_ANY, "Show in &Folder")) {
  list->SetName("Outputs");
  list->AppendTextColumn("Output", wxDATAVIEW_CELL_INERT, 20 * list->GetCharWidth(), wxALIGN_LEFT,
                         wxDATAVIEW_COL_RESIZABLE);
  list->AppendTextColumn("Folder", wxDATAVIEW_CELL_INERT, 45 * list->GetCharWidth(), wxALIGN_LEFT,
                         wxDATAVIEW_COL_RESIZABLE);
  auto *buttons = new wxBoxSizer(wxVERTICAL);
  buttons->Add(open, wxSizerFlags().Expand());
  buttons->Add(show, wxSizerFlags().Expand().Border(wxTOP));
  auto *sizer = new wxBoxSizer(wxHORIZONTAL);
  sizer->Add(list, wxSizerFlags(1).Expand());
  sizer->Add(buttons, wxSizerFlags().Border(wxALL));
  SetSizer(sizer);
  open->Bind(wxEVT_BUTTON, [this](wxCommandEvent &) { Act(onAction.open); });
  show->Bind(wxEVT_BUTTON, [this](wxCommandEvent &) { Act(onAction.showInFolder); });
  list->Bind(wxEVT_DATAVIEW_ITEM_ACTIVATED, [this](wxDataViewEvent &) { Act(onAction.open); });
  list->Bind(wxEVT_DATAVIEW_SELECTION_CHANGED, [this](wxDataViewEvent &) { UpdateButtons(); });
  UpdateButtons();
}

void OutputsPanel::Add(const std::string &path) {
  if (const auto known = std::ranges::find(paths, path); known != paths.end()) {
    list->DeleteItem(static_cast<unsigned>(known - paths.begin()));
    paths.erase(known);
  }
  wxVector<wxVariant> row;
  row.push_back(ToWx(kit::FileNameOf(path)));
  row.push_back(ShortenPath(kit::FolderOf(path)));
  list->InsertItem(0, row);
  paths.insert(paths.begin(), path);
  list->SelectRow(0);
  list->EnsureVisible(list->RowToItem(0));
  UpdateButtons();
}

void OutputsPanel::Act(const std::function<void(const std::string &)> &action) {
  if (const int row = list->GetSelectedRow(); row != wxNOT_FOUND)
    action(paths[static_cast<size_t>(row)]);
}

void OutputsPanel::UpdateButtons() {
  const bool hasChoice = list->GetSelectedRow() != wxNOT_FOUND;
  open->Enable(hasChoice);
  show->Enable(hasChoice);
}

} // namespace desktop
