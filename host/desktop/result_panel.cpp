#include "host/desktop/result_panel.h"

#include "host/desktop/accessible_name.h"
#include "host/desktop/result_text.h"
#include "host/desktop/window_events.h"
#include "host/desktop/window_texts.h"

#include <wx/convauto.h>
#include <wx/sizer.h>

namespace desktop {

namespace {

constexpr long textStyle = wxTE_MULTILINE | wxTE_READONLY | wxTE_RICH2 | wxTE_DONTWRAP | wxTE_NOHIDESEL | wxBORDER_NONE;

} // namespace

ResultPanel::ResultPanel(wxWindow *parent)
    : wxPanel(parent), heading(new wxStaticText(this, wxID_ANY, "Choose a result in the list below.", wxDefaultPosition,
                                                wxDefaultSize, wxST_NO_AUTORESIZE | wxST_ELLIPSIZE_START)),
      note(new wxStaticText(this, wxID_ANY, {})),
      text(new wxTextCtrl(this, wxID_ANY, {}, wxDefaultPosition, wxDefaultSize, textStyle)) {
  SetAccessibleName(*text, "Result");
  text->SetFont(wxFontInfo(text->GetFont().GetPointSize()).Family(wxFONTFAMILY_TELETYPE));
  auto *sizer = new wxBoxSizer(wxVERTICAL);
  sizer->Add(heading, wxSizerFlags().Expand().Border());
  sizer->Add(note, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM));
  sizer->Add(text, wxSizerFlags(1).Expand().Border(wxLEFT));
  SetSizer(sizer);
  note->Hide();
}

void ResultPanel::ShowFile(const std::string &path) {
  const ResultText result = ReadResultText(path);
  // By its byte order mark, else UTF-8, else Latin-1.
  const wxString content(result.text.data(), wxConvAuto(wxFONTENCODING_ISO8859_1), result.text.size());
  const bool isText = result.error.empty() && content.find(wxUniChar(0)) == wxString::npos;
  const std::string remark = !result.error.empty() ? result.error : isText ? result.note : "This is not a text.";
  heading->SetLabel(ShortenPath(path));
  heading->SetToolTip(ToWx(path));
  note->SetLabel(ToWx(remark));
  note->Show(!remark.empty());
  Layout();
  text->ChangeValue(isText ? content : wxString());
  text->SetInsertionPoint(0);
  text->ShowPosition(0);
  NoteEvent("result", path + (remark.empty() ? "" : " " + remark));
  NoteEvent("result text", FromWx(text->GetLineText(0)));
}

} // namespace desktop
