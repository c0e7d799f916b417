#include "java_object.h"

#include <cstdio>
#include <exception>
#include <limits>
#include <utility>

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

JavaObject::JavaObject(DatePlace place, std::int64_t fields, const JavaClass& type)
    : qmx_object{sizeof(qmx_object), 0, &type}, place_(std::move(place)), fieldsReadAt_(calls), fields_(fields) {}

JavaObject::~JavaObject() {
  JNIEnv* const env = Jvm::Environment();
  if (!env) return;  // the JVM has ended, and its objects with it
  if (Class().IsStream()) Close(env);
  if (object_) env->DeleteGlobalRef(object_);
  if (iterator_) env->DeleteGlobalRef(iterator_);
}

jobject JavaObject::FromPlace(JNIEnv* env) {
  const Inside& inside = *Prepared();
  const Local<> date(env, CallObject(env, inside.dates, inside.dateAt, place_->Number()));
  return object_ = Global<>(env, date.Get()).Keep();
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
  const jobject object = Get(env);
  switch (member.result) {
    case 'I':
      GiveInteger(env->CallIntMethodA(object, member.getter, nullptr), result);
      break;
    case 'S':
      GiveInteger(env->CallShortMethodA(object, member.getter, nullptr), result);
      break;
    case 'B':
      GiveInteger(env->CallByteMethodA(object, member.getter, nullptr), result);
      break;
    case 'Z':
      GiveBoolean(env->CallBooleanMethodA(object, member.getter, nullptr), result);
      break;
    case 'D':
      GiveDouble(env->CallDoubleMethodA(object, member.getter, nullptr), result);
      break;
    case 'F':
      GiveDouble(static_cast<double>(env->CallFloatMethodA(object, member.getter, nullptr)), result);
      break;
    case 'J': {
      const jlong number = env->CallLongMethodA(object, member.getter, nullptr);
      Check(env);
      return GiveLong(number, result);
    }
    case 'C': {
      const jchar character = env->CallCharMethodA(object, member.getter, nullptr);
      Check(env);
      return GiveCharacter(character, text_, result);
    }
    case 'V':
      env->CallVoidMethodA(object, member.getter, nullptr);
      break;
    case 'T': {
      const Local<jstring> text(env, static_cast<jstring>(env->CallObjectMethodA(object, member.getter, nullptr)));
      Check(env);
      return GiveText(env, text.Get(), text_, result);
    }
    case 'U':
      return GiveDate(env, member, result);
    default: {
      const Local<> reference(env, env->CallObjectMethodA(object, member.getter, nullptr));
      Check(env);
      const Origin origin{member.name, member.nullIsValue, text_};
      if (!reference || !member.exactResult) return GiveReference(env, reference.Get(), origin, result);
      return GiveReference(env, reference.Get(), *member.exactResult, origin, result);
    }
  }
  Check(env);
}

void JavaObject::GiveDate(JNIEnv* env, const Member& member, qmx_value& result) {
  const Inside& inside = *Prepared();
  DatePlace place;
  const jlong fields = CallLong(env, inside.dates, inside.getDate, member.dateGetter, Get(env), place.Number());
  constexpr jlong kNoDate = std::numeric_limits<jlong>::min();
  if (fields == kNoDate) {
    const Local<> other(env, CallObject(env, inside.dates, inside.dateAt, place.Number()));
    return GiveReference(env, other.Get(), {member.name, false, text_}, result);
  }
  static const JavaClass& type = JavaClass::Of(env, inside.date);
  result.as.object = new JavaObject(std::move(place), fields, type);
  result.kind = QMX_OBJECT;
}

void JavaObject::CallWithArguments(JNIEnv* env, const Member& member, qmx_value* const* arguments, std::size_t count,
                                   qmx_value& result) {
  const Frame frame(env, 16);
  const Inside& inside = *Prepared();
  const jobject list = MakeArguments(env, member.name, arguments, count);
  const jobject chosen = Required(
      env, CallObject(env, inside.bridge, inside.choose, Get(env), static_cast<jobject>(member.methods), list));
  if (env->IsInstanceOf(chosen, inside.string) == JNI_TRUE) {
    const std::string refusal = TextOf(env, static_cast<jstring>(chosen));
    const std::size_t blank = refusal.find(' ');
    throw Failure{std::stoi(refusal.substr(0, blank)), refusal.substr(blank + 1), {}};
  }
  const jobject given = CallObject(env, inside.bridge, inside.invoke, chosen, Get(env), list);
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
    fields_ = CallLong(env, inside.dates, inside.fields, Get(env));
    fieldsReadAt_ = calls;
  }
  const jint second = static_cast<jint>(fields_ & 0x1FFFF);  // of the day
  switch (field) {
    case 0:
      return static_cast<jint>(fields_ >> 26);
    case 1:
      return static_cast<jint>(fields_ >> 22 & 15);
    case 2:
      return static_cast<jint>(fields_ >> 17 & 31);
    case 3:
      return second / 3600;
    case 4:
      return second / 60 % 60;
    default:
      return second % 60;
  }
}

}  // namespace java_bridge
