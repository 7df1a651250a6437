// The open documents as a tree: below books and maps their components, and beside each how its last run ended.
#ifndef HOST_DESKTOP_DOCUMENTS_PANEL_H
#define HOST_DESKTOP_DOCUMENTS_PANEL_H

#include "host/desktop/workbench_host.h"

#include <wx/simplebook.h>
#include <wx/treelist.h>

#include <functional>
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
  void AddDocument(const OpenDocument &document, bool isExpanded);
  [[nodiscard]] const Place *PlaceOf(wxTreeListItem item) const;
  void ShowMenu(wxTreeListItem item);

  Actions onAction;
  wxTreeListCtrl *tree;
  std::vector<OpenDocument> shown;
};

} // namespace desktop

#endif
