// A JVM whose JNI calls fail when a test asks for it: the real one behind a function table of its own. Only calls that
// may fail do so; they leave an exception pending, as a real failure does.
#include <dlfcn.h>
#include <jni.h>

#include <type_traits>

namespace {

int untilFailure = 0;  // 1 fails the next call
bool hasFailed = false;
JNINativeInterface_ real;
JNINativeInterface_ table;

bool FailsNow(JNIEnv* env) {
  if (untilFailure == 0 || --untilFailure > 0) return false;
  hasFailed = true;
  env->functions = &real;  // the failure itself does not fail
  const jclass exception = env->FindClass("java/lang/IllegalStateException");
  env->ThrowNew(exception, "injected");
  env->DeleteLocalRef(exception);
  env->functions = &table;
  return true;
}

template <auto Slot, typename Function>
struct Failing;
template <auto Slot, typename Result, typename... Arguments>
struct Failing<Slot, Result (*)(JNIEnv*, Arguments...)> {
  static Result Call(JNIEnv* env, Arguments... arguments) {
    if (!FailsNow(env)) return (real.*Slot)(env, arguments...);
    if constexpr (!std::is_void_v<Result>) return Result{};
  }
};

template <auto Slot>
void MayFail() {
  table.*Slot = Failing<Slot, std::remove_reference_t<decltype(table.*Slot)>>::Call;
}

jint PushLocalFrame(JNIEnv* env, jint capacity) {
  return FailsNow(env) ? JNI_ENOMEM : real.PushLocalFrame(env, capacity);
}

void Wrap(JNIEnv* env) {
  using Table = JNINativeInterface_;
  real = table = *env->functions;
  table.PushLocalFrame = PushLocalFrame;
  MayFail<&Table::DefineClass>();
  MayFail<&Table::FindClass>();
  MayFail<&Table::GetMethodID>();
  MayFail<&Table::GetStaticMethodID>();
  MayFail<&Table::FromReflectedMethod>();
  MayFail<&Table::NewGlobalRef>();
  MayFail<&Table::NewObjectArray>();
  MayFail<&Table::GetObjectArrayElement>();
  MayFail<&Table::SetObjectArrayElement>();
  MayFail<&Table::NewString>();
  MayFail<&Table::GetStringRegion>();
  MayFail<&Table::CallObjectMethodA>();
  MayFail<&Table::CallBooleanMethodA>();
  MayFail<&Table::CallCharMethodA>();
  MayFail<&Table::CallIntMethodA>();
  MayFail<&Table::CallLongMethodA>();
  MayFail<&Table::CallDoubleMethodA>();
  MayFail<&Table::CallVoidMethodA>();
  MayFail<&Table::CallStaticObjectMethodA>();
  MayFail<&Table::CallStaticBooleanMethodA>();
  MayFail<&Table::CallStaticCharMethodA>();
  MayFail<&Table::CallStaticIntMethodA>();
  MayFail<&Table::CallStaticLongMethodA>();
  env->functions = &table;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) void FailJniCall(int number) {
  untilFailure = number;
  hasFailed = false;
}
extern "C" __attribute__((visibility("default"))) bool HasJniCallFailed() { return hasFailed; }

extern "C" __attribute__((visibility("default"))) jint JNI_CreateJavaVM(JavaVM** vm, void** env, void* arguments) {
  void* const library = dlopen(REAL_JVM, RTLD_NOW);
  if (!library) return JNI_ERR;
  using Create = jint (*)(JavaVM**, void**, void*);
  const jint result = reinterpret_cast<Create>(dlsym(library, "JNI_CreateJavaVM"))(vm, env, arguments);
  if (result == JNI_OK) Wrap(static_cast<JNIEnv*>(*env));
  return result;
}
