// Shows a run without a workbench: a window with the progress, Cancel and the log, open from the first input on. After
// errors it stays open until the user closes it. The log goes to standard error as well, for the terminal or the editor
// that started the program.
#ifndef HOST_DESKTOP_RUN_WINDOW_H
#define HOST_DESKTOP_RUN_WINDOW_H

#include "host/desktop/desktop_front.h"
#include "host/desktop/run_summary.h"

#include <functional>
#include <string>
#include <vector>

namespace desktop {

class RunWindow;

class RequestView : public RunView {
public:
  // `cancel` cancels the run; `close` is called when the window is closed after it.
  RequestView(std::function<void()> cancel, std::function<void()> close);

  void ShowRun(const std::vector<RunItem> &items) override;
  void ShowProgress(const host::Progress &progress) override;
  void LaunchOutput(const std::string &path) override;

  // The work is done. True when the window stays open.
  [[nodiscard]] bool StayAfterwards();

private:
  std::function<void()> cancelRun;
  std::function<void()> closed;
  RunWindow *window = nullptr; // from the first input on; owned by the toolkit
  std::vector<RunItem> early;  // from before that
  RunSummary summary;
  bool hasErrors = false; // of any run
};

} // namespace desktop

#endif
