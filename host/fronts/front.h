// Everything that a person is asked or shown goes through this interface: a terminal, a script or windows stand behind
// it. Called on the host's thread only. A front shows models of the host, it owns none.
#ifndef HOST_FRONTS_FRONT_H
#define HOST_FRONTS_FRONT_H

#include "host/record/run_event.h"
#include "kit/vdk.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace host {

class DialogDriver;
class DialogModel;

enum class AlertKind : int32_t {
  Plain = V_ALERT_PLAIN,
  YesNo = V_ALERT_YES_NO,
  YesNoDefaultNo = V_ALERT_YES_NO_DEFAULT_NO,
  OkCancel = V_ALERT_OK_CANCEL
};
enum class ChooserKind : int32_t { Open = V_CHOOSE_OPEN, Folder = V_CHOOSE_FOLDER, Save = V_CHOOSE_SAVE };
enum class Answer { Decline, Proceed };

// What a question is called, and its two answers, in scripts and in replies. A plain alert has nothing to decline.
struct QuestionWords {
  std::string_view name;
  std::string_view proceed;
  std::string_view decline;
};
// A kind that is unknown asks yes or no.
[[nodiscard]] const QuestionWords &WordsOf(AlertKind kind);

struct FileChooser {
  ChooserKind kind = ChooserKind::Open;
  std::string title;
  std::string filter; // "Name|pattern|Name|pattern|"
  std::string startFolder;
};

struct Progress {
  int32_t index = 0; // from 0
  int32_t count = 0; // 0 once the request is over
  std::string path;
};

class Front {
public:
  virtual ~Front() = default;

  // A plain alert is shown and answers Proceed.
  [[nodiscard]] virtual Answer Alert(AlertKind kind, const std::string &text) = 0;
  // Nothing when dismissed.
  [[nodiscard]] virtual std::optional<std::string> ChooseFile(const FileChooser &chooser) = 0;
  // Shows the dialog and drives it until it is closed. Dialogs nest.
  virtual void RunDialog(DialogModel &dialog) = 0;
  // Lets `player` drive the dialog in place of a person: on what the front shows when it shows any, else on the model.
  virtual void PlayDialog(DialogModel &dialog, const std::function<void(DialogDriver &driver)> &player);

  // One line, or a lone line feed for a blank one.
  virtual void WriteConsole(std::string_view text) = 0;
  virtual void ReportProgress(const Progress &progress) = 0;
  // An event of a run; the lines of the log that show it follow on the console, unless the run keeps it quiet.
  virtual void ReportRunEvent(const RunEvent &) {}
  // A finished output that its default program is to show. Names it, unless the front can do better.
  virtual void LaunchOutput(const std::string &path) { WriteConsole("Output: " + path); }
  // Whether the person wants the run to stop after the current input.
  [[nodiscard]] virtual bool IsCancelled() = 0;
};

// A line of the console is one line, even where its text brings a line end of its own.
[[nodiscard]] std::string_view WithoutLineEnd(std::string_view text);

} // namespace host

#endif
