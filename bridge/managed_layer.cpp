#include "bridge/managed_layer.h"

#include "bridge/entity_resolver.h"
#include "bridge/java_layer.h"
#include "bridge/java_machine.h"
#include "bridge/xslt_error_handler.h"

namespace VLXSLT {

using bridge::JavaLayer;
using bridge::JavaMachine;

namespace {

void Report(const std::string &reason) { bridge::XSLTErrorHandler::GetInst().ReportMessage(reason.c_str()); }

} // namespace

XSLTManagedLayer *XSLTManagedLayer::GetInstance() {
  static XSLTManagedLayer m_xsltManagedLayer;
  return &m_xsltManagedLayer;
}

XSLTManagedLayer *GetXSLTManagedLayerInstance() { return XSLTManagedLayer::GetInstance(); }

void XSLTManagedLayer::SetClassPath(const char *path) { classPath = path ? path : ""; }

bool XSLTManagedLayer::Connect(std::string &reason) {
  const bridge::JavaSettings settings{kit::GetString(V_SESSION, V_SP_JAVA_HOME),
                                      kit::GetStrings(V_SESSION, V_SP_JAVA_OPTIONS), classPath};
  reason = JavaMachine::GetInst().Start(settings);
  return reason.empty() && JavaLayer::GetInst().Connect(reason);
}

int32_t XSLTManagedLayer::SetTransformer(const char *tClass) {
  if (!tClass || !*tClass)
    return 0;
  std::string reason;
  if (!Connect(reason)) {
    Report(reason);
    return 0;
  }
  return JavaLayer::GetInst().SetTransformer(tClass);
}

int32_t XSLTManagedLayer::TransformXMLFile(const char *xmlFilePath, const char *xslFilePath, const char *outputFilePath,
                                           const V_StrListT *stylesheetParams) {
  std::vector<std::string> parameters;
  for (uint32_t i = 0; i < V_StrListLen(stylesheetParams); ++i)
    parameters.emplace_back(V_StrListGet(stylesheetParams, i));
  int32_t result = 0;
  try {
    std::string reason;
    if (!Connect(reason))
      Report(reason);
    else
      result = JavaLayer::GetInst().TransformXMLFile(xmlFilePath ? xmlFilePath : "", xslFilePath ? xslFilePath : "",
                                                     outputFilePath ? outputFilePath : "", parameters);
  } catch (const std::exception &error) {
    Report(error.what());
  }
  bridge::VLXSLTEntityResolverC::GetInstance()->Terminate();
  if (result == 1)
    JavaMachine::GetInst().NoteUse();
  return result;
}

bridge::ProcessorProbe XSLTManagedLayer::Probe(const char *tClass) {
  bridge::ProcessorProbe probe;
  if (Connect(probe.error))
    probe = JavaLayer::GetInst().Probe(tClass ? tClass : "");
  return probe;
}

void XSLTManagedLayer::ShutDown() { JavaMachine::GetInst().Stop(); }

} // namespace VLXSLT
