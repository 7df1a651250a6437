// A front that plays a script: it answers, chooses and works the dialogs as the steps say, in order. Behind it is
// another front, which shows the console and, when it has windows, the dialogs that are being worked. At the first
// thing that does not fit it stops taking part: questions are declined, dialogs closed, the run is cancelled, and
// Failure says what happened at which line.
#ifndef HOST_FRONTS_SCRIPT_FRONT_H
#define HOST_FRONTS_SCRIPT_FRONT_H

#include "host/dialogs/dialog_action.h"
#include "host/fronts/front.h"
#include "host/fronts/script.h"

#include <memory>
#include <span>
#include <string>

namespace host {

class ScriptFront final : public Front {
public:
  // `screen` shows the console and the progress, and must outlive the front.
  ScriptFront(std::string scriptName, std::vector<ScriptStep> script, Front &screenFront);

  [[nodiscard]] Answer Alert(AlertKind kind, const std::string &text) override;
  [[nodiscard]] std::optional<std::string> ChooseFile(const FileChooser &chooser) override;
  void RunDialog(DialogModel &dialog) override;
  void WriteConsole(std::string_view text) override { screen.WriteConsole(text); }
  void ReportProgress(const Progress &progress) override { screen.ReportProgress(progress); }
  void ReportRunEvent(const RunEvent &event) override { screen.ReportRunEvent(event); }
  [[nodiscard]] bool IsCancelled() override { return HasFailed() || screen.IsCancelled(); }

  // When everything was asked that will be: a step that is left over is a failure.
  void Finish();
  [[nodiscard]] bool HasFailed() const { return !failure.empty(); }
  // Empty while everything fits.
  [[nodiscard]] const std::string &Failure() const { return failure; }

private:
  // The next step when it is one of these; null, and a failure that names `asked`, when it is not.
  [[nodiscard]] const ScriptStep *Take(std::span<const StepKind> kinds, const std::string &asked);
  // Empty, or why the step does not fit the dialog.
  [[nodiscard]] std::string Play(const ScriptStep &step, DialogDriver &dialog);
  void Fail(const std::string &problem);
  void FailAt(const ScriptStep &step, const std::string &problem);

  std::string name;
  std::vector<ScriptStep> steps;
  size_t next = 0;
  Front &screen;
  std::string failure;
};

// Null and an error text when the script cannot be read or used.
[[nodiscard]] std::unique_ptr<ScriptFront> MakeScriptFront(const std::string &path, Front &screen, std::string &error);

} // namespace host

#endif
