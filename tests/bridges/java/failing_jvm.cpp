// A JVM whose JNI calls fail when a test asks for it, and that counts the references which are held: the real one
// behind a function table of this library's own. Java's own libraries keep the real table, so the bridge's calls alone
// are seen.
#include <dlfcn.h>
#include <jni.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <type_traits>
#include <vector>

namespace {

int untilFailure = 0;        // 1 fails the next call
bool failsSilently = false;  // with an empty result alone; else with an exception too
bool hasFailed = false;
bool isAskedByEnvironment = false;
JNIEnv* real = nullptr;
JavaVM* realVm = nullptr;

long globalReferences = 0;
std::vector<long> localReferences = {0};  // a number for each frame

bool IsNext() {
  if (untilFailure == 0 || --untilFailure > 0) return false;
  if (isAskedByEnvironment) std::fputs("A JNI call fails.\n", stderr);
  return hasFailed = true;
}

// Of calls whose result does not show that they failed.
bool Throws() {
  if (failsSilently || !IsNext()) return false;
  const jclass exception = real->FindClass("java/lang/IllegalStateException");
  real->ThrowNew(exception, "injected");
  real->DeleteLocalRef(exception);
  return true;
}

// Of calls whose result is empty only when they fail.
bool Fails() { return failsSilently ? IsNext() : Throws(); }

bool Never() { return false; }

using Table = JNINativeInterface_;
Table table;

template <auto Slot, bool (*IsFailing)(), typename Function>
struct Wrapped;
template <auto Slot, bool (*IsFailing)(), typename Result, typename... Arguments>
struct Wrapped<Slot, IsFailing, Result (*)(JNIEnv*, Arguments...)> {
  static Result Call(JNIEnv*, Arguments... arguments) {
    if (IsFailing()) return Result();
    if constexpr (std::is_convertible_v<Result, jobject>) {
      const Result reference = (real->functions->*Slot)(real, arguments...);
      if (reference) ++localReferences.back();
      return reference;
    } else {
      return (real->functions->*Slot)(real, arguments...);
    }
  }
};

template <bool (*IsFailing)(), auto... Slots>
void Wrap() {
  ((table.*Slots = Wrapped<Slots, IsFailing, std::remove_reference_t<decltype(table.*Slots)>>::Call), ...);
}

jint PushLocalFrame(JNIEnv*, jint capacity) {
  if (Fails()) return JNI_ENOMEM;
  localReferences.push_back(0);
  return real->PushLocalFrame(capacity);
}
jobject PopLocalFrame(JNIEnv*, jobject result) {
  localReferences.pop_back();
  return real->PopLocalFrame(result);
}
void DeleteLocalRef(JNIEnv*, jobject reference) {
  --localReferences.back();
  real->DeleteLocalRef(reference);
}
jobject NewGlobalRef(JNIEnv*, jobject object) {
  if (Fails()) return nullptr;
  ++globalReferences;
  return real->NewGlobalRef(object);
}
void DeleteGlobalRef(JNIEnv*, jobject reference) {
  --globalReferences;
  real->DeleteGlobalRef(reference);
}

jint DetachCurrentThread(JavaVM*) { return IsNext() ? JNI_ERR : realVm->DetachCurrentThread(); }
jint DestroyJavaVM(JavaVM*) { return IsNext() ? JNI_ERR : realVm->DestroyJavaVM(); }

[[noreturn]] void Unknown() {
  std::fputs("The bridge makes a JNI call that its tests do not know yet: let it fail here too.\n", stderr);
  std::abort();
}

JNIEnv* WrappedEnvironment() {
  void (*const unknown)() = Unknown;
  auto* const bytes = reinterpret_cast<unsigned char*>(&table);
  for (std::size_t at = 0; at < sizeof table; at += sizeof unknown) std::memcpy(bytes + at, &unknown, sizeof unknown);

  Wrap<Fails, &Table::DefineClass, &Table::FindClass, &Table::GetMethodID, &Table::GetStaticMethodID,
       &Table::FromReflectedMethod, &Table::NewObjectArray, &Table::NewString>();
  Wrap<Throws, &Table::GetObjectArrayElement, &Table::SetObjectArrayElement, &Table::GetStringRegion,
       &Table::CallObjectMethodA, &Table::CallBooleanMethodA, &Table::CallByteMethodA, &Table::CallCharMethodA,
       &Table::CallShortMethodA, &Table::CallIntMethodA, &Table::CallLongMethodA, &Table::CallFloatMethodA,
       &Table::CallDoubleMethodA, &Table::CallVoidMethodA, &Table::CallStaticObjectMethodA,
       &Table::CallStaticCharMethodA, &Table::CallStaticIntMethodA, &Table::CallStaticLongMethodA,
       &Table::CallStaticVoidMethodA>();
  Wrap<Never, &Table::ExceptionCheck, &Table::ExceptionClear, &Table::ExceptionOccurred, &Table::GetArrayLength,
       &Table::GetObjectClass, &Table::GetStringLength, &Table::IsInstanceOf, &Table::IsSameObject>();
  table.PushLocalFrame = PushLocalFrame;
  table.PopLocalFrame = PopLocalFrame;
  table.DeleteLocalRef = DeleteLocalRef;
  table.NewGlobalRef = NewGlobalRef;
  table.DeleteGlobalRef = DeleteGlobalRef;
  static JNIEnv wrapped;
  wrapped.functions = &table;
  return &wrapped;
}

JavaVM* WrappedVm() {
  static JNIInvokeInterface_ functions = *realVm->functions;
  functions.DetachCurrentThread = DetachCurrentThread;
  functions.DestroyJavaVM = DestroyJavaVM;
  static JavaVM wrapped;
  wrapped.functions = &functions;
  return &wrapped;
}

}  // namespace

#define FOR_TESTS extern "C" __attribute__((visibility("default")))

FOR_TESTS void FailJniCall(int number, bool silently) {
  untilFailure = number;
  failsSilently = silently;
  hasFailed = false;
}
FOR_TESTS bool HasJniCallFailed() { return hasFailed; }
FOR_TESTS long GlobalReferences() { return globalReferences; }
FOR_TESTS long LocalReferences() {
  long all = 0;
  for (const long number : localReferences) all += number;
  return all;
}

// A whole program is asked by its environment, and reports the failure.
FOR_TESTS jint JNI_CreateJavaVM(JavaVM** vm, void** env, void* arguments) {
  void* const library = dlopen(REAL_JVM, RTLD_NOW);
  if (!library) return JNI_ERR;
  using Create = jint (*)(JavaVM**, void**, void*);
  const jint result = reinterpret_cast<Create>(dlsym(library, "JNI_CreateJavaVM"))(vm, env, arguments);
  if (result != JNI_OK) return result;
  realVm = *vm;
  real = static_cast<JNIEnv*>(*env);
  *vm = WrappedVm();
  *env = WrappedEnvironment();
  if (const char* const number = std::getenv("QMX_TEST_FAIL_JNI_CALL")) {
    isAskedByEnvironment = true;
    FailJniCall(std::atoi(number), false);
  }
  return JNI_OK;
}
