// The virtual machine inside this process: one, created once. Everything here is called on the Java thread, except
// where it says otherwise; parked, it has none and can be destroyed on any. Nothing throws, and no pending Java
// exception is left behind.
#ifndef PROCESSORS_JAVA_JAVA_MACHINE_H
#define PROCESSORS_JAVA_JAVA_MACHINE_H

#include "processors/java/class_archive.h"

#include <functional>
#include <jni.h>
#include <memory>
#include <string>
#include <vector>

namespace processors {

struct MachineSetup {
  std::string home;
  std::string library;                // libjvm
  std::string factory;                // of the processor that is used first; each has its own class archive
  std::vector<std::string> classPath; // archives only: jars
  std::vector<std::string> options;   // the user's; they win over ours
  std::function<void()> abandon = {}; // the machine wants to end the process; must not return to it
  bool isForLongRun = false;          // worth the compiler that takes its time
};

// Has the class archive written that such a machine starts quickly with; false when there is none then.
[[nodiscard]] bool PrepareMachine(const MachineSetup &setup);

class JavaMachine {
public:
  // Null and a problem when the machine refuses.
  [[nodiscard]] static std::unique_ptr<JavaMachine> Create(const MachineSetup &setup, std::string &problem);
  ~JavaMachine();
  JavaMachine(const JavaMachine &) = delete;
  JavaMachine &operator=(const JavaMachine &) = delete;

  // Leaves the thread, after which the machine waits; Resume takes it up on another one. False when that fails.
  void Park();
  [[nodiscard]] bool Resume();

  // For one call from any other thread: attached for as long as `work` takes. Nothing is done when Java refuses.
  void RunAttached(const std::function<void(JNIEnv &)> &work) const;

  [[nodiscard]] JNIEnv *Environment() const { return environment; }

  // Local references, valid until the current frame ends; null for null.
  [[nodiscard]] jstring MakeString(const char *text) const;
  [[nodiscard]] jobjectArray MakeStringArray(const std::vector<std::string> &items) const;
  // The machine has done work that is worth an archive of its classes.
  void NoteSuccess() { hasSucceeded = true; }
  // The jar that was configured, where its classes come from a copy of it.
  [[nodiscard]] std::string OriginalOf(const std::string &jar) const { return archive.OriginalOf(jar); }
  // What a pending exception says, which is cleared; empty when there is none.
  [[nodiscard]] std::string TakeException() const;

private:
  JavaMachine() = default;
  [[nodiscard]] JNIEnv *Attach() const;
  [[nodiscard]] std::vector<std::string> ListClasses() const;

  JavaVM *machine = nullptr;
  JNIEnv *environment = nullptr;
  ClassArchive archive;
  bool hasSucceeded = false;
};

// The text of a Java string; empty for null. Needs no machine, only the environment of a native method.
[[nodiscard]] std::string ReadString(JNIEnv *environment, jstring text);

// Why the machine refused, as far as it said so itself. Any thread.
[[nodiscard]] std::string MachineWords();

// Gives local references back when it goes.
class LocalFrame {
public:
  explicit LocalFrame(JNIEnv *attached) : environment(attached) { environment->PushLocalFrame(32); }
  ~LocalFrame() { environment->PopLocalFrame(nullptr); }
  LocalFrame(const LocalFrame &) = delete;
  LocalFrame &operator=(const LocalFrame &) = delete;

private:
  JNIEnv *environment;
};

} // namespace processors

#endif
