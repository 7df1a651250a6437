#include "bridge/xslt_error_handler.h"

#include "bridge/transformation_log.h"
#include "kit/paths.h"
#include "kit/values.h"

namespace bridge {

namespace {

// A network document is shown as the local copy that was read.
std::string ShownFile(const char *systemId) {
  std::string file = kit::UrlToPath(systemId ? systemId : "");
  if (NetLibIsNetFile(file.c_str())) {
    const auto cached = kit::HostString::Adopt(NetLibQueryCacheForURL(file.c_str()));
    if (!cached.View().empty())
      return cached.Text();
  }
  return file;
}

void Report(MessageId id, const char *message, const char *systemId, int32_t line, int32_t column) {
  AppendMessage(id, {ShownFile(systemId), std::to_string(line), std::to_string(column), message ? message : ""});
}

} // namespace

XSLTErrorHandler &XSLTErrorHandler::GetInst() {
  static XSLTErrorHandler mInst;
  return mInst;
}

void XSLTErrorHandler::ReportFatalError(const char *message, const char * /*publicId*/, const char *systemId,
                                        int32_t line, int32_t column) {
  Report(MessageId::DiagnosticFatalError, message, systemId, line, column);
}

void XSLTErrorHandler::ReportError(const char *message, const char * /*publicId*/, const char *systemId, int32_t line,
                                   int32_t column) {
  Report(MessageId::DiagnosticError, message, systemId, line, column);
}

void XSLTErrorHandler::ReportWarn(const char *message, const char * /*publicId*/, const char *systemId, int32_t line,
                                  int32_t column) {
  Report(MessageId::DiagnosticWarning, message, systemId, line, column);
}

void XSLTErrorHandler::ReportMessage(const char *message) {
  if (message)
    AppendLine(message);
}

} // namespace bridge
