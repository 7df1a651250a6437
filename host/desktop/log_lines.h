// Decides how the log shows each console line, from the run events that precede it: headings, colours, links to the
// places of diagnostics. What a line says has no influence, but for "FILE:LINE:COLUMN:", the form of the host's own
// messages. No windows; any single thread.
#ifndef HOST_DESKTOP_LOG_LINES_H
#define HOST_DESKTOP_LOG_LINES_H

#include "host/file_place.h"
#include "host/record/run_event.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace desktop {

enum class LineStyle { Plain, Heading, Success, Warning, Error };

struct LogLine {
  LineStyle style = LineStyle::Plain;
  std::optional<size_t> problem = {}; // the line shows this one of Problems
  size_t linkBegin = 0;               // where it names the problem's file; empty when it does not
  size_t linkEnd = 0;
};

class LogLines {
public:
  void TakeEvent(const host::RunEvent &event);
  [[nodiscard]] LogLine TakeLine(std::string_view line);
  // The lines that follow belong to no event.
  void EndRequest() { current = {}; }
  void Clear() { problems.clear(); }
  // The places of diagnostics and of host messages, in order, whether a line shows them or not.
  [[nodiscard]] const std::vector<host::FilePlace> &Problems() const { return problems; }

private:
  [[nodiscard]] LogLine ShowDiagnostic(std::string_view line);

  host::RunEvent current; // the last event
  bool hasHeading = false;
  std::optional<size_t> currentProblem; // of a diagnostic
  std::vector<host::FilePlace> problems;
};

} // namespace desktop

#endif
