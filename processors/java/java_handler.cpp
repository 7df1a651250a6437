#include "processors/java/java_handler.h"

#include "kit/utf16.h"
#include "kit/values.h"
#include "processors/entity_resolver.h"
#include "processors/java/java_machine.h"
#include "report/run_event.h"
#include "report/xslt_error_handler.h"

#include <array>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace VLXSLT {

namespace {

using processors::ReadString;

processors::JavaPump *pumpOfMachine = nullptr;
thread_local processors::JobResult *resultOfThread = nullptr;

template <class Call> void Guard(const Call &call) {
  try {
    call();
  } catch (...) {
    report::ReportProblem(report::MessageId::ProcessorMessageLost);
  }
}

// Runs on the host's thread while this one waits. No C++ exception crosses a Java frame; what cannot be carried out for
// lack of memory is left out.
template <class Call> void OnHost(Call call) noexcept {
  try {
    const processors::JavaPump::Task guarded = [&call] { Guard(call); };
    pumpOfMachine->RunOnHost(guarded);
  } catch (...) {
    return;
  }
}

// What the host does when it comes to it, and how many bytes it holds until then.
struct Left {
  std::function<void()> call;
  size_t size;
};

// This thread goes on: what needs no answer would have it wait for two changes of threads.
template <class Make> void LeaveToHost(const Make &make) noexcept {
  try {
    const Left left = make();
    pumpOfMachine->LeaveToHost([call = left.call] { Guard(call); }, left.size);
  } catch (...) {
    return; // for lack of memory
  }
}

VLXSLTJavaHandlerImpl &Handler() { return VLXSLTJavaHandlerImpl::GetInstance(); }

using ReportDiagnostic = void (VLXSLTJavaHandlerImpl::*)(const VLXSLTJavaHandlerImpl::Diagnostic &);

template <ReportDiagnostic Method>
void JNICALL NativeReport(JNIEnv *environment, jobject, jstring message, jstring publicId, jstring systemId, jint line,
                          jint column, jstring code) noexcept {
  LeaveToHost([&] {
    const VLXSLTJavaHandlerImpl::Diagnostic diagnostic{ReadString(environment, message),
                                                       ReadString(environment, publicId),
                                                       ReadString(environment, systemId),
                                                       ReadString(environment, code),
                                                       line,
                                                       column};
    return Left{[diagnostic] { (Handler().*Method)(diagnostic); }, diagnostic.message.size()};
  });
}

void JNICALL NativeMessage(JNIEnv *environment, jobject, jstring message) noexcept {
  LeaveToHost([&] {
    const std::string text = ReadString(environment, message);
    return Left{[text] { Handler().Message(text); }, text.size()};
  });
}

jstring JNICALL NativeResolve(JNIEnv *environment, jobject, jstring, jstring publicId, jstring baseUri,
                              jstring systemId) noexcept {
  std::string found;
  OnHost([&, publicText = ReadString(environment, publicId), base = ReadString(environment, baseUri),
          system = ReadString(environment, systemId)] { found = Handler().ResolveEntity(publicText, base, system); });
  const std::u16string utf16 = kit::ToUtf16(found);
  return environment->NewString(reinterpret_cast<const jchar *>(utf16.data()), static_cast<jsize>(utf16.size()));
}

void JNICALL NativeStart(JNIEnv *environment, jobject, jstring filePath) noexcept {
  LeaveToHost([&] {
    const std::string path = ReadString(environment, filePath);
    return Left{[path] { Handler().StartDocument(path); }, path.size()};
  });
}

void JNICALL NativeEnd(JNIEnv *, jobject) noexcept {
  LeaveToHost([] { return Left{[] { Handler().EndDocument(); }, 0}; });
}

std::vector<std::string> ReadStrings(JNIEnv *environment, jobjectArray array) {
  std::vector<std::string> texts;
  const jsize count = environment->GetArrayLength(array);
  texts.reserve(static_cast<size_t>(count));
  for (jsize index = 0; index < count; ++index) {
    jobject text = environment->GetObjectArrayElement(array, index);
    texts.push_back(ReadString(environment, static_cast<jstring>(text)));
    environment->DeleteLocalRef(text);
  }
  return texts;
}

// Stays on the thread of the job: the host has no part in it.
void JNICALL NativeJobDone(JNIEnv *environment, jobject, jobjectArray outputs, jobjectArray files) noexcept {
  try {
    if (resultOfThread) {
      resultOfThread->secondaryOutputs = ReadStrings(environment, outputs);
      resultOfThread->filesRead = ReadStrings(environment, files);
    }
  } catch (...) {
    return; // for lack of memory
  }
}

template <class Function> JNINativeMethod Method(const char *name, const char *signature, Function function) {
  // The table's texts are not written to.
  return {const_cast<char *>(name), const_cast<char *>(signature), reinterpret_cast<void *>(function)};
}

} // namespace

VLXSLTJavaHandlerImpl &VLXSLTJavaHandlerImpl::GetInstance() {
  static VLXSLTJavaHandlerImpl handler;
  return handler;
}

void VLXSLTJavaHandlerImpl::FatalError(const Diagnostic &what) {
  report::XSLTErrorHandler::GetInst().ReportFatalError(what.message.c_str(), what.publicId.c_str(),
                                                       what.systemId.c_str(), what.line, what.column,
                                                       kit::OrNull(what.code));
}

void VLXSLTJavaHandlerImpl::Error(const Diagnostic &what) {
  report::XSLTErrorHandler::GetInst().ReportError(what.message.c_str(), what.publicId.c_str(), what.systemId.c_str(),
                                                  what.line, what.column, kit::OrNull(what.code));
}

void VLXSLTJavaHandlerImpl::Warning(const Diagnostic &what) {
  report::XSLTErrorHandler::GetInst().ReportWarn(what.message.c_str(), what.publicId.c_str(), what.systemId.c_str(),
                                                 what.line, what.column, kit::OrNull(what.code));
}

void VLXSLTJavaHandlerImpl::Message(const std::string &message) {
  report::XSLTErrorHandler::GetInst().ReportMessage(message.c_str());
}

std::string VLXSLTJavaHandlerImpl::ResolveEntity(const std::string &publicId, const std::string &baseUri,
                                                 const std::string &systemId) {
  return processors::VLXSLTEntityResolverC::GetInstance()
      .ResolveEntity(publicId.c_str(), baseUri.c_str(), systemId.c_str())
      .Text();
}

void VLXSLTJavaHandlerImpl::StartDocument(const std::string &filePath) {
  processors::VLXSLTEntityResolverC::GetInstance().Start(filePath.c_str());
}

void VLXSLTJavaHandlerImpl::EndDocument() { processors::VLXSLTEntityResolverC::GetInstance().End(); }

ResultOfJob::ResultOfJob(processors::JobResult &result) { resultOfThread = &result; }

ResultOfJob::~ResultOfJob() { resultOfThread = nullptr; }

bool RegisterHandler(JNIEnv *environment, processors::JavaPump &pump) {
  pumpOfMachine = &pump;
  constexpr const char *diagnostic = "(Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;IILjava/lang/String;)V";
  using Impl = VLXSLTJavaHandlerImpl;
  const std::array methods = {
      Method("FatalError", diagnostic, NativeReport<&Impl::FatalError>),
      Method("Error", diagnostic, NativeReport<&Impl::Error>),
      Method("Warning", diagnostic, NativeReport<&Impl::Warning>),
      Method("Message", "(Ljava/lang/String;)V", NativeMessage),
      Method("ResolveEntity",
             "(Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;)Ljava/lang/String;",
             NativeResolve),
      Method("StartDocument", "(Ljava/lang/String;)V", NativeStart),
      Method("EndDocument", "()V", NativeEnd),
      Method("JobDone", "([Ljava/lang/String;[Ljava/lang/String;)V", NativeJobDone),
  };
  jclass handler = environment->FindClass("vlxslt/NativeHandler");
  return handler && environment->RegisterNatives(handler, methods.data(), static_cast<jint>(methods.size())) == JNI_OK;
}

} // namespace VLXSLT
