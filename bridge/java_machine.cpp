#include "bridge/java_machine.h"

#include "bridge/java_home.h"
#include "bridge/messages.h"
#include "bridge/program_files.h"
#include "bridge/pump.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <dlfcn.h>
#include <mutex>

namespace bridge {

namespace {

// What the virtual machine says while it starts; afterwards its words go to standard error as usual.
class MachineOutput {
public:
  void Add(FILE *stream, const char *format, va_list arguments) {
    std::array<char, 2048> text{};
    std::vsnprintf(text.data(), text.size(), format, arguments);
    const std::scoped_lock lock(mutex);
    if (isStarting)
      words += text.data();
    else
      std::fputs(text.data(), stream ? stream : stderr);
  }
  [[nodiscard]] std::string Take() {
    const std::scoped_lock lock(mutex);
    isStarting = false;
    std::ranges::replace(words, '\n', ' ');
    while (words.ends_with(' '))
      words.pop_back();
    return std::exchange(words, {});
  }

private:
  std::mutex mutex;
  std::string words;
  bool isStarting = true;
};

MachineOutput &TheOutput() {
  static auto *output = new MachineOutput;
  return *output;
}

jint JNICALL PrintForMachine(FILE *stream, const char *format, va_list arguments) {
  TheOutput().Add(stream, format, arguments);
  return 0;
}

// The virtual machine would end the process. A stylesheet that calls for that, or options that it cannot start with,
// must not take the host down.
void JNICALL ExitFromMachine(jint) { Pump::GetInst().AbandonThread(); }

using CreateFunction = jint(JNICALL *)(JavaVM **, void **, void *);

const std::vector<std::string> ownOptions = {
    "-Xrs", // Ctrl-C belongs to the host
    "-Xlog:disable",
    "-Xlog:all=error:stderr",
    "-XX:-UsePerfData",
    "-Djava.awt.headless=true",
    // Paths are UTF-8 whatever the locale says.
    "-Dfile.encoding=UTF-8",
    "-Dsun.jnu.encoding=UTF-8",
    // A document that a stylesheet fetches from the network may be slow, but not for ever.
    "-Dsun.net.client.defaultConnectTimeout=10000",
    "-Dsun.net.client.defaultReadTimeout=30000",
};

bool ChoosesCollector(const std::string &option) { return option.starts_with("-XX:+Use") && option.ends_with("GC"); }

} // namespace

JavaMachine &JavaMachine::GetInst() {
  static auto *machine = new JavaMachine;
  return *machine;
}

const std::string &JavaMachine::Start(const JavaSettings &settings) {
  if (wasStarted)
    return failure;
  wasStarted = true;
  const JavaSearch search = FindJava(settings.home);
  if (search.found.library.empty()) {
    std::string places;
    for (const std::string &place : search.places)
      places += (places.empty() ? "" : "; ") + place;
    failure = FormatMessage(MessageId::JavaNotFound, {std::to_string(oldestJava), places});
    return failure;
  }
  ComposeOptions(settings, search.found.library);
  const std::string reason = Create(search.found.library);
  if (!reason.empty())
    failure = FormatMessage(MessageId::JavaNotStarted, {search.found.home, reason});
  return failure;
}

void JavaMachine::ComposeOptions(const JavaSettings &settings, const std::string &library) {
  const std::vector<std::string> classPath = ComposeClassPath(settings.classPath);
  std::string joined;
  for (const std::string &entry : classPath)
    joined += (joined.empty() ? "" : ":") + entry;
  optionTexts = ownOptions;
  optionTexts.push_back("-Djava.class.path=" + joined);
  // The smallest and quickest to start; the work is done on one thread anyway.
  if (std::ranges::none_of(settings.options, ChoosesCollector))
    optionTexts.emplace_back("-XX:+UseSerialGC");
  optionTexts.insert(optionTexts.end(), settings.options.begin(), settings.options.end());
  std::vector<std::string> files = classPath;
  files.push_back(library);
  archive = std::make_unique<ClassArchive>(files, optionTexts);
  const std::vector<std::string> archiveOptions = archive->JavaOptions();
  optionTexts.insert(optionTexts.begin(), archiveOptions.begin(), archiveOptions.end());
}

std::string JavaMachine::Create(const std::string &library) {
  void *handle = dlopen(library.c_str(), RTLD_NOW | RTLD_GLOBAL);
  void *create = handle ? dlsym(handle, "JNI_CreateJavaVM") : nullptr;
  if (!create) {
    const char *error = dlerror();
    return error ? error : "no JNI_CreateJavaVM in it";
  }
  KeepLoaded();
  jint result = JNI_ERR;
  const auto outcome = Pump::GetInst().Run([&] { result = CreateWith(create); });
  std::string words = TheOutput().Take();
  if (outcome == Pump::Outcome::Done && result == JNI_OK)
    return {};
  machine = nullptr;
  return words.empty() ? "error " + std::to_string(result) : words;
}

jint JavaMachine::CreateWith(void *create) {
  std::vector<JavaVMOption> options;
  options.push_back({const_cast<char *>("vfprintf"), reinterpret_cast<void *>(PrintForMachine)});
  options.push_back({const_cast<char *>("exit"), reinterpret_cast<void *>(ExitFromMachine)});
  for (std::string &text : optionTexts)
    options.push_back({text.data(), nullptr});
  JavaVMInitArgs arguments{JNI_VERSION_10, static_cast<jint>(options.size()), options.data(), JNI_FALSE};
  return reinterpret_cast<CreateFunction>(create)(&machine, reinterpret_cast<void **>(&environment), &arguments);
}

bool JavaMachine::Run(const std::function<void(JNIEnv &)> &job) {
  if (!IsRunning())
    return false;
  const auto outcome = Pump::GetInst().Run([&] {
    // The thread never returns to Java, so nothing else would free what a job leaves.
    if (environment->PushLocalFrame(64) == 0) {
      job(*environment);
      environment->PopLocalFrame(nullptr);
    }
    environment->ExceptionClear();
  });
  if (outcome == Pump::Outcome::ThreadLost) {
    lost = true;
    failure = LoadMessage(MessageId::JavaEnded);
  }
  return !lost;
}

void JavaMachine::Stop() {
  if (!IsRunning())
    return;
  const bool writes = archive->IsToBeWritten() && wasUsed;
  // Without an archive to write there is nothing to wait for: the process ends Java by ending.
  if (writes)
    (void)Pump::GetInst().Run([this] { machine->DestroyJavaVM(); });
  archive->Finish(writes ? ClassArchive::Verdict::Keep : ClassArchive::Verdict::Drop);
  machine = nullptr;
  failure = LoadMessage(MessageId::JavaEnded);
}

} // namespace bridge
