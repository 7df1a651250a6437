#include "bridge/java_machine.h"

#include "bridge/utf16.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <dlfcn.h>
#include <unistd.h>

namespace bridge {

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

// A stylesheet's extension may call System.exit, and some options make the machine give up: neither may take the host
// down. This thread stays here for ever.
void JNICALL RefuseExit(jint) {
  TheCreation().abandon();
  for (;;)
    pause();
}

// Paths are UTF-8 whatever the locale says. Measured: the serial collector starts faster and needs less memory than the
// others on inputs of a few megabytes.
constexpr std::array ownOptions = {"-Xrs",
                                   "-Xshare:auto",
                                   "-Xlog:cds=off",
                                   "-Xlog:cds+dynamic=off",
                                   "-XX:+UseSerialGC",
                                   "-XX:-UsePerfData",
                                   "-Dsun.jnu.encoding=UTF-8",
                                   "-Dfile.encoding=UTF-8",
                                   "-Djava.awt.headless=true"};

std::string Join(const std::vector<std::string> &entries) {
  std::string joined;
  for (const std::string &entry : entries)
    joined += (joined.empty() ? "" : ":") + entry;
  return joined;
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
    problem = "Java cannot be loaded: " + std::string(dlerror());
    return nullptr;
  }
  std::vector<std::string> options(ownOptions.begin(), ownOptions.end());
  std::vector<std::string> archived = setup.classPath;
  archived.push_back(setup.library);
  options.insert(options.end(), setup.options.begin(), setup.options.end());
  ClassArchive archive(archived, options);
  options.push_back("-Djava.class.path=" + Join(setup.classPath));
  if (const std::string option = archive.Option(); !option.empty())
    options.insert(options.begin(), option);

  std::vector<JavaVMOption> given = {Hook("vfprintf", ListenToMachine), Hook("exit", RefuseExit)};
  for (std::string &option : options)
    given.push_back({option.data(), nullptr});
  JavaVMInitArgs arguments{JNI_VERSION_10, static_cast<jint>(given.size()), given.data(), JNI_FALSE};
  TheCreation() = {true, {}, setup.abandon};
  JavaVM *machine = nullptr;
  void *environment = nullptr;
  const jint result = create(&machine, &environment, &arguments);
  TheCreation().isListening = false;
  if (result != JNI_OK) {
    problem = MachineWords();
    return nullptr;
  }
  return std::unique_ptr<JavaMachine>(new JavaMachine(machine, static_cast<JNIEnv *>(environment), std::move(archive)));
}

std::string MachineWords() {
  return "Java refuses to start: " + OneLine(TheCreation().words) + " Check java_options in the configuration.";
}

JavaMachine::~JavaMachine() {
  machine->DestroyJavaVM();
  archive.Keep();
}

jstring JavaMachine::MakeString(const char *text) const {
  if (!text)
    return nullptr;
  const std::u16string utf16 = ToUtf16(text);
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
  return ToUtf8(utf16);
}

} // namespace bridge
