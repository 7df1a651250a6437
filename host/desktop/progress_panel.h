// The progress of a run and the button that cancels it. Hidden while nothing runs.
#ifndef HOST_DESKTOP_PROGRESS_PANEL_H
#define HOST_DESKTOP_PROGRESS_PANEL_H

#include "host/fronts/front.h"

#include <wx/button.h>
#include <wx/gauge.h>
#include <wx/panel.h>
#include <wx/stattext.h>
#include <wx/timer.h>

#include <chrono>
#include <functional>

namespace desktop {

class ProgressPanel : public wxPanel {
public:
  ProgressPanel(wxWindow *parent, std::function<void()> cancel);

  void Begin();
  void Show(const host::Progress &next);
  void ShowCancelling();
  void End();

private:
  void Describe();

  std::function<void()> cancelRun;
  wxStaticText *text;
  wxGauge *gauge;
  wxButton *cancel;
  wxTimer pulse; // updates the time left, and moves the bar of a run with one input
  host::Progress progress;
  bool cancelling = false;
  std::chrono::steady_clock::time_point begun;
};

} // namespace desktop

#endif
