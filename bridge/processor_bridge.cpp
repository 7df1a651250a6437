#include "bridge/processor_bridge.h"

#include "bridge/managed_layer.h"
#include "bridge/xslt_error_handler.h"

#include <exception>

namespace bridge {

namespace {

// The one way in: nothing is thrown at the client, not even for want of memory.
template <class Result, class Call> Result Guard(Call call) noexcept {
  try {
    return call();
  } catch (const std::exception &error) {
    XSLTErrorHandler::GetInst().ReportMessage(error.what());
  } catch (...) {
    XSLTErrorHandler::GetInst().ReportMessage("Unknown error in the processor bridge.");
  }
  return Result();
}

using VLXSLT::GetXSLTManagedLayerInstance;

} // namespace

void SetClassPath(const char *classPath) {
  Guard<int>([&] {
    GetXSLTManagedLayerInstance()->SetClassPath(classPath);
    return 0;
  });
}

int32_t SetTransformer(const char *tClass) {
  return Guard<int32_t>([&] { return GetXSLTManagedLayerInstance()->SetTransformer(tClass) == 1 ? 1 : 0; });
}

int32_t TransformXMLFile(const char *xmlFilePath, const char *xslFilePath, const char *outputFilePath,
                         const V_StrListT *stylesheetParams) {
  return Guard<int32_t>([&] {
    return GetXSLTManagedLayerInstance()->TransformXMLFile(xmlFilePath, xslFilePath, outputFilePath,
                                                           stylesheetParams) == 1
               ? 1
               : 0;
  });
}

void AnnounceInputs(const std::vector<std::string> & /*xmlFilePaths*/) {
  // Inputs are read in a few milliseconds once their grammars are known; working ahead has not been worth a thread.
}

ProcessorProbe ProbeProcessor(const char *tClass) {
  return Guard<ProcessorProbe>([&] { return GetXSLTManagedLayerInstance()->Probe(tClass); });
}

void ShutDownBridge() {
  Guard<int>([] {
    GetXSLTManagedLayerInstance()->ShutDown();
    return 0;
  });
}

} // namespace bridge
