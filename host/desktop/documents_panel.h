// The open documents as a tree: below books and maps their components, and beside each how its last run ended.
#ifndef HOST_DESKTOP_DOCUMENTS_PANEL_H
#define HOST_DESKTOP_DOCUMENTS_PANEL_H

#include "host/desktop/workbench_host.h"

#include <wx/simplebook.h>
#include <wx/treelist.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace desktop {

class DocumentsPanel : public wxSimplebook {
public:
  struct Actions {
    std::function<void()> open; // asks which file
    std::function<void(V_ObjectT)> activate;
    std::function<void(V_ObjectT)> close;
    std::function<void(const std::string &path)> openComponent;
    std::function<void(const std::string &path)> edit;
  };
  DocumentsPanel(wxWindow *parent, Actions actions);

  void Show(std::vector<OpenDocument> documents);
  using wxSimplebook::Show;
  // How the run of an input ended or stands; stays until the next text for the same input. Ignored for files that are
  // not open, until they are.
  void ShowStatus(const std::string &path, const std::string &status);
  // The chosen document; nothing on a component or when none is chosen.
  [[nodiscard]] std::optional<V_ObjectT> Chosen() const;
  [[nodiscard]] const OpenDocument *Active() const;

private:
  struct Place {
    std::string path;
    V_ObjectT object = 0; // 0 for a component
  };
  struct PlaceData : wxClientData {
    explicit PlaceData(Place at) : place(std::move(at)) {}
    Place place;
  };

  [[nodiscard]] wxWindow *MakeEmptyPage();
  wxTreeListItem AddItem(wxTreeListItem parent, const wxString &title, const Place &place);
  void AddDocument(const OpenDocument &document, bool isExpanded);
  [[nodiscard]] const Place *PlaceOf(wxTreeListItem item) const;
  void ShowMenu(wxTreeListItem item);

  Actions onAction;
  wxTreeListCtrl *tree;
  std::vector<OpenDocument> shown;
  std::multimap<std::string, wxTreeListItem> items; // by path
  std::map<std::string, std::string> statuses;      // by path
};

} // namespace desktop

#endif
