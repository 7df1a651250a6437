#include "processors/java/java_machine.h"

#include "kit/utf16.h"
#include "report/messages.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <iterator>
#include <jvmti.h>
#include <langinfo.h>
#include <optional>
#include <string_view>
#include <unistd.h>

namespace processors {

namespace {

using CreateMachine = jint (*)(JavaVM **, void **, void *);

// What the machine says of itself while it is created, and the way out that it takes instead of ending the process.
struct Creation {
  bool isListening = false;
  std::string words;
  std::function<void()> abandon;
};

Creation &TheCreation() {
  static Creation creation;
  return creation;
}

jint JNICALL ListenToMachine(FILE *stream, const char *format, va_list values) {
  if (!TheCreation().isListening)
    return std::vfprintf(stream, format, values);
  std::array<char, 1024> line{};
  const int length = std::vsnprintf(line.data(), line.size(), format, values);
  TheCreation().words += line.data();
  return length;
}

// A stylesheet's extension may call System.exit, and some options make the machine give up: neither may end the host's
// process. The thread must not return to the machine, so it stops here.
void JNICALL RefuseExit(jint) {
  TheCreation().abandon();
  for (;;)
    pause();
}

// The way out of a machine that cannot be created. A crash later on is left to take its course: nothing that runs on
// after it could be trusted.
void JNICALL RefuseAbort() {
  if (TheCreation().isListening)
    RefuseExit(1);
}

// Java takes the encoding of file names from the environment when it is created, and lets no option override it. Ours
// are UTF-8 whatever the locale says, so while this lives the environment says so too.
class Utf8Environment {
public:
  Utf8Environment() {
    const locale_t locale = newlocale(LC_CTYPE_MASK, "", nullptr);
    isNeeded = !locale || std::string_view(nl_langinfo_l(CODESET, locale)) != "UTF-8";
    if (locale)
      freelocale(locale);
    if (const char *value = isNeeded ? std::getenv(variable) : nullptr)
      before = value;
    if (isNeeded)
      setenv(variable, "C.UTF-8", 1);
  }
  ~Utf8Environment() {
    if (isNeeded && before)
      setenv(variable, before->c_str(), 1);
    else if (isNeeded)
      unsetenv(variable);
  }
  Utf8Environment(const Utf8Environment &) = delete;
  Utf8Environment &operator=(const Utf8Environment &) = delete;

private:
  static constexpr const char *variable = "LC_ALL";
  bool isNeeded = false;
  std::optional<std::string> before;
};

constexpr std::array ownOptions = {
    "-Xrs", // Ctrl-C belongs to the host
    // Standard output is for data.
    "-Xlog:disable",
    "-Xlog:all=error:stderr",
    "-XX:-UsePerfData",
    "-Dfile.encoding=UTF-8",
    "-Djava.awt.headless=true",
    // What a stylesheet fetches from the network may take its time, but must end.
    "-Dsun.net.client.defaultConnectTimeout=10000",
    "-Dsun.net.client.defaultReadTimeout=30000",
};

bool ChoosesCollector(const std::string &option) { return option.starts_with("-XX:+Use") && option.ends_with("GC"); }

// How much memory a run begins with. By default that goes by the size of the machine, and the time by how much of it is
// touched before it is collected.
constexpr std::array ownHeap = {"-Xms128m", "-XX:NewSize=96m"};

bool ChoosesHeap(std::string_view text) {
  return std::ranges::any_of(std::array{"-Xm", "HeapSize", "NewSize", "NewRatio", "MaxRAM", "RAMPercentage"},
                             [text](const char *part) { return text.find(part) != text.npos; });
}

bool IsHeapChosen(const std::vector<std::string> &options) {
  const auto isChosenBy = [](const char *variable) {
    const char *value = std::getenv(variable);
    return value && ChoosesHeap(value);
  };
  return std::ranges::any_of(options, ChoosesHeap) || isChosenBy("JAVA_TOOL_OPTIONS") || isChosenBy("_JAVA_OPTIONS");
}

// Measured: the second compiler costs more than it brings until a run lasts for minutes.
constexpr const char *quickCompilerOnly = "-XX:TieredStopAtLevel=1";

std::string Join(const std::vector<std::string> &entries) {
  std::string joined;
  for (const std::string &entry : entries)
    joined += (joined.empty() ? "" : ":") + entry;
  return joined;
}

// All but the class path and what depends on the run.
std::vector<std::string> ComposeOptions(const MachineSetup &setup) {
  std::vector<std::string> options(ownOptions.begin(), ownOptions.end());
  // Measured: it starts faster and needs less memory than the others on inputs of a few megabytes.
  if (std::ranges::none_of(setup.options, ChoosesCollector))
    options.emplace_back("-XX:+UseSerialGC");
  if (!IsHeapChosen(setup.options))
    options.insert(options.end(), ownHeap.begin(), ownHeap.end());
  options.insert(options.end(), setup.options.begin(), setup.options.end());
  return options;
}

ClassArchive FindArchive(const MachineSetup &setup) {
  return ClassArchive({setup.home, setup.library, setup.factory, setup.classPath, ComposeOptions(setup)});
}

template <class Function> JavaVMOption Hook(const char *name, Function function) {
  // The hooks' names are not written to.
  return {const_cast<char *>(name), reinterpret_cast<void *>(function)};
}

std::string OneLine(std::string words) {
  for (char &letter : words)
    if (letter == '\n')
      letter = ' ';
  while (!words.empty() && words.back() == ' ')
    words.pop_back();
  return words;
}

} // namespace

std::unique_ptr<JavaMachine> JavaMachine::Create(const MachineSetup &setup, std::string &problem) {
  void *library = dlopen(setup.library.c_str(), RTLD_NOW | RTLD_GLOBAL);
  const auto create =
      library ? reinterpret_cast<CreateMachine>(dlsym(library, "JNI_CreateJavaVM")) : CreateMachine(nullptr);
  if (!create) {
    problem = report::FormatMessage(report::MessageId::JavaNotLoaded, {dlerror()});
    return nullptr;
  }
  std::unique_ptr<JavaMachine> made(new JavaMachine);
  made->archive = FindArchive(setup);
  std::vector<std::string> options = {"-Djava.class.path=" + Join(made->archive.ClassPath())};
  // In front of the user's, which win.
  if (!setup.isForLongRun)
    options.emplace_back(quickCompilerOnly);
  if (const std::string option = made->archive.Option(); !option.empty())
    options.push_back(option);
  std::ranges::copy(ComposeOptions(setup), std::back_inserter(options));

  std::vector<JavaVMOption> given = {Hook("vfprintf", ListenToMachine), Hook("exit", RefuseExit),
                                     Hook("abort", RefuseAbort)};
  for (std::string &option : options)
    given.push_back({option.data(), nullptr});
  JavaVMInitArgs arguments{JNI_VERSION_10, static_cast<jint>(given.size()), given.data(), JNI_FALSE};
  TheCreation() = {true, {}, setup.abandon};
  void *environment = nullptr;
  const Utf8Environment environmentOfJava;
  const jint result = create(&made->machine, &environment, &arguments);
  TheCreation().isListening = false;
  if (result != JNI_OK) {
    made->machine = nullptr;
    problem = MachineWords();
    return nullptr;
  }
  made->environment = static_cast<JNIEnv *>(environment);
  return made;
}

bool PrepareMachine(const MachineSetup &setup) { return FindArchive(setup).Write(); }

std::string MachineWords() {
  return report::FormatMessage(report::MessageId::JavaNotStarted, {OneLine(TheCreation().words)});
}

JavaMachine::~JavaMachine() {
  if (machine)
    machine->DestroyJavaVM();
}

void JavaMachine::Park() {
  if (hasSucceeded && archive.IsMissing())
    archive.WriteInBackground(ListClasses());
  hasSucceeded = false;
  environment = nullptr;
  machine->DetachCurrentThread();
}

bool JavaMachine::Resume() {
  environment = Attach();
  return environment;
}

JNIEnv *JavaMachine::Attach() const {
  void *attached = nullptr;
  JavaVMAttachArgs arguments{JNI_VERSION_10, nullptr, nullptr};
  return machine->AttachCurrentThread(&attached, &arguments) == JNI_OK ? static_cast<JNIEnv *>(attached) : nullptr;
}

void JavaMachine::RunAttached(const std::function<void(JNIEnv &)> &work) const {
  if (JNIEnv *attached = Attach()) {
    work(*attached);
    attached->ExceptionClear();
    machine->DetachCurrentThread();
  }
}

std::vector<std::string> JavaMachine::ListClasses() const {
  std::vector<std::string> names;
  void *found = nullptr;
  if (machine->GetEnv(&found, JVMTI_VERSION_11) != JNI_OK)
    return names;
  auto *tools = static_cast<jvmtiEnv *>(found);
  jint count = 0;
  jclass *classes = nullptr;
  if (tools->GetLoadedClasses(&count, &classes) != JVMTI_ERROR_NONE)
    return names;
  for (jint i = 0; i < count; ++i) {
    char *signature = nullptr;
    if (tools->GetClassSignature(classes[i], &signature, nullptr) != JVMTI_ERROR_NONE)
      continue;
    const std::string_view text = signature;
    // "Lorg/example/Name;"; arrays and classes made at run time have other forms.
    if (text.starts_with('L') && text.find('.') == std::string_view::npos && text.find("$Proxy") == text.npos)
      names.emplace_back(text.substr(1, text.size() - 2));
    tools->Deallocate(reinterpret_cast<unsigned char *>(signature));
    environment->DeleteLocalRef(classes[i]);
  }
  tools->Deallocate(reinterpret_cast<unsigned char *>(classes));
  return names;
}

jstring JavaMachine::MakeString(const char *text) const {
  if (!text)
    return nullptr;
  const std::u16string utf16 = kit::ToUtf16(text);
  return environment->NewString(reinterpret_cast<const jchar *>(utf16.data()), static_cast<jsize>(utf16.size()));
}

jobjectArray JavaMachine::MakeStringArray(const std::vector<std::string> &items) const {
  jclass stringClass = environment->FindClass("java/lang/String");
  jobjectArray array = environment->NewObjectArray(static_cast<jsize>(items.size()), stringClass, nullptr);
  for (size_t index = 0; array && index < items.size(); ++index) {
    jstring item = MakeString(items[index].c_str());
    environment->SetObjectArrayElement(array, static_cast<jsize>(index), item);
    environment->DeleteLocalRef(item);
  }
  return array;
}

std::string JavaMachine::TakeException() const {
  jthrowable pending = environment->ExceptionOccurred();
  if (!pending)
    return {};
  environment->ExceptionClear();
  jmethodID toString =
      environment->GetMethodID(environment->GetObjectClass(pending), "toString", "()Ljava/lang/String;");
  auto text = static_cast<jstring>(environment->CallObjectMethod(pending, toString));
  if (environment->ExceptionCheck()) {
    environment->ExceptionClear();
    return "a Java exception that cannot be described";
  }
  return ReadString(environment, text);
}

std::string ReadString(JNIEnv *environment, jstring text) {
  if (!text)
    return {};
  std::u16string utf16(static_cast<size_t>(environment->GetStringLength(text)), u'\0');
  environment->GetStringRegion(text, 0, static_cast<jsize>(utf16.size()), reinterpret_cast<jchar *>(utf16.data()));
  return kit::ToUtf8(utf16);
}

} // namespace processors
