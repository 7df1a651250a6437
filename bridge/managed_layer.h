// The native face of the Java layer: starts Java when it is first needed, and calls the layer on the Java thread.
// One per process, on the host's thread.
#ifndef BRIDGE_MANAGED_LAYER_H
#define BRIDGE_MANAGED_LAYER_H

#include "bridge/java_machine.h"
#include "bridge/java_pump.h"
#include "bridge/processor_bridge.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace VLXSLT {

class XSLTManagedLayer {
public:
  [[nodiscard]] static XSLTManagedLayer &GetInstance();

  // What the layer returns; 1 is success.
  [[nodiscard]] int32_t TransformXMLFile(const char *xmlFilePath, const char *xslFilePath, const char *outputFilePath,
                                         const V_StrListT *stylesheetParams);
  [[nodiscard]] int32_t SetTransformer(const char *tClass);
  void SetClassPath(const char *classPath);
  [[nodiscard]] bridge::ProcessorProbe ProbeProcessor(const char *tClass);
  void ShutDown();

private:
  // Methods of the Java layer; the machine keeps the classes loaded.
  struct Methods {
    jobject layer = nullptr; // global
    jmethodID transform = nullptr;
    jmethodID setTransformer = nullptr;
    jmethodID probe = nullptr;
    jmethodID setClassPath = nullptr;
  };

  // `purpose` tells apart what is worth a class archive of its own.
  [[nodiscard]] bool EnsureJava(const std::string &purpose);
  void StartOnJava(const bridge::MachineSetup &setup);
  [[nodiscard]] bool ConnectLayer();
  void ResumeOnJava();
  void HandOverClassPath();
  [[nodiscard]] bool FindMethods(JNIEnv *java, jclass type);
  void NameMissingEntries() const;
  // Runs on the Java thread with the machine; a pending exception becomes a message. False when Java is gone.
  template <class Body> bool RunInJava(Body body);
  void NoteLoss();

  std::string classPath;
  std::vector<std::string> jarsFromStart;
  bridge::JavaPump pump;
  std::unique_ptr<bridge::JavaMachine> machine; // made and destroyed on the Java thread
  Methods methods;
  std::string problem; // why Java cannot be used; asked for again every time
  bool isStarted = false;
  bool isParked = false; // between a shutdown and the next use
  bool hasNewClassPath = false;
};

// "VLXSLT::GetXSLTManagedLayerInstance()" as the bridge's calls use it.
[[nodiscard]] inline XSLTManagedLayer &GetXSLTManagedLayerInstance() { return XSLTManagedLayer::GetInstance(); }

} // namespace VLXSLT

#endif
