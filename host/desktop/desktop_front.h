// The front of the windows. Called on the host's thread; shows what it is told among the windows and waits there for
// answers. Console lines are gathered, so that a chatty stylesheet cannot drown the windows. When the windows go away
// the lines go to standard error, and every question is declined.
#ifndef HOST_DESKTOP_DESKTOP_FRONT_H
#define HOST_DESKTOP_DESKTOP_FRONT_H

#include "host/desktop/ui_thread.h"
#include "host/fronts/front.h"

#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace desktop {

// What is seen of a run. Belongs to the windows' thread.
class RunView {
public:
  virtual ~RunView() = default;
  virtual void ShowConsole(const std::vector<std::string> &lines) = 0;
  virtual void ShowProgress(const host::Progress &progress) = 0;
  virtual void LaunchOutput(const std::string &path) = 0;
};

// On standard error, for whoever called the program.
void PrintLines(const std::vector<std::string> &lines);

class DesktopFront final : public host::Front {
public:
  // The view must outlive every request that is served with this front.
  explicit DesktopFront(RunView &shownBy) : view(shownBy) {}

  [[nodiscard]] host::Answer Alert(host::AlertKind kind, const std::string &text) override;
  [[nodiscard]] std::optional<std::string> ChooseFile(const host::FileChooser &chooser) override;
  void RunDialog(host::DialogModel &dialog) override;
  void PlayDialog(host::DialogModel &dialog, const std::function<void(host::DialogDriver &driver)> &player) override;
  void WriteConsole(std::string_view text) override;
  void ReportProgress(const host::Progress &progress) override;
  void LaunchOutput(const std::string &path) override;
  [[nodiscard]] bool IsCancelled() override { return cancelled; }

  // From any thread.
  void Cancel() { cancelled = true; }
  void ForgetCancel() { cancelled = false; }
  // Whether a dialog was shown to a person, and not only played by a script.
  [[nodiscard]] bool HasServedPerson() const { return hasServedPerson; }
  // Hands the lines that are still waiting to the view; on the windows' thread.
  void FlushConsole();

private:
  std::vector<std::string> TakeLines();

  WindowsPoster windows;
  RunView &view;
  std::atomic<bool> cancelled = false;
  std::atomic<bool> hasServedPerson = false;
  std::vector<std::string> waiting; // console lines that the view has not seen
};

} // namespace desktop

#endif
