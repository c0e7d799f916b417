// The places of JVMs.
#pragma once

#include <string>
#include <vector>

namespace java_bridge {

// Returns the libjvm.so files to try, in order. `jvm` is the manifest's setting: a libjvm.so or the folder of a JVM. If
// it is empty, the JVM of JAVA_HOME and Debian's default JVM are tried.
std::vector<std::string> JvmPlaces(const std::string& jvm);

}  // namespace java_bridge
