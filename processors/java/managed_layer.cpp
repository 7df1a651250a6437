#include "processors/java/managed_layer.h"

#include "kit/paths.h"
#include "kit/unfinished_files.h"
#include "kit/values.h"
#include "processors/entity_resolver.h"
#include "processors/java/java_handler.h"
#include "processors/java/java_installation.h"
#include "processors/java/java_processors.h"
#include "processors/java/own_folder.h"
#include "report/run_event.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <future>
#include <memory>
#include <thread>
#include <utility>

namespace VLXSLT {

namespace {

// What the layer returns when all is well.
constexpr int32_t success = 1;
constexpr const char *layerClass = "vlxslt/VLXSLTJavaLayer";
// For the removal of unfinished outputs, when the program must end.
constexpr auto discardTime = std::chrono::seconds(1);

// From here on Java's second compiler pays off: measured with DITA topics.
constexpr size_t jobsOfLongRun = 4400;

using processors::JavaMachine;

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

// What there is of the class path, in its order. The folder that happens to be the working one, which every class path
// begins with, comes last: what lies there must not take the place of what was configured.
std::vector<std::string> ReadClassPath(const std::string &classPath) {
  std::vector<std::string> entries = SplitClassPath(classPath);
  if (!entries.empty() && entries.front() == ".")
    std::rotate(entries.begin(), entries.begin() + 1, entries.end());
  std::vector<std::string> found;
  for (const std::string &entry : entries)
    if (const std::string path = kit::AbsolutePath(entry);
        kit::Exists(path) && std::ranges::find(found, path) == found.end())
      found.push_back(path);
  return found;
}

// What the layer's methods for a job take, as local references.
std::array<jvalue, 10> JobArguments(const JavaMachine &java, const processors::Job &job) {
  std::array<jvalue, 10> arguments{};
  arguments[0].i = job.number;
  arguments[1].l = java.MakeString(job.input.c_str());
  arguments[2].l = java.MakeString(kit::OrNull(job.inputContent));
  arguments[3].l = java.MakeString(kit::OrNull(job.stylesheet));
  arguments[4].l = java.MakeString(job.output.c_str());
  arguments[5].l = java.MakeString(kit::OrNull(job.result));
  arguments[6].l = job.parameters.empty() ? nullptr : java.MakeStringArray(job.parameters);
  arguments[7].z = static_cast<jboolean>(job.includes);
  arguments[8].l = java.MakeString(kit::OrNull(job.initialTemplate));
  arguments[9].l = java.MakeString(kit::OrNull(job.initialMode));
  return arguments;
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

void XSLTManagedLayer::SetPolicy(const processors::Policy &given) {
  hasNewPolicy = hasNewPolicy || given != policy;
  policy = given;
}

// Java never takes a jar back or exchanges it, but it can be given more.
void XSLTManagedLayer::ApplyClassPath() {
  std::string entries;
  for (const std::string &path : ReadClassPath(classPath))
    if (std::ranges::find(jarsFromStart, path) == jarsFromStart.end())
      entries += path + ";";
  machine->Environment()->CallVoidMethod(methods.layer, methods.setClassPath, machine->MakeString(entries.c_str()));
}

bool XSLTManagedLayer::EnsureJava(const std::string &factory) {
  const bool isNewClassPath = std::exchange(hasNewClassPath, false);
  if (!isStarted)
    Start(factory);
  else if (problem.empty() && (isParked || isNewClassPath) && !pump.RunOnJava([this] { ResumeOnJava(); }))
    problem = processors::MachineWords();
  if (!problem.empty())
    report::ReportProblem(problem);
  return problem.empty();
}

processors::MachineSetup XSLTManagedLayer::MakeSetup(const std::string &factory, std::string &reason) {
  const processors::JavaInstallation java = processors::FindJava(kit::GetString(V_SESSION, V_SP_JAVA_HOME));
  reason = java.problem.empty() ? NameMissingJar() : java.problem;
  processors::MachineSetup setup{java.home, java.library, factory, OwnJars(),
                                 kit::GetStrings(V_SESSION, V_SP_JAVA_OPTIONS)};
  // The jars before the first folder. From there on all go to a loader of their own, in their order: with a folder on
  // the class path proper, Java would refuse to keep an archive of its classes.
  for (const std::string &path : ReadClassPath(classPath)) {
    if (kit::IsFolder(path))
      break;
    setup.classPath.push_back(path);
  }
  setup.abandon = [this] { pump.Abandon(); };
  setup.isForLongRun = expectedJobs >= jobsOfLongRun;
  return setup;
}

void XSLTManagedLayer::Start(const std::string &factory) {
  isStarted = true;
  const processors::MachineSetup setup = MakeSetup(factory, problem);
  jarsFromStart = setup.classPath;
  if (problem.empty() && !pump.RunOnJava([&] { StartOnJava(setup); }))
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
  jmethodID setTexts = java->GetMethodID(type, "SetTexts", "([Ljava/lang/String;Ljava/lang/String;)V");
  if (!setTexts)
    return false;
  std::vector<std::string> texts;
  for (auto id = static_cast<uint16_t>(report::MessageId::JavaLayerFirst);
       id <= static_cast<uint16_t>(report::MessageId::JavaLayerLast); ++id)
    texts.push_back(report::LoadMessage(static_cast<report::MessageId>(id)));
  java->CallVoidMethod(layer, setTexts, machine->MakeStringArray(texts),
                       machine->MakeString(kit::OwnUnfinishedPrefix().c_str()));
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
  if (!setHandler || !FindMethods(java, type))
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
  // The arguments of a job: see JobArguments.
  const std::string job = "(ILjava/lang/String;Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;"
                          "Ljava/lang/String;[Ljava/lang/String;ZLjava/lang/String;Ljava/lang/String;)";
  struct Wanted {
    jmethodID Methods::*method;
    const char *name;
    std::string signature;
  };
  const std::array wanted = {
      Wanted{&Methods::setClassPath, "SetClassPath", "(Ljava/lang/String;)V"},
      Wanted{&Methods::setTransformer, "SetTransformer", "(Ljava/lang/String;[Ljava/lang/String;)I"},
      Wanted{&Methods::setThreads, "SetThreads", "(I)V"},
      Wanted{&Methods::expectJob, "ExpectJob", job + "V"},
      Wanted{&Methods::endRun, "EndRun", "()V"},
      Wanted{&Methods::transform, "TransformXMLFile", job + "I"},
      Wanted{&Methods::probe, "ProbeProcessor", "(Ljava/lang/String;[Ljava/lang/String;)[Ljava/lang/String;"},
      Wanted{&Methods::discardOutputs, "DiscardOutputs", "()V"},
      Wanted{&Methods::setPolicy, "SetPolicy", "([Ljava/lang/String;Z[Ljava/lang/String;Z)V"},
  };
  return std::ranges::all_of(wanted, [&](const Wanted &each) {
    return methods.*each.method = java->GetMethodID(type, each.name, each.signature.c_str());
  });
}

template <class Result, class Body>
std::optional<Result> XSLTManagedLayer::RunInJava(Body body, const processors::JavaPump::Condition &mustGiveUp) {
  struct Work {
    Result result{};
    std::string fault;
  };
  const auto work = std::make_shared<Work>();
  const bool returned = pump.RunOnJava(
      [java = machine.get(), body = std::move(body), work] {
        const processors::LocalFrame frame(java->Environment());
        body(*java, work->result);
        work->fault = java->TakeException();
      },
      mustGiveUp);
  if (!returned)
    return std::nullopt;
  if (!work->fault.empty())
    report::ReportProblem(report::MessageId::JavaFailed, {work->fault});
  return std::move(work->result);
}

void XSLTManagedLayer::NoteLoss() {
  problem = report::LoadMessage(report::MessageId::JavaEnded);
  report::ReportProblem(problem);
}

// The transformation cannot be stopped and goes on, but its outputs are discarded.
void XSLTManagedLayer::GiveUp() {
  problem = report::LoadMessage(report::MessageId::JavaGivenUp);
  report::ReportProblem(report::MessageId::TransformationGivenUp);
  const auto isDone = std::make_shared<std::promise<void>>();
  std::future<void> done = isDone->get_future();
  // Java may have no memory left even for that.
  std::thread([java = machine.get(), called = methods, isDone] {
    java->RunAttached([&](JNIEnv &attached) { attached.CallVoidMethod(called.layer, called.discardOutputs); });
    isDone->set_value();
  }).detach();
  static_cast<void>(done.wait_for(discardTime));
}

bool XSLTManagedLayer::SelectFactory(const processors::Factory &factory) {
  if (factory.className.empty() || !EnsureJava(factory.className))
    return false;
  const bool isNewPolicy = std::exchange(hasNewPolicy, false);
  const auto result = RunInJava<int32_t>(
      [called = methods, factory, isNewPolicy, trusted = policy](const JavaMachine &java, int32_t &returned) {
        if (isNewPolicy)
          java.Environment()->CallVoidMethod(called.layer, called.setPolicy, java.MakeStringArray(trusted.hosts),
                                             static_cast<jboolean>(trusted.allowsExtensions),
                                             java.MakeStringArray(trusted.writeFolders),
                                             static_cast<jboolean>(trusted.syncsOutputs));
        if (java.Environment()->ExceptionCheck())
          return;
        returned = java.Environment()->CallIntMethod(called.layer, called.setTransformer,
                                                     java.MakeString(factory.className.c_str()),
                                                     java.MakeStringArray(factory.attributes));
      });
  if (!result)
    NoteLoss();
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

void XSLTManagedLayer::SetThreads(int32_t given) { threads = given; }

void XSLTManagedLayer::ExpectJob(const processors::Job &job) { expected.push_back(job); }

void XSLTManagedLayer::EndRun() {
  expected.clear();
  threads.reset();
  if (!machine || isParked || !problem.empty())
    return;
  struct Nothing {};
  if (!RunInJava<Nothing>([called = methods](const JavaMachine &java, Nothing &) {
        java.Environment()->CallVoidMethod(called.layer, called.endRun);
      }))
    NoteLoss();
}

processors::JobResult XSLTManagedLayer::TransformXMLFile(const processors::Job &job) {
  std::optional<processors::JobResult> result;
  bool isGivenUp = false;
  const auto mustGiveUp = [&isGivenUp] { return isGivenUp = V_ApiIsCancelled() == V_CANCEL_AT_ONCE; };
  if (EnsureJava({})) {
    result = RunInJava<processors::JobResult>(
        [called = methods, job, newThreads = std::exchange(threads, {}),
         following = std::exchange(expected, {})](const JavaMachine &java, processors::JobResult &done) {
          const ResultOfJob end(done);
          JNIEnv *environment = java.Environment();
          if (newThreads)
            environment->CallVoidMethod(called.layer, called.setThreads, static_cast<jint>(*newThreads));
          for (const processors::Job &each : following) {
            const processors::LocalFrame frame(environment);
            if (each.number > job.number && !environment->ExceptionCheck())
              environment->CallVoidMethodA(called.layer, called.expectJob, JobArguments(java, each).data());
          }
          if (environment->ExceptionCheck())
            return;
          if (environment->CallIntMethodA(called.layer, called.transform, JobArguments(java, job).data()) == success)
            done.status = processors::JobStatus::Done;
        },
        mustGiveUp);
    if (result && result->status == processors::JobStatus::Done)
      machine->NoteSuccess();
    else if (!result && isGivenUp)
      GiveUp();
    else if (!result)
      NoteLoss();
  }
  processors::VLXSLTEntityResolverC::GetInstance().Terminate();
  const auto without = isGivenUp ? processors::JobStatus::Cancelled : processors::JobStatus::Failed;
  return result.value_or(processors::JobResult{without});
}

processors::ProcessorProbe XSLTManagedLayer::ProbeProcessor(const processors::Factory &factory) {
  if (!EnsureJava({}))
    return {.error = problem};
  const auto probe = RunInJava<processors::ProcessorProbe>(
      [called = methods, factory](const JavaMachine &java, processors::ProcessorProbe &found) {
        JNIEnv *environment = java.Environment();
        auto fields = static_cast<jobjectArray>(
            environment->CallObjectMethod(called.layer, called.probe, java.MakeString(factory.className.c_str()),
                                          java.MakeStringArray(factory.attributes)));
        if (!fields)
          return;
        const auto field = [&](jsize index) {
          return processors::ReadString(environment,
                                        static_cast<jstring>(environment->GetObjectArrayElement(fields, index)));
        };
        found = {field(0), field(1), java.OriginalOf(field(2)), field(3)};
      });
  if (!probe)
    NoteLoss();
  return probe.value_or(processors::ProcessorProbe{.error = problem});
}

// Needs no machine here, and makes none.
bool XSLTManagedLayer::PrepareStart(const processors::Factory &factory) {
  std::string reason;
  const processors::MachineSetup setup = MakeSetup(factory.className, reason);
  if (!reason.empty())
    report::ReportProblem(reason);
  return reason.empty() && processors::PrepareMachine(setup);
}

std::string XSLTManagedLayer::AdviseOnStart() {
  const processors::JavaInstallation used = processors::FindJava(kit::GetString(V_SESSION, V_SP_JAVA_HOME));
  const processors::JavaInstallation faster = processors::FindFasterJava(used);
  return faster.home.empty() ? std::string()
                             : report::FormatMessage(report::MessageId::JavaFasterInstalled,
                                                     {used.version, used.home, faster.version, faster.home});
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
