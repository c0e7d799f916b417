// Where a JVM may be.
#pragma once

#include <string>
#include <vector>

namespace java_bridge {

// The libjvm.so files to try, in this order. `jvm` is the manifest's: a libjvm.so or the folder of a JVM; where it is
// empty, the JVM of JAVA_HOME and Debian's default JVM.
std::vector<std::string> JvmPlaces(const std::string& jvm);

}  // namespace java_bridge
