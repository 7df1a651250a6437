// The transformation log: the one text into which every message of a request goes, echoed line by line on the host's
// console while the echo flag is on. One per process, on the host's thread.
#ifndef REPORT_TRANSFORMATION_LOG_H
#define REPORT_TRANSFORMATION_LOG_H

#include "report/messages.h"

#include <string>
#include <string_view>

namespace report {

// Empties the text, keeps the flag and mirrors it in the host's session.
void ResetLog(bool echo);
// The session's echo setting, as the host holds it now.
[[nodiscard]] bool HostEcho();

// Nothing for an empty line.
void AppendLine(std::string_view line);
// A message with its placeholders filled, as one line.
void AppendMessage(MessageId id, std::initializer_list<std::string_view> values = {});

// Empty arguments leave their lines out; an empty stylesheet means "the one named by the input".
void WriteStartSection(std::string_view input, std::string_view xsl, std::string_view output,
                       std::string_view processor);
void WriteEndSection(bool success);

// Borrowed until the next log operation.
[[nodiscard]] const std::string &LogText();

} // namespace report

#endif
