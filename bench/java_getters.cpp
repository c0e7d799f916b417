// java_getters [benchmark options]: measures calls of a Java object's getters, as a copy makes them, and the JNI calls
// alone that each of them needs.
#include <benchmark/benchmark.h>
#include <dlfcn.h>
#include <jni.h>

#include <array>
#include <iostream>
#include <stdexcept>

#include "platform/components/installed_components.h"
#include "platform/error.h"
#include "platform/system/clock.h"

namespace {

void Add(const char* name, const qmx::Object& object, const char* getter) {
  benchmark::RegisterBenchmark(name, [&object, member = qmx::Member(getter)](benchmark::State& state) {
    for (auto iteration : state) benchmark::DoNotOptimize(object.Call(member));
  });
}

// The JVM that the bridge has started.
JNIEnv* Environment() {
  using Function = jint (*)(JavaVM**, jsize, jsize*);
  void* const library = dlopen(JAVA_JVM, RTLD_NOW | RTLD_NOLOAD);
  const auto created = library ? reinterpret_cast<Function>(dlsym(library, "JNI_GetCreatedJavaVMs")) : nullptr;
  JavaVM* vm = nullptr;
  jsize count = 0;
  void* environment = nullptr;
  if (!created || created(&vm, 1, &count) != JNI_OK || count == 0 ||
      vm->GetEnv(&environment, JNI_VERSION_10) != JNI_OK) {
    throw std::runtime_error("the JVM is not " JAVA_JVM);
  }
  return static_cast<JNIEnv*>(environment);
}

void Check(JNIEnv* env) {
  if (env->ExceptionCheck()) throw std::runtime_error("a JNI call failed");
}

void AddJniAlone(JNIEnv* env) {
  const jclass type = env->FindClass("getters/Getters");
  Check(env);
  const jmethodID constructor = env->GetMethodID(type, "<init>", "()V");
  const jmethodID number = env->GetMethodID(type, "getNumber", "()I");
  const jmethodID text = env->GetMethodID(type, "getText", "()Ljava/lang/String;");
  Check(env);
  const jobject object = env->NewGlobalRef(env->NewObject(type, constructor));
  Check(env);
  benchmark::RegisterBenchmark("its JNI calls alone, int", [=](benchmark::State& state) {
    for (auto iteration : state) {
      benchmark::DoNotOptimize(env->CallIntMethodA(object, number, nullptr));
      Check(env);
    }
  });
  benchmark::RegisterBenchmark("its JNI calls alone, text of 20 letters", [=](benchmark::State& state) {
    std::array<jchar, 64> units;
    for (auto iteration : state) {
      const auto string = static_cast<jstring>(env->CallObjectMethodA(object, text, nullptr));
      Check(env);
      env->GetStringRegion(string, 0, env->GetStringLength(string), units.data());
      benchmark::DoNotOptimize(units);
      env->DeleteLocalRef(string);
    }
  });
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (argc != 1) {
    std::cerr << "usage: java_getters [benchmark options]\n";
    return 2;
  }
  try {
    qmx::SystemClock clock;
    qmx::InstalledComponents components(clock);
    const qmx::Object getters = components.CreateObject("getters.Getters");
    Add("Java getter, int", getters, "getNumber");
    Add("Java getter, text of 20 letters", getters, "getText");
    AddJniAlone(Environment());
    benchmark::RunSpecifiedBenchmarks();
  } catch (const qmx::Error& failure) {
    std::cerr << "java_getters: " << failure.Description() << '\n';
    return 1;
  } catch (const std::runtime_error& failure) {
    std::cerr << "java_getters: " << failure.what() << '\n';
    return 1;
  }
}
