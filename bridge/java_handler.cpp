#include "bridge/java_handler.h"

#include "bridge/entity_resolver.h"
#include "bridge/xslt_error_handler.h"

namespace VLXSLT {

using bridge::VLXSLTEntityResolverC;
using bridge::XSLTErrorHandler;

VLXSLTJavaHandlerImpl &VLXSLTJavaHandlerImpl::GetInstance() {
  static VLXSLTJavaHandlerImpl m_vlXSLTJavaHandlerImpl;
  return m_vlXSLTJavaHandlerImpl;
}

void VLXSLTJavaHandlerImpl::FatalError(const std::string &message, const std::string &publicId,
                                       const std::string &systemId, int32_t lineNumber, int32_t columnNumber) {
  XSLTErrorHandler::GetInst().ReportFatalError(message.c_str(), publicId.c_str(), systemId.c_str(), lineNumber,
                                               columnNumber);
}

void VLXSLTJavaHandlerImpl::Error(const std::string &message, const std::string &publicId, const std::string &systemId,
                                  int32_t lineNumber, int32_t columnNumber) {
  XSLTErrorHandler::GetInst().ReportError(message.c_str(), publicId.c_str(), systemId.c_str(), lineNumber,
                                          columnNumber);
}

void VLXSLTJavaHandlerImpl::Warning(const std::string &message, const std::string &publicId,
                                    const std::string &systemId, int32_t lineNumber, int32_t columnNumber) {
  XSLTErrorHandler::GetInst().ReportWarn(message.c_str(), publicId.c_str(), systemId.c_str(), lineNumber, columnNumber);
}

void VLXSLTJavaHandlerImpl::Message(const std::string &message) {
  XSLTErrorHandler::GetInst().ReportMessage(message.c_str());
}

std::string VLXSLTJavaHandlerImpl::ResolveEntity(const std::string & /*name*/, const std::string &publicId,
                                                 const std::string &baseURI, const std::string &systemId) {
  return VLXSLTEntityResolverC::GetInstance()
      ->ResolveEntity(publicId.c_str(), baseURI.c_str(), systemId.c_str())
      .Text();
}

void VLXSLTJavaHandlerImpl::StartDocument(const std::string &filePath) {
  VLXSLTEntityResolverC::GetInstance()->Start(filePath.c_str());
}

void VLXSLTJavaHandlerImpl::EndDocument() { VLXSLTEntityResolverC::GetInstance()->End(); }

} // namespace VLXSLT
