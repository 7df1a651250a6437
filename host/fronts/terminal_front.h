// The front of a command line: questions on the terminal when there is one, declined or confirmed otherwise; the
// console and the progress line on standard error. Data goes elsewhere, so that pipes stay clean.
#ifndef HOST_FRONTS_TERMINAL_FRONT_H
#define HOST_FRONTS_TERMINAL_FRONT_H

#include "host/fronts/front.h"

#include <chrono>
#include <functional>
#include <memory>

namespace host {

enum class Answers {
  AskPerson,  // when standard input and standard error are a terminal, else Decline
  Decline,    // No, Cancel and dismissed
  ConfirmAll, // Yes and OK; a file chooser is still asked on a terminal
};

// Starts the program that shows a file to a person; false when there is none.
using ProgramStarter = std::function<bool(const std::string &path)>;

class TerminalFront final : public Front {
public:
  // `show` starts the default programs of launched outputs; without it, and when nothing may be asked, they are named.
  explicit TerminalFront(Answers wanted, ProgramStarter show = {});
  ~TerminalFront() override;
  TerminalFront(const TerminalFront &) = delete;
  TerminalFront &operator=(const TerminalFront &) = delete;

  [[nodiscard]] Answer Alert(AlertKind kind, const std::string &text) override;
  [[nodiscard]] std::optional<std::string> ChooseFile(const FileChooser &chooser) override;
  void RunDialog(DialogModel &dialog) override;
  void WriteConsole(std::string_view text) override;
  void ReportProgress(const Progress &progress) override;
  void LaunchOutput(const std::string &path) override;
  [[nodiscard]] bool IsCancelled() override;

private:
  // Nothing at the end of input or when interrupted.
  [[nodiscard]] std::optional<std::string> ReadLine();
  void WriteLine(std::string_view text);
  void ClearProgress();
  void ShowProgress();

  Answers answers;
  ProgramStarter starter;
  bool isTerminal = false;    // a person can answer
  bool showsProgress = false; // standard error can be written over
  std::string progress;       // the line that is kept below the console; empty when there is none
  std::chrono::steady_clock::time_point begun;
};

} // namespace host

#endif
