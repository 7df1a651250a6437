#include "catalogue/xslt_error_handler_impl.h"

#include "bridge/xslt_error_handler.h"
#include "catalogue/xml_text.h"

#include <xercesc/sax/SAXParseException.hpp>

namespace catalogue {

namespace {

using bridge::XSLTErrorHandler;
using Report = void (XSLTErrorHandler::*)(const char *, const char *, const char *, int32_t, int32_t);

void Pass(Report report, const xercesc::SAXParseException &problem) {
  (XSLTErrorHandler::GetInst().*
   report)(ToUtf8(problem.getMessage()).c_str(), nullptr, ToUtf8(problem.getSystemId()).c_str(),
           static_cast<int32_t>(problem.getLineNumber()), static_cast<int32_t>(problem.getColumnNumber()));
}

} // namespace

XSLTErrorHandlerImpl &XSLTErrorHandlerImpl::GetInst() {
  static XSLTErrorHandlerImpl handler;
  return handler;
}

void XSLTErrorHandlerImpl::warning(const xercesc::SAXParseException &problem) {
  errorsSeen = true;
  if (diagnostics == Diagnostics::Report)
    Pass(&XSLTErrorHandler::ReportWarn, problem);
}

void XSLTErrorHandlerImpl::error(const xercesc::SAXParseException &problem) {
  errorsSeen = true;
  if (diagnostics == Diagnostics::Report)
    Pass(&XSLTErrorHandler::ReportError, problem);
}

void XSLTErrorHandlerImpl::fatalError(const xercesc::SAXParseException &problem) {
  errorsSeen = true;
  if (diagnostics == Diagnostics::Report)
    Pass(&XSLTErrorHandler::ReportFatalError, problem);
}

} // namespace catalogue
