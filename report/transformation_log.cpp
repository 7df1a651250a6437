#include "report/transformation_log.h"

#include "kit/text.h"
#include "kit/values.h"

namespace report {

namespace {

struct Log {
  bool echo = false;
  LogKeeping keeping = LogKeeping::Text;
  std::string text;

  void Append(std::string_view piece) {
    if (keeping == LogKeeping::Text)
      text += piece;
  }
};

Log &TheLog() {
  static Log log;
  return log;
}

// Nothing for an empty line.
void AppendLine(std::string_view line) {
  if (line.empty())
    return;
  Log &log = TheLog();
  if (log.echo)
    V_ApiWriteConsole(std::string(line).c_str());
  log.Append(line);
  log.Append("\n");
}

void WriteBlankLine() {
  Log &log = TheLog();
  if (log.echo)
    V_ApiWriteConsole("\n");
  log.Append("\n\n");
}

void WriteStartSection(const StartSection &section) {
  WriteBlankLine();
  AppendLine(LoadMessage(MessageId::LogTitle));
  if (!section.input.empty())
    AppendLine(LoadMessage(MessageId::LogInput).append(section.input));
  AppendLine(section.stylesheet.empty() ? LoadMessage(MessageId::LogXslFromPi)
                                        : LoadMessage(MessageId::LogXsl).append(section.stylesheet));
  if (!section.output.empty())
    AppendLine(LoadMessage(MessageId::LogOutput).append(section.output));
  WriteBlankLine();
  if (!section.processor.empty())
    AppendLine(kit::Truncate(FormatMessage(MessageId::LogProcessorMessages, {section.processor}), kit::maxTextSize));
}

MessageId PatternOf(Severity severity) {
  switch (severity) {
  case Severity::Warning:
    return MessageId::DiagnosticWarning;
  case Severity::Error:
    return MessageId::DiagnosticError;
  default:
    return MessageId::DiagnosticFatalError;
  }
}

struct Rendering {
  void operator()(const JobBegins &begins) const {
    if (begins.section)
      WriteStartSection(*begins.section);
  }
  void operator()(const Diagnostic &diagnostic) const {
    if (const auto &place = diagnostic.place)
      AppendLine(FormatMessage(PatternOf(diagnostic.severity), {place->file, std::to_string(place->line),
                                                                std::to_string(place->column), diagnostic.text}));
    else
      AppendLine(diagnostic.text);
  }
  void operator()(const Message &message) const { AppendLine(message.text); }
  void operator()(const JobEnds &ends) const {
    if (!ends.showsEndSection)
      return;
    WriteBlankLine();
    AppendLine(LoadMessage(ends.status == JobStatus::Done ? MessageId::TransformationSuccessful
                                                          : MessageId::TransformationAborted));
  }
  void operator()(const auto &) const {}
};

} // namespace

void ResetLog(bool echo, LogKeeping keeping) {
  V_ApiSetInt(V_SESSION, V_SP_LOG_ECHO, echo ? 1 : 0);
  TheLog() = Log{echo, keeping, {}};
}

bool HostEcho() { return V_ApiGetInt(V_SESSION, V_SP_LOG_ECHO) != 0; }

void ShowInLog(const RunEvent &event) { std::visit(Rendering(), event); }

const std::string &LogText() { return TheLog().text; }

} // namespace report
