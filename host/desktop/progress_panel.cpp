#include "host/desktop/progress_panel.h"

#include "host/desktop/window_texts.h"
#include "host/fronts/time_left.h"
#include "kit/paths.h"

#include <wx/sizer.h>

#include <utility>

namespace desktop {

ProgressPanel::ProgressPanel(wxWindow *parent, std::function<void()> onCancel)
    : wxPanel(parent), cancelRun(std::move(onCancel)),
      text(new wxStaticText(this, wxID_ANY, {}, wxDefaultPosition, wxDefaultSize,
                            wxST_NO_AUTORESIZE | wxST_ELLIPSIZE_MIDDLE)),
      gauge(new wxGauge(this, wxID_ANY, 1)), cancel(new wxButton(this, wxID_CANCEL, "&Cancel Run")), pulse(this) {
  auto *sizer = new wxBoxSizer(wxHORIZONTAL);
  sizer->Add(text, wxSizerFlags(1).Centre().Border(wxLEFT | wxRIGHT));
  sizer->Add(gauge, wxSizerFlags(1).Centre());
  sizer->Add(cancel, wxSizerFlags().Centre().Border());
  SetSizer(sizer);
  cancel->Bind(wxEVT_BUTTON, [this](wxCommandEvent &) { cancelRun(); });
  Bind(wxEVT_TIMER, [this](wxTimerEvent &) { Describe(); });
  Hide();
}

void ProgressPanel::Begin() {
  progress = {};
  cancelling = false;
  begun = std::chrono::steady_clock::now();
  cancel->Enable();
  pulse.Start(200);
  Describe();
  wxPanel::Show();
  GetParent()->Layout();
}

void ProgressPanel::Show(const host::Progress &next) {
  if (next.index == 0)
    begun = std::chrono::steady_clock::now();
  progress = next;
  Describe();
}

void ProgressPanel::ShowCancelling() {
  cancelling = true;
  cancel->Disable();
  Describe();
}

void ProgressPanel::End() {
  pulse.Stop();
  Hide();
  GetParent()->Layout();
}

void ProgressPanel::Describe() {
  wxString what = progress.count == 0 ? wxString("Working")
                                      : wxString::Format("%d of %d: ", progress.index + 1, progress.count) +
                                            ToWx(kit::FileNameOf(progress.path));
  const std::string left =
      host::DescribeTimeLeft(std::chrono::steady_clock::now() - begun, progress.index, progress.count - progress.index);
  if (cancelling)
    what += " (stopping when this one is done)";
  else if (!left.empty())
    what += ", " + left;
  text->SetLabel(what);
  // The progress within one input is unknown.
  if (progress.count < 2) {
    gauge->Pulse();
    return;
  }
  if (gauge->GetRange() != progress.count)
    gauge->SetRange(progress.count);
  gauge->SetValue(progress.index);
}

} // namespace desktop
