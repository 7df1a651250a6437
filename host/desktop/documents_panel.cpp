#include "host/desktop/documents_panel.h"

#include "host/desktop/accessible_name.h"
#include "host/desktop/empty_page.h"
#include "host/desktop/window_events.h"
#include "host/desktop/window_texts.h"
#include "kit/paths.h"

#include <wx/menu.h>

#include <algorithm>
#include <set>
#include <utility>

namespace desktop {

namespace {

constexpr size_t emptyPage = 0;
constexpr size_t treePage = 1;
constexpr unsigned statusColumn = 1;
constexpr unsigned applicationColumn = 2;
constexpr unsigned folderColumn = 3;

wxString KindOf(const OpenDocument &document) {
  switch (document.summary.source) {
  case host::ComponentSource::Book:
    return " (book)";
  case host::ComponentSource::DitaMap:
    return " (map)";
  default:
    return {};
  }
}

wxString TitleOf(const OpenDocument &document) {
  wxString title = document.summary.isActive ? wxString::FromUTF8("\u25CF ") : wxString::FromUTF8("\u2007 ");
  title += ToWx(document.summary.name) + KindOf(document);
  if (document.summary.isModified)
    title += wxString::FromUTF8(" \u2022 unsaved");
  return document.isMissing ? title + wxString::FromUTF8(" \u2022 file is gone") : title;
}

} // namespace

DocumentsPanel::DocumentsPanel(wxWindow *parent, Actions actions)
    : wxSimplebook(parent), onAction(std::move(actions)),
      tree(new wxTreeListCtrl(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTL_SINGLE)) {
  SetAccessibleName(*tree->GetView(), "Documents");
  const int letter = tree->GetCharWidth();
  tree->AppendColumn("Document", 22 * letter);
  tree->AppendColumn("Status", 10 * letter);
  tree->AppendColumn("Application", 12 * letter);
  tree->AppendColumn("Folder", 20 * letter);
  AddPage(MakeEmptyPage(), {});
  AddPage(tree, {});
  ChangeSelection(emptyPage);
  tree->Bind(wxEVT_TREELIST_ITEM_ACTIVATED, [this](wxTreeListEvent &event) {
    if (const Place *place = PlaceOf(event.GetItem()))
      place->object ? onAction.activate(place->object) : onAction.openComponent(place->path);
  });
  tree->Bind(wxEVT_TREELIST_ITEM_CONTEXT_MENU, [this](wxTreeListEvent &event) { ShowMenu(event.GetItem()); });
}

wxWindow *DocumentsPanel::MakeEmptyPage() {
  return MakeEmpty(this, "No document is open",
                   "Open an XML file, a book or a DITA map,\nor drop files here from the file manager.",
                   {{"&Open a File...", [this] { onAction.open(); }}});
}

void DocumentsPanel::Show(std::vector<OpenDocument> documents) {
  std::set<V_ObjectT> expanded;
  std::set<V_ObjectT> known;
  for (wxTreeListItem item = tree->GetFirstItem(); item.IsOk(); item = tree->GetNextSibling(item))
    if (const Place *place = PlaceOf(item)) {
      known.insert(place->object);
      if (tree->IsExpanded(item))
        expanded.insert(place->object);
    }
  shown = std::move(documents);
  tree->DeleteAllItems();
  items.clear();
  for (const OpenDocument &document : shown)
    AddDocument(document, expanded.contains(document.summary.object) || !known.contains(document.summary.object));
  ChangeSelection(shown.empty() ? emptyPage : treePage);
}

wxTreeListItem DocumentsPanel::AddItem(wxTreeListItem parent, const wxString &title, const Place &place) {
  const wxTreeListItem item = tree->AppendItem(parent, title, -1, -1, new PlaceData(place));
  tree->SetItemText(item, folderColumn, ShortenPath(kit::FolderOf(place.path)));
  items.emplace(place.path, item);
  if (const auto status = statuses.find(place.path); status != statuses.end())
    tree->SetItemText(item, statusColumn, ToWx(status->second));
  return item;
}

void DocumentsPanel::ShowStatus(const std::string &path, const std::string &status) {
  statuses[path] = status;
  for (auto [each, end] = items.equal_range(path); each != end; ++each) {
    tree->SetItemText(each->second, statusColumn, ToWx(status));
    NoteEvent("status", FromWx(tree->GetItemText(each->second, statusColumn)) + " " + path);
  }
}

void DocumentsPanel::AddDocument(const OpenDocument &document, bool isExpanded) {
  const host::DocumentSummary &summary = document.summary;
  const wxTreeListItem item = AddItem(tree->GetRootItem(), TitleOf(document), {summary.path, summary.object});
  tree->SetItemText(item, applicationColumn, ToWx(summary.application));
  for (const std::string &path : document.components) {
    wxString name = ToWx(kit::FileNameOf(path));
    if (!kit::IsFile(path))
      name += wxString::FromUTF8(" \u2022 file is gone");
    AddItem(item, name, {path, 0});
  }
  if (isExpanded)
    tree->Expand(item);
  if (summary.isActive)
    tree->Select(item);
}

const DocumentsPanel::Place *DocumentsPanel::PlaceOf(wxTreeListItem item) const {
  const wxClientData *data = item.IsOk() ? tree->GetItemData(item) : nullptr;
  return data ? &static_cast<const PlaceData *>(data)->place : nullptr;
}

std::optional<V_ObjectT> DocumentsPanel::Chosen() const {
  const Place *place = PlaceOf(tree->GetSelection());
  return place && place->object ? std::optional(place->object) : std::nullopt;
}

const OpenDocument *DocumentsPanel::Active() const {
  const auto active = std::ranges::find_if(shown, [](const OpenDocument &each) { return each.summary.isActive; });
  return active == shown.end() ? nullptr : &*active;
}

void DocumentsPanel::ShowMenu(wxTreeListItem item) {
  const Place *found = PlaceOf(item);
  if (!found)
    return;
  const Place place = *found;
  wxMenu menu;
  const auto add = [&menu](const wxString &label, std::function<void()> action) {
    menu.Bind(
        wxEVT_MENU, [action = std::move(action)](wxCommandEvent &) { action(); },
        menu.Append(wxID_ANY, label)->GetId());
  };
  if (place.object)
    add("&Make Active", [&] { onAction.activate(place.object); });
  else
    add("&Open", [&] { onAction.openComponent(place.path); });
  add("&Edit", [&] { onAction.edit(place.path); });
  if (place.object)
    add("&Close", [&] { onAction.close(place.object); });
  PopupMenu(&menu);
}

} // namespace desktop
