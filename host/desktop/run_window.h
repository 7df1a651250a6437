// What is seen of a run that no workbench stands behind: a window with the progress, its Cancel and the log, there from
// the first input on. It stays when something went wrong, until it is closed. The log goes to standard error as well,
// since most such programs are started from a terminal or by an editor that shows it.
#ifndef HOST_DESKTOP_RUN_WINDOW_H
#define HOST_DESKTOP_RUN_WINDOW_H

#include "host/desktop/desktop_front.h"

#include <functional>
#include <string>
#include <vector>

namespace desktop {

class RunWindow;

class RequestView : public RunView {
public:
  // `cancel` asks for the end of the run; `close` is called when the window is closed after it.
  RequestView(std::function<void()> cancel, std::function<void()> close);

  void ShowConsole(const std::vector<std::string> &lines) override;
  void ShowProgress(const host::Progress &progress) override;
  void LaunchOutput(const std::string &path) override;

  // The work is done. True when there is something left for a person to read.
  [[nodiscard]] bool StayAfterwards();

private:
  std::function<void()> cancelRun;
  std::function<void()> closed;
  RunWindow *window = nullptr;    // the toolkit's, from the first input on
  std::vector<std::string> early; // the lines before that
  bool hasErrors = false;
};

} // namespace desktop

#endif
