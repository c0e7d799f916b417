#include "results.h"

#include <limits>

#include "calls.h"
#include "inside.h"
#include "java_object.h"
#include "text.h"

namespace java_bridge {
namespace {

void GiveKept(const std::string& text, qmx_value& result) {
  result.kind = QMX_TEXT;
  result.as.text.data = text.data();
  result.as.text.length = text.size();
}

[[noreturn]] void Refuse(const Origin& origin, const JavaClass& type) {
  throw Failure{kTypeMismatch,
                origin.member + " gave a " + type.Name() +
                    ", which the program cannot read; a Java method should return an Enumeration, an Iterator, a "
                    "collection or a Stream instead.",
                {}};
}

}  // namespace

void GiveLong(jlong number, qmx_value& result) {
  constexpr jlong kExact = jlong{1} << 53;
  if (number >= std::numeric_limits<jint>::min() && number <= std::numeric_limits<jint>::max()) {
    return GiveInteger(static_cast<jint>(number), result);
  }
  if (number >= -kExact && number <= kExact) return GiveDouble(static_cast<double>(number), result);
  throw Failure{kOverflow,
                "Overflow: the long " + std::to_string(number) +
                    " has more digits than a double holds; a Java method can return it as a BigInteger or a String.",
                {}};
}

void GiveCharacter(jchar character, std::string& text, qmx_value& result) {
  ToUtf8(&character, 1, text);
  GiveKept(text, result);
}

void GiveText(JNIEnv* env, jstring string, std::string& text, qmx_value& result) {
  if (!string) {
    result.kind = QMX_NULL;
    return;
  }
  ReadText(env, string, text);
  GiveKept(text, result);
}

void GiveReference(JNIEnv* env, jobject reference, const Origin& origin, qmx_value& result) {
  if (reference) return GiveReference(env, reference, JavaClass::OfObject(env, reference), origin, result);
  result.kind = origin.nullIsValue ? QMX_NULL : QMX_OBJECT;
  result.as.object = nullptr;
}

void GiveReference(JNIEnv* env, jobject reference, const JavaClass& type, const Origin& origin, qmx_value& result) {
  const Inside& inside = *Prepared();
  switch (type.GetKind()) {
    case Kind::Text:
      return GiveText(env, static_cast<jstring>(reference), origin.text, result);
    case Kind::Boolean:
      GiveBoolean(env->CallBooleanMethodA(reference, inside.booleanValue, nullptr), result);
      return Check(env);
    case Kind::Character: {
      const jchar character = env->CallCharMethodA(reference, inside.charValue, nullptr);
      Check(env);
      return GiveCharacter(character, origin.text, result);
    }
    case Kind::Integer:
      GiveInteger(env->CallIntMethodA(reference, inside.intValue, nullptr), result);
      return Check(env);
    case Kind::Long: {
      const jlong number = env->CallLongMethodA(reference, inside.longValue, nullptr);
      Check(env);
      return GiveLong(number, result);
    }
    case Kind::Double:
      GiveDouble(env->CallDoubleMethodA(reference, inside.doubleValue, nullptr), result);
      return Check(env);
    case Kind::BigNumber: {
      const Local<> text(env, CallObject(env, inside.bridge, inside.text, reference));
      return GiveText(env, static_cast<jstring>(text.Get()), origin.text, result);
    }
    case Kind::Moment:
      result.as.seconds = CallLong(env, inside.bridge, inside.moment, reference);
      result.kind = QMX_DATETIME;
      return;
    case Kind::Array:
    case Kind::Map:
      Refuse(origin, type);
    case Kind::Object:
    case Kind::Date:
      result.as.object = new JavaObject(env, reference, type);
      result.kind = QMX_OBJECT;
  }
}

}  // namespace java_bridge
