// A folder of manifests for the component servers that were built for these tests.
#pragma once

#include <initializer_list>

#include "tests/support/fake_clock.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {

inline std::string TestServer(const std::string& name) {
  return std::string(TEST_SERVERS) + "/" + name + TEST_SERVER_SUFFIX;
}

class ServerFolder : public TempFolder {
 public:
  // Adds the manifest `name`.component; gives its path.
  std::string Add(const std::string& name, const std::string& library, std::initializer_list<std::string> progIds) {
    std::string text = "library = " + library + "\n";
    for (const std::string& progId : progIds) text += "progid = " + progId + "\n";
    const std::string path = *this / (name + ".component");
    WriteFile(path, text);
    return path;
  }
};

}  // namespace qmx::test
