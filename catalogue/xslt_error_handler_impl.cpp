#include "catalogue/xslt_error_handler_impl.h"

#include "catalogue/xml_text.h"

#include <xercesc/sax/SAXParseException.hpp>

namespace catalogue {

using report::XSLTErrorHandler;

XSLTErrorHandlerImpl &XSLTErrorHandlerImpl::GetInst() {
  static XSLTErrorHandlerImpl handler;
  return handler;
}

void XSLTErrorHandlerImpl::BeginFile(const std::string &path, Diagnostics wanted) {
  resetErrors();
  diagnostics = wanted;
  file = path;
}

void XSLTErrorHandlerImpl::Take(Report report, const xercesc::SAXParseException &problem) {
  errorsSeen = true;
  if (diagnostics == Diagnostics::Drop)
    return;
  const std::string named = ToUtf8(problem.getSystemId());
  (XSLTErrorHandler::GetInst().*
   report)(ToUtf8(problem.getMessage()).c_str(), nullptr, (named.empty() ? file : named).c_str(),
           static_cast<int32_t>(problem.getLineNumber()), static_cast<int32_t>(problem.getColumnNumber()), nullptr);
}

void XSLTErrorHandlerImpl::warning(const xercesc::SAXParseException &problem) {
  Take(&XSLTErrorHandler::ReportWarn, problem);
}

void XSLTErrorHandlerImpl::error(const xercesc::SAXParseException &problem) {
  Take(&XSLTErrorHandler::ReportError, problem);
}

void XSLTErrorHandlerImpl::fatalError(const xercesc::SAXParseException &problem) {
  Take(&XSLTErrorHandler::ReportFatalError, problem);
}

} // namespace catalogue
