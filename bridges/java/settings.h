// The settings of a manifest.
//
// classpath: files, folders and "FOLDER/*" between ":", relative to the manifest; without it the manifest's folder and
// the jars in it. option: one for the JVM, any number of times. jvm: a libjvm.so, or the folder of a JVM. class PROGID:
// the class, where its name differs from the ProgID.
#pragma once

#include <qmx/component_server.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace java_bridge {

struct Settings {
  std::string manifest;
  std::vector<std::string> classpath;  // absolute; "*" is replaced by the jars
  std::vector<std::string> options;
  std::string jvm;                                           // absolute; empty where it is not set
  std::vector<std::pair<std::string, std::string>> classes;  // by ProgID

  // The name of the ProgID's class.
  std::string ClassOf(std::string_view progId) const;

  std::string Classpath() const;  // joined by ":"
};

// Raises 429 for a setting that is not known.
Settings ReadSettings(const qmx_manifest& manifest);

}  // namespace java_bridge
