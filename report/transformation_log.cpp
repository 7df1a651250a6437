#include "report/transformation_log.h"

#include "kit/text.h"
#include "kit/values.h"

namespace report {

namespace {

struct Log {
  bool echo = false;
  std::string text;
};

Log &TheLog() {
  static Log log;
  return log;
}

void WriteBlankLine() {
  Log &log = TheLog();
  if (log.echo)
    V_ApiWriteConsole("\n");
  log.text += "\n\n";
}

} // namespace

void ResetLog(bool echo) {
  V_ApiSetInt(V_SESSION, V_SP_LOG_ECHO, echo ? 1 : 0);
  TheLog() = Log{echo, {}};
}

bool HostEcho() { return V_ApiGetInt(V_SESSION, V_SP_LOG_ECHO) != 0; }

void AppendLine(std::string_view line) {
  if (line.empty())
    return;
  Log &log = TheLog();
  if (log.echo)
    V_ApiWriteConsole(std::string(line).c_str());
  log.text.append(line).append("\n");
}

void AppendMessage(MessageId id, std::initializer_list<std::string_view> values) {
  AppendLine(FormatMessage(id, values));
}

void WriteStartSection(std::string_view input, std::string_view xsl, std::string_view output,
                       std::string_view processor) {
  WriteBlankLine();
  AppendLine(LoadMessage(MessageId::LogTitle));
  if (!input.empty())
    AppendLine(LoadMessage(MessageId::LogInput).append(input));
  AppendLine(xsl.empty() ? LoadMessage(MessageId::LogXslFromPi) : LoadMessage(MessageId::LogXsl).append(xsl));
  if (!output.empty())
    AppendLine(LoadMessage(MessageId::LogOutput).append(output));
  WriteBlankLine();
  if (!processor.empty())
    AppendLine(kit::Truncate(FormatMessage(MessageId::LogProcessorMessages, {processor}), kit::maxTextSize));
}

void WriteEndSection(bool success) {
  WriteBlankLine();
  AppendLine(LoadMessage(success ? MessageId::TransformationSuccessful : MessageId::TransformationAborted));
}

const std::string &LogText() { return TheLog().text; }

} // namespace report
