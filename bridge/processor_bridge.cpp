#include "bridge/processor_bridge.h"

#include "bridge/managed_layer.h"

namespace bridge {

void SetClassPath(const char *classPath) { VLXSLT::GetXSLTManagedLayerInstance().SetClassPath(classPath); }

int32_t SetTransformer(const char *tClass) {
  return VLXSLT::GetXSLTManagedLayerInstance().SetTransformer(tClass) == 1 ? 1 : 0;
}

int32_t TransformXMLFile(const char *xmlFilePath, const char *xslFilePath, const char *outputFilePath,
                         const V_StrListT *stylesheetParams) {
  return VLXSLT::GetXSLTManagedLayerInstance().TransformXMLFile(xmlFilePath, xslFilePath, outputFilePath,
                                                                stylesheetParams) == 1
             ? 1
             : 0;
}

ProcessorProbe ProbeProcessor(const char *tClass) {
  return VLXSLT::GetXSLTManagedLayerInstance().ProbeProcessor(tClass);
}

void ShutDownBridge() { VLXSLT::GetXSLTManagedLayerInstance().ShutDown(); }

} // namespace bridge
