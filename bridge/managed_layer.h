// The bridge's own object between the native entry points and the Java layer. Host's thread.
#ifndef BRIDGE_MANAGED_LAYER_H
#define BRIDGE_MANAGED_LAYER_H

#include "bridge/processor_bridge.h"

#include <cstdint>
#include <string>

namespace VLXSLT {

class XSLTManagedLayer {
public:
  [[nodiscard]] static XSLTManagedLayer *GetInstance();

  // Results are those of the Java layer, 0 when there is none.
  [[nodiscard]] int32_t TransformXMLFile(const char *xmlFilePath, const char *xslFilePath, const char *outputFilePath,
                                         const V_StrListT *stylesheetParams);
  [[nodiscard]] int32_t SetTransformer(const char *tClass);
  void SetClassPath(const char *path);
  [[nodiscard]] bridge::ProcessorProbe Probe(const char *tClass);
  void ShutDown();

private:
  XSLTManagedLayer() = default;
  // Starts Java when it does not run yet. Why it does not is in `reason`.
  [[nodiscard]] bool Connect(std::string &reason);

  std::string classPath;
};

[[nodiscard]] XSLTManagedLayer *GetXSLTManagedLayerInstance();

} // namespace VLXSLT

#endif
