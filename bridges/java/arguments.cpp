#include "arguments.h"

#include <bit>
#include <string_view>

#include "calls.h"
#include "inside.h"
#include "java_object.h"

namespace java_bridge {
namespace {

// Tells Java's `box` how to read the bits. The numbers are those of Kind if they fit.
enum : jint { kBoolean = 2, kInt32 = 4, kInt16 = 5, kDouble = 6, kMoment = 8 };

jobject Box(JNIEnv* env, jint kind, jlong bits) {
  const Inside& inside = *Prepared();
  return CallObject(env, inside.bridge, inside.box, kind, bits);
}

jint Field(qmx_object* object, std::string_view name) {
  qmx_error error{sizeof(qmx_error), 0, nullptr, 0, nullptr, 0, nullptr, 0};
  qmx_value result{};
  result.struct_size = sizeof result;
  std::int32_t id = 0;
  if (object->type->resolve(object, name.data(), name.size(), &id, &error) != QMX_OK ||
      object->type->invoke(object, id, nullptr, 0, &result, &error) != QMX_OK) {
    throw Failure{error.number, std::string(error.description, error.description_length), {}};
  }
  if (result.kind == QMX_UINT8 || result.kind == QMX_INT16 || result.kind == QMX_INT32) return result.as.integer;
  throw Failure{kTypeMismatch, std::string(name) + " gave no whole number.", {}};
}

// Reads the program's own date object field by field.
jobject MakeDate(JNIEnv* env, const std::string& member, std::size_t number, qmx_object* object) {
  jint fields[6];
  try {
    int i = 0;
    for (const char* const name : {"getYear", "getMonth", "getDate", "getHours", "getMinutes", "getSeconds"}) {
      fields[i++] = Field(object, name);
    }
  } catch (const Failure& failure) {
    throw Failure{kTypeMismatch,
                  "Parameter " + std::to_string(number) + " of " + member +
                      " is an object that is neither of Java nor a date: " + failure.description,
                  {}};
  }
  const Inside& inside = *Prepared();
  return CallObject(env, inside.dates, inside.makeDate, fields[0], fields[1], fields[2], fields[3], fields[4],
                    fields[5]);
}

jobject Make(JNIEnv* env, const std::string& member, std::size_t number, const qmx_value& value) {
  switch (value.kind) {
    case QMX_EMPTY:
    case QMX_NULL:
      return nullptr;
    case QMX_BOOLEAN:
      return Box(env, kBoolean, value.as.boolean != 0 ? 1 : 0);
    case QMX_UINT8:
    case QMX_INT16:
      return Box(env, kInt16, value.as.integer);
    case QMX_INT32:
      return Box(env, kInt32, value.as.integer);
    case QMX_DOUBLE:
      return Box(env, kDouble, std::bit_cast<jlong>(value.as.number));
    case QMX_DATETIME:
      return Box(env, kMoment, value.as.seconds);
    case QMX_TEXT:
      return MakeText(env, {value.as.text.data ? value.as.text.data : "", value.as.text.length});
    case QMX_OBJECT:
      if (!value.as.object) return nullptr;
      if (JavaObject* const ours = JavaObject::From(value.as.object)) return ours->Get(env);
      return MakeDate(env, member, number, value.as.object);
    default:
      throw Failure{kTypeMismatch,
                    "Parameter " + std::to_string(number) + " of " + member + " is of the unknown kind " +
                        std::to_string(value.kind) + ".",
                    {}};
  }
}

}  // namespace

jobjectArray MakeArguments(JNIEnv* env, const std::string& member, qmx_value* const* arguments, std::size_t count) {
  const auto list = Required(env, env->NewObjectArray(static_cast<jsize>(count), Prepared()->object, nullptr));
  for (std::size_t i = 0; i < count; ++i) {
    const jobject argument = Make(env, member, i + 1, *arguments[i]);
    env->SetObjectArrayElement(list, static_cast<jsize>(i), argument);
    Check(env);
  }
  return list;
}

}  // namespace java_bridge
