// Converts values from Java to results of the C interface.
#pragma once

#include <jni.h>
#include <qmx/component_server.h>

#include <string>

namespace java_bridge {

class JavaClass;

inline void GiveInteger(jint number, qmx_value& result) {
  result.kind = QMX_INT32;
  result.as.integer = number;
}
inline void GiveBoolean(jboolean boolean, qmx_value& result) {
  result.kind = QMX_BOOLEAN;
  result.as.boolean = boolean != JNI_FALSE ? 1 : 0;
}
inline void GiveDouble(double number, qmx_value& result) {
  result.kind = QMX_DOUBLE;
  result.as.number = number;
}
void GiveLong(jlong number, qmx_value& result);  // raises 6 if neither a 32-bit integer nor a double is the same number
void GiveCharacter(jchar character, std::string& text, qmx_value& result);
void GiveText(JNIEnv* env, jstring string, std::string& text, qmx_value& result);  // null for a null string

// How to treat a reference that Java returned.
struct Origin {
  const std::string& member;
  bool nullIsValue;   // null is a missing value, not a missing object
  std::string& text;  // keeps a text of the result
};
// An object has a reference for the receiver. Raises 13 for an array and a map.
void GiveReference(JNIEnv* env, jobject reference, const Origin& origin, qmx_value& result);
// The same for an object whose class is known.
void GiveReference(JNIEnv* env, jobject reference, const JavaClass& type, const Origin& origin, qmx_value& result);

}  // namespace java_bridge
