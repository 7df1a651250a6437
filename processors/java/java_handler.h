// Where the Java layer's callbacks arrive: each is carried out on the host's thread, in order.
#ifndef PROCESSORS_JAVA_JAVA_HANDLER_H
#define PROCESSORS_JAVA_JAVA_HANDLER_H

#include "processors/java/java_pump.h"
#include "processors/processor.h"

#include <cstdint>
#include <jni.h>
#include <string>

namespace VLXSLT {

// What the host's thread does for each callback. Empty strings stand for absent ones.
class VLXSLTJavaHandlerImpl {
public:
  [[nodiscard]] static VLXSLTJavaHandlerImpl &GetInstance();

  struct Diagnostic {
    std::string message, publicId, systemId, code;
    int32_t line = -1;
    int32_t column = -1;
  };
  void FatalError(const Diagnostic &diagnostic);
  void Error(const Diagnostic &diagnostic);
  void Warning(const Diagnostic &diagnostic);
  void Message(const std::string &message);
  // Empty: not resolved, the processor's own way applies.
  [[nodiscard]] std::string ResolveEntity(const std::string &publicId, const std::string &baseUri,
                                          const std::string &systemId);
  void StartDocument(const std::string &filePath);
  void EndDocument();
};

// While it lives, the end of a job on this thread leaves its outputs and the files it read in `result`.
class ResultOfJob {
public:
  explicit ResultOfJob(processors::JobResult &result);
  ~ResultOfJob();
  ResultOfJob(const ResultOfJob &) = delete;
  ResultOfJob &operator=(const ResultOfJob &) = delete;
};

// Ties the native methods of the Java class vlxslt.NativeHandler to the handler; calls travel through `pump`, which
// must outlive the machine. On the Java thread. False when the class does not fit.
[[nodiscard]] bool RegisterHandler(JNIEnv *environment, processors::JavaPump &pump);

} // namespace VLXSLT

#endif
