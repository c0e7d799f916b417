// Converts values of the program to arguments for Java.
#pragma once

#include <jni.h>
#include <qmx/component_server.h>

#include <string>

namespace java_bridge {

// Returns an Object[] of the arguments, as a local reference. The caller's frame frees the other local references.
// Objects of Java become themselves again, and a date object of the program becomes a java.util.Date. Raises 13 for any
// other object of the program.
jobjectArray MakeArguments(JNIEnv* env, const std::string& member, qmx_value* const* arguments, std::size_t count);

}  // namespace java_bridge
