#include "bridge/java_layer.h"

#include "bridge/java_handler.h"
#include "bridge/java_machine.h"
#include "bridge/messages.h"
#include "bridge/pump.h"
#include "bridge/string_conversion.h"
#include "bridge/xslt_error_handler.h"

#include <array>
#include <exception>

namespace bridge {

namespace {

using VLXSLT::VLXSLTJavaHandlerImpl;

jstring ToJava(JNIEnv &env, std::string_view utf8) {
  const std::u16string text = ToUtf16(utf8);
  return env.NewString(reinterpret_cast<const jchar *>(text.data()), static_cast<jsize>(text.size()));
}

// "No value" for null, and null for "no value", is all the same: empty.
std::string ToHost(JNIEnv &env, jstring string) {
  if (!string)
    return {};
  std::u16string text(static_cast<size_t>(env.GetStringLength(string)), u'\0');
  env.GetStringRegion(string, 0, static_cast<jsize>(text.size()), reinterpret_cast<jchar *>(text.data()));
  return ToUtf8(text);
}

// A list without items is no list.
jobjectArray ToJava(JNIEnv &env, const std::vector<std::string> &items) {
  if (items.empty())
    return nullptr;
  jobjectArray array = env.NewObjectArray(static_cast<jsize>(items.size()), env.FindClass("java/lang/String"), nullptr);
  for (size_t i = 0; array && i < items.size(); ++i) {
    jstring item = ToJava(env, items[i]);
    env.SetObjectArrayElement(array, static_cast<jsize>(i), item);
    env.DeleteLocalRef(item);
  }
  return array;
}

// ---- Natives: each gathers its arguments, has the handler carry it out on the host's thread, and waits.

template <class Call> void OnHost(Call call) noexcept {
  try {
    Pump::GetInst().CallHost([&] {
      try {
        call();
      } catch (const std::exception &error) {
        XSLTErrorHandler::GetInst().ReportMessage(error.what());
      }
    });
  } catch (...) {
    // Java goes on without it; nothing may be thrown through its frames.
  }
}

using Report = void (VLXSLTJavaHandlerImpl::*)(const std::string &, const std::string &, const std::string &, int32_t,
                                               int32_t);

template <Report report>
void JNICALL ReportProblem(JNIEnv *env, jobject, jstring message, jstring publicId, jstring systemId, jint line,
                           jint column) {
  OnHost([text = ToHost(*env, message), pub = ToHost(*env, publicId), sys = ToHost(*env, systemId), line, column] {
    (VLXSLTJavaHandlerImpl::GetInstance().*report)(text, pub, sys, line, column);
  });
}

void JNICALL ReportText(JNIEnv *env, jobject, jstring message) {
  OnHost([text = ToHost(*env, message)] { VLXSLTJavaHandlerImpl::GetInstance().Message(text); });
}

jstring JNICALL ResolveEntity(JNIEnv *env, jobject, jstring name, jstring publicId, jstring baseURI, jstring systemId) {
  std::string resolved;
  OnHost([&resolved, entity = ToHost(*env, name), pub = ToHost(*env, publicId), base = ToHost(*env, baseURI),
          sys = ToHost(*env, systemId)] {
    resolved = VLXSLTJavaHandlerImpl::GetInstance().ResolveEntity(entity, pub, base, sys);
  });
  return ToJava(*env, resolved);
}

void JNICALL StartDocument(JNIEnv *env, jobject, jstring filePath) {
  OnHost([path = ToHost(*env, filePath)] { VLXSLTJavaHandlerImpl::GetInstance().StartDocument(path); });
}

void JNICALL EndDocument(JNIEnv *, jobject) {
  OnHost([] { VLXSLTJavaHandlerImpl::GetInstance().EndDocument(); });
}

struct NativeMethod {
  const char *name;
  const char *signature;
  void *function;
};

constexpr const char *problemSignature = "(Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;II)V";

bool RegisterNatives(JNIEnv &env) {
  static const std::array<NativeMethod, 7> table{{
      {"FatalError", problemSignature, reinterpret_cast<void *>(ReportProblem<&VLXSLTJavaHandlerImpl::FatalError>)},
      {"Error", problemSignature, reinterpret_cast<void *>(ReportProblem<&VLXSLTJavaHandlerImpl::Error>)},
      {"Warning", problemSignature, reinterpret_cast<void *>(ReportProblem<&VLXSLTJavaHandlerImpl::Warning>)},
      {"Message", "(Ljava/lang/String;)V", reinterpret_cast<void *>(ReportText)},
      {"ResolveEntity", "(Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;)Ljava/lang/String;",
       reinterpret_cast<void *>(ResolveEntity)},
      {"StartDocument", "(Ljava/lang/String;)V", reinterpret_cast<void *>(StartDocument)},
      {"EndDocument", "()V", reinterpret_cast<void *>(EndDocument)},
  }};
  std::vector<JNINativeMethod> methods;
  for (const NativeMethod &method : table)
    methods.push_back({const_cast<char *>(method.name), const_cast<char *>(method.signature), method.function});
  jclass handler = env.FindClass("vlxslt/NativeHandler");
  return handler && env.RegisterNatives(handler, methods.data(), static_cast<jint>(methods.size())) == JNI_OK;
}

} // namespace

struct JavaLayer::Methods {
  jobject layer = nullptr;
  jmethodID setTransformer = nullptr;
  jmethodID transform = nullptr;
  jmethodID probe = nullptr;

  [[nodiscard]] bool Find(JNIEnv &env) {
    jclass type = env.FindClass("vlxslt/VLXSLTJavaLayer");
    if (!type)
      return false;
    jmethodID connect = env.GetStaticMethodID(type, "connectNative", "()V");
    jmethodID getInstance = env.GetStaticMethodID(type, "GetInstance", "()Lvlxslt/VLXSLTJavaLayer;");
    setTransformer = env.GetMethodID(type, "SetTransformer", "(Ljava/lang/String;)I");
    transform = env.GetMethodID(type, "TransformXMLFile",
                                "(Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;[Ljava/lang/String;)I");
    probe = env.GetMethodID(type, "probe", "(Ljava/lang/String;)[Ljava/lang/String;");
    if (env.ExceptionCheck() || !RegisterNatives(env))
      return false;
    env.CallStaticVoidMethod(type, connect);
    layer = env.NewGlobalRef(env.CallStaticObjectMethod(type, getInstance));
    return !env.ExceptionCheck();
  }
};

JavaLayer &JavaLayer::GetInst() {
  static auto *layer = new JavaLayer;
  return *layer;
}

bool JavaLayer::Connect(std::string &reason) {
  if (methods)
    return true;
  auto found = std::make_unique<Methods>();
  bool isFound = false;
  if (JavaMachine::GetInst().Run([&](JNIEnv &env) { isFound = found->Find(env); }) && isFound) {
    methods = found.release();
    return true;
  }
  reason = LoadMessage(MessageId::BridgeJarUnusable);
  return false;
}

int32_t JavaLayer::SetTransformer(const std::string &tClass) {
  jint result = 0;
  (void)JavaMachine::GetInst().Run([&](JNIEnv &env) {
    result = env.CallIntMethod(methods->layer, methods->setTransformer, ToJava(env, tClass));
    if (env.ExceptionCheck())
      result = 0;
  });
  return result;
}

int32_t JavaLayer::TransformXMLFile(const std::string &xmlFilePath, const std::string &xslFilePath,
                                    const std::string &outputFilePath,
                                    const std::vector<std::string> &stylesheetParams) {
  jint result = 0;
  const bool isAlive = JavaMachine::GetInst().Run([&](JNIEnv &env) {
    result = env.CallIntMethod(methods->layer, methods->transform, ToJava(env, xmlFilePath), ToJava(env, xslFilePath),
                               ToJava(env, outputFilePath), ToJava(env, stylesheetParams));
    if (env.ExceptionCheck())
      result = 0;
  });
  if (!isAlive)
    XSLTErrorHandler::GetInst().ReportMessage(LoadMessage(MessageId::JavaEnded).c_str());
  return isAlive ? result : 0;
}

ProcessorProbe JavaLayer::Probe(const std::string &tClass) {
  ProcessorProbe probe;
  const bool isAlive = JavaMachine::GetInst().Run([&](JNIEnv &env) {
    auto *answer = static_cast<jobjectArray>(env.CallObjectMethod(methods->layer, methods->probe, ToJava(env, tClass)));
    const auto item = [&](jsize i) { return ToHost(env, static_cast<jstring>(env.GetObjectArrayElement(answer, i))); };
    if (answer && !env.ExceptionCheck())
      probe = {item(0), item(1), item(2), item(3)};
    else
      probe.error = LoadMessage(MessageId::JavaEnded);
  });
  if (!isAlive)
    probe.error = LoadMessage(MessageId::JavaEnded);
  return probe;
}

} // namespace bridge
