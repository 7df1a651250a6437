// The Java virtual machine of this process: found, started once, never moved. Jobs run on the pump's thread.
#ifndef BRIDGE_JAVA_MACHINE_H
#define BRIDGE_JAVA_MACHINE_H

#include "bridge/class_archive.h"

#include <functional>
#include <jni.h>
#include <memory>
#include <string>
#include <vector>

namespace bridge {

struct JavaSettings {
  std::string home;                 // as configured, or empty
  std::vector<std::string> options; // the user's, they win over ours
  std::string classPath;            // entries separated by ";"
};

class JavaMachine {
public:
  [[nodiscard]] static JavaMachine &GetInst();

  // Why Java does not run; empty when it does. The first call decides for the life of the process.
  [[nodiscard]] const std::string &Start(const JavaSettings &settings);
  [[nodiscard]] bool IsRunning() const { return machine && !lost; }

  // Runs `job` on Java's thread. False when Java is gone, which the reason then says.
  [[nodiscard]] bool Run(const std::function<void(JNIEnv &)> &job);
  // Only a machine that did real work has loaded what is worth keeping for the next one.
  void NoteUse() { wasUsed = true; }
  void Stop();

private:
  JavaMachine() = default;
  [[nodiscard]] std::string Create(const std::string &library);
  [[nodiscard]] jint CreateWith(void *create);
  void ComposeOptions(const JavaSettings &settings, const std::string &library);

  JavaVM *machine = nullptr;
  JNIEnv *environment = nullptr;
  std::vector<std::string> optionTexts;
  std::unique_ptr<ClassArchive> archive;
  std::string failure;
  bool wasStarted = false;
  bool wasUsed = false;
  bool lost = false;
};

} // namespace bridge

#endif
