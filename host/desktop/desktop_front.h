// The front of the windows. Called on the host's thread; shows everything on the windows' thread and waits there for
// answers. Run events and console lines are queued in their order and shown in batches, so that a stylesheet with many
// messages does not block the windows. When the windows are gone the lines go to standard error, and every question is
// declined.
#ifndef HOST_DESKTOP_DESKTOP_FRONT_H
#define HOST_DESKTOP_DESKTOP_FRONT_H

#include "host/desktop/ui_thread.h"
#include "host/fronts/front.h"

#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace desktop {

// A console line, or an event of a run.
using RunItem = std::variant<std::string, host::RunEvent>;

// Shows a run. Belongs to the windows' thread.
class RunView {
public:
  virtual ~RunView() = default;
  virtual void ShowRun(const std::vector<RunItem> &items) = 0;
  virtual void ShowProgress(const host::Progress &progress) = 0;
  virtual void LaunchOutput(const std::string &path) = 0;
};

// The console lines, on standard error.
void PrintLines(const std::vector<RunItem> &items);

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
  void ReportRunEvent(const host::RunEvent &event) override;
  void LaunchOutput(const std::string &path) override;
  [[nodiscard]] bool IsCancelled() override { return cancelled; }

  // From any thread.
  void Cancel() { cancelled = true; }
  void ForgetCancel() { cancelled = false; }
  // Whether a dialog was shown to a person, and not only played by a script.
  [[nodiscard]] bool HasServedPerson() const { return hasServedPerson; }
  // Shows what is still waiting; on the windows' thread.
  void ShowWaiting();

private:
  void Queue(RunItem item);
  std::vector<RunItem> TakeWaiting();

  WindowsPoster windows;
  RunView &view;
  std::atomic<bool> cancelled = false;
  std::atomic<bool> hasServedPerson = false;
  std::vector<RunItem> waiting; // not shown yet
};

} // namespace desktop

#endif
