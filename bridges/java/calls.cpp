#include "calls.h"

#include <array>
#include <vector>

#include "inside.h"
#include "text.h"

namespace java_bridge {
namespace {

// Describes the exception by its class alone; nothing if even that fails.
Failure Described(JNIEnv* env, jthrowable thrown, const Inside& inside) {
  const Frame frame(env, 8);
  Failure failure{kJavaException, {}, {}};
  const jobject texts = CallObject(env, inside.bridge, inside.describe, static_cast<jobject>(thrown));
  const auto list = static_cast<jobjectArray>(texts);
  const auto text = [&](jsize i) {
    return TextOf(env, static_cast<jstring>(Required(env, env->GetObjectArrayElement(list, i))));
  };
  failure.description = text(0);
  failure.details = text(1);
  return failure;
}

bool isDescribing = false;  // a failure of the description is not described again

}  // namespace

void RaisePending(JNIEnv* env) {
  const Local<jthrowable> thrown(env, env->ExceptionOccurred());
  env->ExceptionClear();
  const Inside* const inside = Prepared();
  Failure failure{kJavaException, "Java raised an exception that cannot be described.", {}};
  if (!inside || !thrown || isDescribing) throw failure;
  const bool isMemory = env->IsInstanceOf(thrown.Get(), inside->outOfMemory) == JNI_TRUE;
  const bool isStack = !isMemory && env->IsInstanceOf(thrown.Get(), inside->stackOverflow) == JNI_TRUE;
  if (isMemory) failure.description = "java.lang.OutOfMemoryError";
  if (isStack) failure.description = "java.lang.StackOverflowError";
  isDescribing = true;
  try {
    failure = Described(env, thrown.Get(), *inside);
  } catch (const Failure&) {
    // continue without a description
  }
  isDescribing = false;
  if (isMemory) failure.number = kOutOfMemory;
  if (isStack) failure.number = kOutOfStack;
  throw failure;
}

void RaiseMissing(JNIEnv* env) {
  Check(env);
  throw Failure{kOutOfMemory, "The JVM has no memory left.", {}};
}

void ReadText(JNIEnv* env, jstring string, std::string& text) {
  std::array<jchar, 256> usual;
  const jsize length = env->GetStringLength(string);
  if (length == 0) return text.clear();
  std::vector<jchar> many;
  jchar* units = usual.data();
  if (static_cast<std::size_t>(length) > usual.size()) {
    many.resize(static_cast<std::size_t>(length));
    units = many.data();
  }
  // If the call fails, the last character stays NUL. A check for exceptions would slow every getter.
  jchar& last = units[length - 1];
  last = 0;
  env->GetStringRegion(string, 0, length, units);
  if (last == 0) Check(env);
  ToUtf8(units, static_cast<std::size_t>(length), text);
}

jstring MakeText(JNIEnv* env, std::string_view text) {
  const std::u16string units = ToUtf16(text);
  return Required(env, env->NewString(reinterpret_cast<const jchar*>(units.data()), static_cast<jsize>(units.size())));
}

}  // namespace java_bridge
