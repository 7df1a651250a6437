#include "report/xslt_error_handler.h"

#include "kit/paths.h"
#include "kit/values.h"
#include "report/run_event.h"

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

void ReportAt(Severity severity, const char *message, const char *systemId, int32_t line, int32_t column,
              const char *code) {
  Report(Diagnostic{severity, OrEmpty(message), Place{ShownFile(systemId), line, column}, OrEmpty(code)});
}

} // namespace

XSLTErrorHandler &XSLTErrorHandler::GetInst() {
  static XSLTErrorHandler handler;
  return handler;
}

void XSLTErrorHandler::ReportFatalError(const char *message, const char *, const char *systemId, int32_t line,
                                        int32_t column, const char *code) {
  ReportAt(Severity::Fatal, message, systemId, line, column, code);
}

void XSLTErrorHandler::ReportError(const char *message, const char *, const char *systemId, int32_t line,
                                   int32_t column, const char *code) {
  ReportAt(Severity::Error, message, systemId, line, column, code);
}

void XSLTErrorHandler::ReportWarn(const char *message, const char *, const char *systemId, int32_t line, int32_t column,
                                  const char *code) {
  ReportAt(Severity::Warning, message, systemId, line, column, code);
}

void XSLTErrorHandler::ReportMessage(const char *message) {
  if (message && *message)
    Report(Message{message});
}

} // namespace report
