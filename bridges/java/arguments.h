// Values of the program, as arguments for Java.
#pragma once

#include <jni.h>
#include <qmx/component_server.h>

#include <string>

namespace java_bridge {

// An Object[] of the arguments, as a local reference; the caller's frame frees what was made on the way. Objects of
// Java become themselves again, a date object of the program a java.util.Date. Raises 13 for another object of the
// program.
jobjectArray MakeArguments(JNIEnv* env, const std::string& member, qmx_value* const* arguments, std::size_t count);

}  // namespace java_bridge
