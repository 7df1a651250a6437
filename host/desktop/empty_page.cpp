#include "host/desktop/empty_page.h"

#include <wx/button.h>
#include <wx/panel.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

namespace desktop {

wxWindow *MakeEmpty(wxWindow *parent, const wxString &title, const wxString &advice,
                    const std::vector<EmptyPageButton> &buttons) {
  auto *page = new wxPanel(parent);
  auto *heading = new wxStaticText(page, wxID_ANY, title);
  heading->SetFont(heading->GetFont().Bold().Scaled(1.15F));
  auto *text = new wxStaticText(page, wxID_ANY, advice, wxDefaultPosition, wxDefaultSize, wxALIGN_CENTRE_HORIZONTAL);
  auto *sizer = new wxBoxSizer(wxVERTICAL);
  sizer->AddStretchSpacer();
  sizer->Add(heading, wxSizerFlags().CentreHorizontal());
  sizer->Add(text, wxSizerFlags().CentreHorizontal().DoubleBorder(wxALL));
  for (const EmptyPageButton &each : buttons) {
    auto *button = new wxButton(page, wxID_ANY, each.label);
    button->Bind(wxEVT_BUTTON, [press = each.press](wxCommandEvent &) { press(); });
    sizer->Add(button, wxSizerFlags().CentreHorizontal().Border(wxTOP));
  }
  sizer->AddStretchSpacer();
  page->SetSizer(sizer);
  return page;
}

} // namespace desktop
