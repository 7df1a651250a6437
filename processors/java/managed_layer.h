// The processors that run in this process: starts Java when it is first needed, and calls the Java layer on the Java
// thread. One per process, on the host's thread.
#ifndef PROCESSORS_JAVA_MANAGED_LAYER_H
#define PROCESSORS_JAVA_MANAGED_LAYER_H

#include "processors/java/java_machine.h"
#include "processors/java/java_pump.h"
#include "processors/processor.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace VLXSLT {

class XSLTManagedLayer final : public processors::Processor {
public:
  [[nodiscard]] static XSLTManagedLayer &GetInstance();

  void SetClassPath(const std::string &given) override;
  void SetPolicy(const processors::Policy &given) override;
  void SetJobCount(size_t count) override { expectedJobs = count; }
  [[nodiscard]] bool SelectFactory(const processors::Factory &factory) override;
  [[nodiscard]] processors::JobResult TransformXMLFile(const processors::Job &job) override;
  void SetThreads(int32_t threads) override;
  void ExpectJob(const processors::Job &job) override;
  void EndRun() override;
  [[nodiscard]] processors::ProcessorProbe ProbeProcessor(const processors::Factory &factory) override;
  [[nodiscard]] bool PrepareStart(const processors::Factory &factory) override;
  [[nodiscard]] std::string AdviseOnStart() override;
  void ShutDown() override;

private:
  XSLTManagedLayer() = default;

  // Methods of the Java layer; the machine keeps the classes loaded.
  struct Methods {
    jobject layer = nullptr; // global
    jmethodID transform = nullptr;
    jmethodID setThreads = nullptr;
    jmethodID expectJob = nullptr;
    jmethodID endRun = nullptr;
    jmethodID setTransformer = nullptr;
    jmethodID probe = nullptr;
    jmethodID setClassPath = nullptr;
    jmethodID setPolicy = nullptr;
    jmethodID discardOutputs = nullptr;
  };

  // The class of the factory that is used first; empty when none is to be.
  [[nodiscard]] bool EnsureJava(const std::string &factory);
  void Start(const std::string &factory);
  // A reason when there can be no machine.
  [[nodiscard]] processors::MachineSetup MakeSetup(const std::string &factory, std::string &reason);
  void StartOnJava(const processors::MachineSetup &setup);
  [[nodiscard]] bool ConnectLayer();
  void ResumeOnJava();
  void ApplyClassPath();
  [[nodiscard]] bool FindMethods(JNIEnv *java, jclass type);
  [[nodiscard]] bool GiveTexts(JNIEnv *java, jclass type, jobject layer);
  void NameMissingEntries() const;
  // Runs on the Java thread with the machine, and what `body` leaves in its second argument; a pending exception
  // becomes a message. Nothing when Java is gone, or was given up: `body` may still run then, so it owns what it
  // touches.
  template <class Result, class Body>
  [[nodiscard]] std::optional<Result> RunInJava(Body body, const processors::JavaPump::Condition &mustGiveUp = {});
  void NoteLoss();
  void GiveUp();

  std::string classPath;
  processors::Policy policy;
  std::optional<int32_t> threads;        // of a run that begins, to be told to the layer with its first job
  std::vector<processors::Job> expected; // to be told to the layer with the next job
  std::vector<std::string> jarsFromStart;
  processors::JavaPump pump;
  std::unique_ptr<processors::JavaMachine> machine; // made and destroyed on the Java thread
  Methods methods;
  std::string problem; // why Java cannot be used; asked for again every time
  size_t expectedJobs = 0;
  bool isStarted = false;
  bool isParked = false; // between a shutdown and the next use
  bool hasNewClassPath = true;
  bool hasNewPolicy = true;
};

} // namespace VLXSLT

#endif
