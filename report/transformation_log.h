// The transformation log: the one text into which every message of a request goes, echoed line by line on the host's
// console while the echo flag is on. It is a rendering of the events in report/run_event.h. One per process, on the
// host's thread.
#ifndef REPORT_TRANSFORMATION_LOG_H
#define REPORT_TRANSFORMATION_LOG_H

#include "report/run_event.h"

#include <string>
#include <string_view>

namespace report {

// Whether the text is there to be asked for, or what is echoed is all there is: a run may say millions of things.
enum class LogKeeping { Text, EchoOnly };

// Empties the text, keeps the flag and mirrors it in the host's session.
void ResetLog(bool echo, LogKeeping keeping = LogKeeping::Text);
// The session's echo setting, as the host holds it now.
[[nodiscard]] bool HostEcho();

// The lines of an event, if it has any. Report calls it.
void ShowInLog(const RunEvent &event);

// Borrowed until the next log operation.
[[nodiscard]] const std::string &LogText();

} // namespace report

#endif
