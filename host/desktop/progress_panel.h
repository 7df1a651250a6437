// How far a run has come, and the button that stops it. Hidden while nothing runs.
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
  wxTimer pulse; // moves the bar while there is nothing to measure, and the time that is left
  host::Progress progress;
  bool cancelling = false;
  std::chrono::steady_clock::time_point begun;
};

} // namespace desktop

#endif
