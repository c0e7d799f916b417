// The JVM's own check of JNI calls. It prints each wrong use.
#pragma once

#include <gmock/gmock.h>

#include <cstdlib>

namespace qmx::test {

inline constexpr const char* kCheckJni = "setting option = -Xcheck:jni\n";

// Of a manifest that a test cannot change.
inline void CheckJniOfEveryJvm() { setenv("JAVA_TOOL_OPTIONS", "-Xcheck:jni", 1); }

inline auto ShowsNoWrongJni() {
  return testing::AllOf(testing::Not(testing::HasSubstr("native method")),
                        testing::Not(testing::HasSubstr("JNI local refs")));
}

}  // namespace qmx::test
