// VLXSLTJavaLayer as seen from here: its methods, and the natives through which it reports back.
#ifndef BRIDGE_JAVA_LAYER_H
#define BRIDGE_JAVA_LAYER_H

#include "bridge/processor_bridge.h"

#include <string>
#include <vector>

namespace bridge {

class JavaLayer {
public:
  [[nodiscard]] static JavaLayer &GetInst();

  // Finds the layer in the running machine and hands it the handler; does nothing the second time.
  [[nodiscard]] bool Connect(std::string &reason);

  [[nodiscard]] int32_t SetTransformer(const std::string &tClass);
  [[nodiscard]] int32_t TransformXMLFile(const std::string &xmlFilePath, const std::string &xslFilePath,
                                         const std::string &outputFilePath,
                                         const std::vector<std::string> &stylesheetParams);
  [[nodiscard]] ProcessorProbe Probe(const std::string &tClass);

private:
  struct Methods;
  JavaLayer() = default;
  Methods *methods = nullptr;
};

} // namespace bridge

#endif
