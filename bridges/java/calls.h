// Calls into the JVM: their exceptions become a Failure, and no local reference is left.
#pragma once

#include <jni.h>

#include <string>
#include <string_view>
#include <utility>

#include "failure.h"

namespace java_bridge {

// Raises the pending exception of Java as a Failure.
[[noreturn]] void RaisePending(JNIEnv* env);

inline void Check(JNIEnv* env) {
  if (env->ExceptionCheck()) [[unlikely]]
    RaisePending(env);
}

[[noreturn]] void RaiseMissing(JNIEnv* env);

// Returns the result of a JNI function that returns null only when it fails.
template <typename Result>
Result Required(JNIEnv* env, Result result) {
  if (!result) [[unlikely]]
    RaiseMissing(env);
  return result;
}

// A local reference, freed at the end of the block.
template <typename Reference = jobject>
class Local {
 public:
  Local(JNIEnv* env, Reference reference) : env_(env), reference_(reference) {}
  ~Local() {
    if (reference_) env_->DeleteLocalRef(reference_);
  }
  Local(const Local&) = delete;
  Local& operator=(const Local&) = delete;
  Reference Get() const { return reference_; }
  explicit operator bool() const { return reference_ != nullptr; }

 private:
  JNIEnv* env_;
  Reference reference_;
};

// A new global reference, freed unless it is kept.
template <typename Reference = jobject>
class Global {
 public:
  Global(JNIEnv* env, Reference reference)
      : env_(env), reference_(Required(env, static_cast<Reference>(env->NewGlobalRef(reference)))) {}
  ~Global() {
    if (reference_) env_->DeleteGlobalRef(reference_);
  }
  Global(const Global&) = delete;
  Global& operator=(const Global&) = delete;
  Reference Keep() { return std::exchange(reference_, nullptr); }

 private:
  JNIEnv* env_;
  Reference reference_;
};

// Frees all local references of the block at its end.
class Frame {
 public:
  Frame(JNIEnv* env, jint capacity) : env_(env) {
    if (env->PushLocalFrame(capacity) != 0) RaiseMissing(env);
  }
  ~Frame() { env_->PopLocalFrame(nullptr); }
  Frame(const Frame&) = delete;
  Frame& operator=(const Frame&) = delete;

 private:
  JNIEnv* env_;
};

// Replaces `text` by the string's characters.
void ReadText(JNIEnv* env, jstring string, std::string& text);

inline std::string TextOf(JNIEnv* env, jstring string) {
  std::string text;
  if (string) ReadText(env, string, text);
  return text;
}

// A local reference.
jstring MakeText(JNIEnv* env, std::string_view text);

// Arguments of a call.
inline jvalue Value(jobject object) { return {.l = object}; }
inline jvalue Value(jboolean boolean) { return {.z = boolean}; }
inline jvalue Value(jint number) { return {.i = number}; }
inline jvalue Value(jlong number) { return {.j = number}; }

// Static methods of the bridge's half in Java. References are local.
template <typename... Arguments>
jobject CallObject(JNIEnv* env, jclass type, jmethodID method, Arguments... arguments) {
  const jvalue values[] = {Value(arguments)..., jvalue{}};
  const jobject result = env->CallStaticObjectMethodA(type, method, values);
  Check(env);
  return result;
}
template <typename... Arguments>
jlong CallLong(JNIEnv* env, jclass type, jmethodID method, Arguments... arguments) {
  const jvalue values[] = {Value(arguments)..., jvalue{}};
  const jlong result = env->CallStaticLongMethodA(type, method, values);
  Check(env);
  return result;
}
template <typename... Arguments>
jchar CallChar(JNIEnv* env, jclass type, jmethodID method, Arguments... arguments) {
  const jvalue values[] = {Value(arguments)..., jvalue{}};
  const jchar result = env->CallStaticCharMethodA(type, method, values);
  Check(env);
  return result;
}
template <typename... Arguments>
jint CallInt(JNIEnv* env, jclass type, jmethodID method, Arguments... arguments) {
  const jvalue values[] = {Value(arguments)..., jvalue{}};
  const jint result = env->CallStaticIntMethodA(type, method, values);
  Check(env);
  return result;
}
template <typename... Arguments>
void CallVoid(JNIEnv* env, jclass type, jmethodID method, Arguments... arguments) {
  const jvalue values[] = {Value(arguments)..., jvalue{}};
  env->CallStaticVoidMethodA(type, method, values);
  Check(env);
}

}  // namespace java_bridge
