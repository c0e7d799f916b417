#include "java_object.h"

#include <cstdio>
#include <exception>

#include "arguments.h"
#include "inside.h"
#include "jvm.h"
#include "results.h"

namespace java_bridge {
namespace {

std::uint64_t calls = 1;  // counts calls that may have changed an object of Java

JNIEnv* Running() {
  if (JNIEnv* const env = Jvm::Environment()) return env;
  throw Failure{QMX_E_INVALID_CALL, "The JVM is gone: the process is ending.", {}};
}

qmx_status ResolveMember(qmx_object* object, const char* name, std::size_t length, std::int32_t* id, qmx_error* error) {
  return Guarded(error, [&] {
    *id = static_cast<JavaObject*>(object)->Class().Resolve(Running(), std::string_view(name, length));
  });
}

qmx_status InvokeMember(qmx_object* object, std::int32_t id, qmx_value* const* arguments, std::size_t count,
                        qmx_value* result, qmx_error* error) {
  return Guarded(error, [&] {
    JavaObject& self = *static_cast<JavaObject*>(object);
    self.Call(Running(), self.Class().At(id), arguments, count, *result);
  });
}

void AddReference(qmx_object* object) { static_cast<JavaObject*>(object)->AddReference(); }
void Release(qmx_object* object) { static_cast<JavaObject*>(object)->Release(); }

}  // namespace

qmx_type ObjectFunctions() {
  return {sizeof(qmx_type), 0, ResolveMember, InvokeMember, AddReference, java_bridge::Release, nullptr};
}

JavaObject::JavaObject(JNIEnv* env, jobject object, const JavaClass& type)
    : qmx_object{sizeof(qmx_object), 0, &type}, object_(Global<>(env, object).Keep()) {}

JavaObject::~JavaObject() {
  JNIEnv* const env = Jvm::Environment();
  if (!env) return;  // the JVM has ended, and its objects with it
  if (Class().IsStream()) Close(env);
  env->DeleteGlobalRef(object_);
  if (iterator_) env->DeleteGlobalRef(iterator_);
}

// A release cannot report a failure.
void JavaObject::Close(JNIEnv* env) noexcept {
  try {
    const Inside& inside = *Prepared();
    CallVoid(env, inside.bridge, inside.close, object_);
  } catch (const Failure& failure) {
    std::fprintf(stderr, "Java: closing a %s failed: %s\n", Class().Name().c_str(), failure.description.c_str());
  } catch (const std::exception& other) {
    std::fprintf(stderr, "Java: closing a %s failed: %s\n", Class().Name().c_str(), other.what());
  }
}

JavaObject* JavaObject::From(qmx_object* object) {
  return object->type->invoke == InvokeMember ? static_cast<JavaObject*>(object) : nullptr;
}

void JavaObject::Release() {
  if (--references_ == 0) delete this;
}

void JavaObject::Call(JNIEnv* env, const Member& member, qmx_value* const* arguments, std::size_t count,
                      qmx_value& result) {
  if (count == 0 && member.way == Member::Way::DateField) {
    GiveInteger(DateField(env, member.field), result);
    return;
  }
  ++calls;
  if (count == 0 && member.getter) return CallGetter(env, member, result);
  if (member.methods) return CallWithArguments(env, member, arguments, count, result);
  if (count > 0) {
    throw Failure{
        QMX_E_WRONG_ARGUMENT_COUNT, member.name + " takes 0 arguments, not " + std::to_string(count) + ".", {}};
  }
  const Inside& inside = *Prepared();
  if (member.way == Member::Way::HasMoreElements) {
    GiveBoolean(env->CallBooleanMethodA(Iterator(env), inside.hasNext, nullptr), result);
    Check(env);
  } else {
    const Local<> next(env, env->CallObjectMethodA(Iterator(env), inside.next, nullptr));
    Check(env);
    GiveReference(env, next.Get(), {member.name, false, text_}, result);
  }
}

void JavaObject::CallGetter(JNIEnv* env, const Member& member, qmx_value& result) {
  switch (member.result) {
    case 'I':
      GiveInteger(env->CallIntMethodA(object_, member.getter, nullptr), result);
      break;
    case 'S':
      GiveInteger(env->CallShortMethodA(object_, member.getter, nullptr), result);
      break;
    case 'B':
      GiveInteger(env->CallByteMethodA(object_, member.getter, nullptr), result);
      break;
    case 'Z':
      GiveBoolean(env->CallBooleanMethodA(object_, member.getter, nullptr), result);
      break;
    case 'D':
      GiveDouble(env->CallDoubleMethodA(object_, member.getter, nullptr), result);
      break;
    case 'F':
      GiveDouble(static_cast<double>(env->CallFloatMethodA(object_, member.getter, nullptr)), result);
      break;
    case 'J': {
      const jlong number = env->CallLongMethodA(object_, member.getter, nullptr);
      Check(env);
      return GiveLong(number, result);
    }
    case 'C': {
      const jchar character = env->CallCharMethodA(object_, member.getter, nullptr);
      Check(env);
      return GiveCharacter(character, text_, result);
    }
    case 'V':
      env->CallVoidMethodA(object_, member.getter, nullptr);
      break;
    case 'T': {
      const Local<jstring> text(env, static_cast<jstring>(env->CallObjectMethodA(object_, member.getter, nullptr)));
      Check(env);
      return GiveText(env, text.Get(), text_, result);
    }
    default: {
      const Local<> reference(env, env->CallObjectMethodA(object_, member.getter, nullptr));
      Check(env);
      return GiveReference(env, reference.Get(), {member.name, member.nullIsValue, text_}, result);
    }
  }
  Check(env);
}

void JavaObject::CallWithArguments(JNIEnv* env, const Member& member, qmx_value* const* arguments, std::size_t count,
                                   qmx_value& result) {
  const Frame frame(env, 16);
  const Inside& inside = *Prepared();
  const jobject list = MakeArguments(env, member.name, arguments, count);
  const jobject chosen =
      Required(env, CallObject(env, inside.bridge, inside.choose, object_, static_cast<jobject>(member.methods), list));
  if (env->IsInstanceOf(chosen, inside.string) == JNI_TRUE) {
    const std::string refusal = TextOf(env, static_cast<jstring>(chosen));
    const std::size_t blank = refusal.find(' ');
    throw Failure{std::stoi(refusal.substr(0, blank)), refusal.substr(blank + 1), {}};
  }
  const jobject given = CallObject(env, inside.bridge, inside.invoke, chosen, object_, list);
  constexpr jint kNothing = 0;
  constexpr jint kNoValue = 1;
  const jint null = given ? kNoValue : CallInt(env, inside.bridge, inside.nullOf, chosen);
  if (null != kNothing) GiveReference(env, given, {member.name, null == kNoValue, text_}, result);
}

jobject JavaObject::Iterator(JNIEnv* env) {
  if (iterator_) return iterator_;
  const Inside& inside = *Prepared();
  const Local<> iterator(env, CallObject(env, inside.bridge, inside.iterator, object_));
  if (!iterator) throw Failure{QMX_E_OBJECT_NOT_SET, Class().Name() + " gave no iterator.", {}};
  return iterator_ = Global<>(env, iterator.Get()).Keep();
}

jint JavaObject::DateField(JNIEnv* env, int field) {
  if (fieldsReadAt_ != calls) {
    const Inside& inside = *Prepared();
    fields_ = CallLong(env, inside.bridge, inside.fields, object_);
    fieldsReadAt_ = calls;
  }
  static constexpr int kShifts[] = {26, 22, 17, 12, 6, 0};
  static constexpr std::int64_t kMasks[] = {-1, 15, 31, 31, 63, 63};
  return static_cast<jint>(fields_ >> kShifts[field] & kMasks[field]);
}

}  // namespace java_bridge
