// The settings of a manifest.
//
// classpath: files, folders and "FOLDER/*", separated by ":", relative to the manifest; by default the manifest's
// folder and its jars. option: one for the JVM, any number of times. jvm: a libjvm.so, or the folder of a JVM. class
// PROGID: the class, if its name differs from the ProgID.
#pragma once

#include <qmx/component_server.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace java_bridge {

struct Settings {
  std::string manifest;
  std::vector<std::string> classpath;  // absolute paths; jars instead of "*"
  std::vector<std::string> options;
  std::string jvm;                                           // absolute; empty if it is not set
  std::vector<std::pair<std::string, std::string>> classes;  // by ProgID

  // Returns the name of the ProgID's class.
  std::string ClassOf(std::string_view progId) const;

  std::string Classpath() const;  // joined by ":"
};

// Raises 429 for an unknown setting.
Settings ReadSettings(const qmx_manifest& manifest);

}  // namespace java_bridge
