#include "report/xslt_error_handler.h"

#include "kit/paths.h"
#include "kit/values.h"
#include "report/messages.h"
#include "report/transformation_log.h"

#include <string>

namespace report {

namespace {

std::string OrEmpty(const char *text) { return text ? text : ""; }

// A platform path where the identifier is one; the local copy of a network document.
std::string ShownFile(const char *systemId) {
  std::string file = kit::UrlToPath(OrEmpty(systemId));
  if (!NetLibIsNetFile(file.c_str()))
    return file;
  const kit::HostString cached = kit::HostString::Adopt(NetLibQueryCacheForURL(file.c_str()));
  return cached.View().empty() ? file : cached.Text();
}

void Report(MessageId pattern, const char *message, const char *systemId, int32_t line, int32_t column) {
  AppendMessage(pattern, {ShownFile(systemId), std::to_string(line), std::to_string(column), OrEmpty(message)});
}

} // namespace

XSLTErrorHandler &XSLTErrorHandler::GetInst() {
  static XSLTErrorHandler handler;
  return handler;
}

void XSLTErrorHandler::ReportFatalError(const char *message, const char *, const char *systemId, int32_t line,
                                        int32_t column, const char *) {
  Report(MessageId::DiagnosticFatalError, message, systemId, line, column);
}

void XSLTErrorHandler::ReportError(const char *message, const char *, const char *systemId, int32_t line,
                                   int32_t column, const char *) {
  Report(MessageId::DiagnosticError, message, systemId, line, column);
}

void XSLTErrorHandler::ReportWarn(const char *message, const char *, const char *systemId, int32_t line, int32_t column,
                                  const char *) {
  Report(MessageId::DiagnosticWarning, message, systemId, line, column);
}

void XSLTErrorHandler::ReportMessage(const char *message) { AppendLine(OrEmpty(message)); }

} // namespace report
