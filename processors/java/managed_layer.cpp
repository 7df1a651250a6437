#include "processors/java/managed_layer.h"

#include "kit/paths.h"
#include "kit/values.h"
#include "processors/entity_resolver.h"
#include "processors/java/java_handler.h"
#include "processors/java/java_installation.h"
#include "processors/java/java_processors.h"
#include "processors/java/own_folder.h"
#include "report/run_event.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace VLXSLT {

namespace {

// What the layer returns when all is well.
constexpr int32_t success = 1;
constexpr const char *layerClass = "vlxslt/VLXSLTJavaLayer";

std::vector<std::string> SplitClassPath(const std::string &classPath) {
  std::vector<std::string> entries;
  for (size_t start = 0; start < classPath.size();) {
    const size_t end = std::min(classPath.find(';', start), classPath.size());
    if (end > start)
      entries.push_back(classPath.substr(start, end - start));
    start = end + 1;
  }
  return entries;
}

// The Java layer, then the parser that reads every input.
std::vector<std::string> OwnJars() {
  const std::string folder = processors::OwnFolder();
  return {kit::JoinPath(folder, "vlxslt-java.jar"), kit::JoinPath(folder, "parser/xercesImpl.jar")};
}

std::string NameMissingJar() {
  for (const std::string &jar : OwnJars())
    if (!kit::IsFile(jar))
      return report::FormatMessage(report::MessageId::JavaPartMissing, {jar});
  return {};
}

// Folders go to a loader of their own behind the jars: with a folder on the class path proper, Java would refuse to
// keep an archive of its classes.
ClassPathParts SortClassPath(const std::string &classPath) {
  ClassPathParts parts{OwnJars(), {}};
  for (const std::string &entry : SplitClassPath(classPath)) {
    const std::string path = kit::AbsolutePath(entry);
    if (kit::IsFolder(path))
      parts.folders += path + ";";
    else if (kit::Exists(path) && std::ranges::find(parts.jars, path) == parts.jars.end())
      parts.jars.push_back(path);
  }
  return parts;
}

} // namespace

processors::Processor &GetXSLTManagedLayerInstance() { return XSLTManagedLayer::GetInstance(); }

XSLTManagedLayer &XSLTManagedLayer::GetInstance() {
  // Never destroyed: at the end of a process that did not shut down, the virtual machine must be left alone.
  static XSLTManagedLayer &layer = *new XSLTManagedLayer;
  return layer;
}

void XSLTManagedLayer::SetClassPath(const std::string &given) {
  classPath = given;
  hasNewClassPath = true;
}

// Java never takes a jar back or exchanges it, but it can be given more.
void XSLTManagedLayer::ApplyClassPath() {
  std::string entries = parts.folders;
  for (const std::string &jar : parts.jars)
    if (std::ranges::find(jarsFromStart, jar) == jarsFromStart.end())
      entries += jar + ";";
  machine->Environment()->CallVoidMethod(methods.layer, methods.setClassPath, machine->MakeString(entries.c_str()));
}

bool XSLTManagedLayer::EnsureJava(const std::string &purpose) {
  const bool isNewClassPath = std::exchange(hasNewClassPath, false);
  if (isNewClassPath)
    parts = SortClassPath(classPath);
  if (!isStarted)
    Start(purpose);
  else if (problem.empty() && (isParked || isNewClassPath) && !pump.RunOnJava([this] { ResumeOnJava(); }))
    problem = processors::MachineWords();
  if (!problem.empty())
    report::ReportProblem(problem);
  return problem.empty();
}

void XSLTManagedLayer::Start(const std::string &purpose) {
  isStarted = true;
  const processors::JavaInstallation java = processors::FindJava(kit::GetString(V_SESSION, V_SP_JAVA_HOME));
  problem = java.problem.empty() ? NameMissingJar() : java.problem;
  if (!problem.empty())
    return;
  jarsFromStart = parts.jars;
  const processors::MachineSetup setup{
      java.home, java.library, purpose, jarsFromStart, kit::GetStrings(V_SESSION, V_SP_JAVA_OPTIONS), [this] {
        pump.Abandon();
      }};
  if (!pump.RunOnJava([&] { StartOnJava(setup); }))
    problem = processors::MachineWords();
}

void XSLTManagedLayer::ResumeOnJava() {
  if (isParked && !machine->Resume()) {
    problem = report::LoadMessage(report::MessageId::JavaNotResumed);
    return;
  }
  isParked = false;
  const processors::LocalFrame frame(machine->Environment());
  ApplyClassPath();
}

void XSLTManagedLayer::StartOnJava(const processors::MachineSetup &setup) {
  machine = processors::JavaMachine::Create(setup, problem);
  if (machine && !ConnectLayer())
    problem = report::FormatMessage(report::MessageId::JavaLayerUnusable,
                                    {setup.classPath.front(), machine->TakeException()});
}

bool XSLTManagedLayer::GiveTexts(JNIEnv *java, jclass type, jobject layer) {
  jmethodID setTexts = java->GetMethodID(type, "SetTexts", "([Ljava/lang/String;)V");
  if (!setTexts)
    return false;
  std::vector<std::string> texts;
  for (auto id = static_cast<uint16_t>(report::MessageId::JavaLayerFirst);
       id <= static_cast<uint16_t>(report::MessageId::JavaLayerLast); ++id)
    texts.push_back(report::LoadMessage(static_cast<report::MessageId>(id)));
  java->CallVoidMethod(layer, setTexts, machine->MakeStringArray(texts));
  return !java->ExceptionCheck();
}

bool XSLTManagedLayer::ConnectLayer() {
  JNIEnv *java = machine->Environment();
  const processors::LocalFrame frame(java);
  if (!RegisterHandler(java, pump))
    return false;
  jclass type = java->FindClass(layerClass);
  jclass handlerType = type ? java->FindClass("vlxslt/NativeHandler") : nullptr;
  if (!handlerType)
    return false;
  jmethodID getInstance = java->GetStaticMethodID(type, "GetInstance", "()Lvlxslt/VLXSLTJavaLayer;");
  jmethodID makeHandler = getInstance ? java->GetMethodID(handlerType, "<init>", "()V") : nullptr;
  jmethodID setHandler =
      makeHandler ? java->GetMethodID(type, "SetVLXSLTJavaHandler", "(Lvlxslt/IVLXSLTJavaHandler;)V") : nullptr;
  methods.setClassPath = setHandler ? java->GetMethodID(type, "SetClassPath", "(Ljava/lang/String;)V") : nullptr;
  if (!methods.setClassPath || !FindMethods(java, type))
    return false;
  jobject layer = java->CallStaticObjectMethod(type, getInstance);
  jobject handler = layer ? java->NewObject(handlerType, makeHandler) : nullptr;
  if (!handler || !GiveTexts(java, type, layer))
    return false;
  methods.layer = java->NewGlobalRef(layer);
  java->CallVoidMethod(layer, setHandler, handler);
  ApplyClassPath();
  return !java->ExceptionCheck();
}

bool XSLTManagedLayer::FindMethods(JNIEnv *java, jclass type) {
  methods.setTransformer = java->GetMethodID(type, "SetTransformer", "(Ljava/lang/String;[Ljava/lang/String;)I");
  methods.transform =
      methods.setTransformer
          ? java->GetMethodID(type, "TransformXMLFile",
                              "(Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;"
                              "[Ljava/lang/String;ZLjava/lang/String;Ljava/lang/String;)I")
          : nullptr;
  methods.probe = methods.transform ? java->GetMethodID(type, "ProbeProcessor",
                                                        "(Ljava/lang/String;[Ljava/lang/String;)[Ljava/lang/String;")
                                    : nullptr;
  return methods.probe;
}

template <class Body> bool XSLTManagedLayer::RunInJava(Body body) {
  std::string fault;
  const bool returned = pump.RunOnJava([&] {
    const processors::LocalFrame frame(machine->Environment());
    body(*machine->Environment());
    fault = machine->TakeException();
  });
  if (!fault.empty())
    report::ReportProblem(report::MessageId::JavaFailed, {fault});
  if (!returned)
    NoteLoss();
  return returned;
}

void XSLTManagedLayer::NoteLoss() {
  problem = report::LoadMessage(report::MessageId::JavaEnded);
  report::ReportProblem(problem);
}

bool XSLTManagedLayer::SelectFactory(const processors::Factory &factory) {
  if (factory.className.empty() || !EnsureJava(factory.className))
    return false;
  int32_t result = 0;
  RunInJava([&](JNIEnv &java) {
    result = java.CallIntMethod(methods.layer, methods.setTransformer, machine->MakeString(factory.className.c_str()),
                                machine->MakeStringArray(factory.attributes));
  });
  if (result != success)
    NameMissingEntries();
  return result == success;
}

// A class that does not load is mostly a jar that is not there.
void XSLTManagedLayer::NameMissingEntries() const {
  for (const std::string &entry : SplitClassPath(classPath))
    if (!kit::Exists(entry))
      report::ReportProblem(report::MessageId::ClassPathEntryMissing, {entry});
}

processors::JobResult XSLTManagedLayer::TransformXMLFile(const processors::Job &job) {
  processors::JobResult result;
  if (EnsureJava({})) {
    RunInJava([&](JNIEnv &java) {
      const ResultOfJob end(result);
      jobjectArray parameters = job.parameters.empty() ? nullptr : machine->MakeStringArray(job.parameters);
      if (java.CallIntMethod(methods.layer, methods.transform, machine->MakeString(job.input.c_str()),
                             machine->MakeString(kit::OrNull(job.stylesheet)), machine->MakeString(job.output.c_str()),
                             machine->MakeString(kit::OrNull(job.result)), parameters,
                             static_cast<jboolean>(job.includes), machine->MakeString(kit::OrNull(job.initialTemplate)),
                             machine->MakeString(kit::OrNull(job.initialMode))) == success)
        result.status = processors::JobStatus::Done;
    });
    if (result.status == processors::JobStatus::Done && machine)
      machine->NoteSuccess();
  }
  processors::VLXSLTEntityResolverC::GetInstance().Terminate();
  return result;
}

processors::ProcessorProbe XSLTManagedLayer::ProbeProcessor(const processors::Factory &factory) {
  processors::ProcessorProbe probe;
  if (!EnsureJava("probe")) {
    probe.error = problem;
    return probe;
  }
  const bool returned = RunInJava([&](JNIEnv &java) {
    auto fields = static_cast<jobjectArray>(java.CallObjectMethod(methods.layer, methods.probe,
                                                                  machine->MakeString(factory.className.c_str()),
                                                                  machine->MakeStringArray(factory.attributes)));
    if (!fields)
      return;
    const auto field = [&](jsize index) {
      return processors::ReadString(&java, static_cast<jstring>(java.GetObjectArrayElement(fields, index)));
    };
    probe = {field(0), field(1), field(2), field(3)};
  });
  if (!returned)
    probe.error = problem;
  return probe;
}

void XSLTManagedLayer::ShutDown() {
  if (!machine || isParked)
    return;
  isParked = pump.RunOnJava([this] { machine->Park(); });
  pump.Stop();
  if (!isParked) {
    (void)machine.release(); // its thread never comes back; the process ends soon
    problem = report::LoadMessage(report::MessageId::JavaShutDown);
    return;
  }
  // A process cannot make a second machine, and a host may start its clients anew: this one goes with the process. One
  // that is in use again by then is left alone: to destroy it would wait for its thread without end.
  static const bool isLeft = std::atexit([] {
                               if (XSLTManagedLayer &layer = GetInstance(); layer.isParked)
                                 layer.machine.reset();
                             }) == 0;
  static_cast<void>(isLeft);
}

} // namespace VLXSLT
