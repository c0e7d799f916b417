// A component server's library: loaded once, and kept until the process ends.
#pragma once

#include <qmx/component_server.h>

#include <filesystem>
#include <string_view>
#include <vector>

#include "platform/components/manifest.h"
#include "platform/object.h"

namespace qmx {

// A fact that a server reports about itself, for people: its name ("version") and its value.
struct ServerFact {
  std::string name, value;
};

class ServerLibrary {
 public:
  // Returns the library of that file, and loads it if necessary. Raises 429, with the reason, if it cannot serve. A
  // library that refused once is not asked again.
  static const ServerLibrary& Load(const std::filesystem::path& path, const qmx_component_host& host);

  // Creates an object of a ProgID that the manifest claims. Raises 429, with the reason, if the server does not.
  Object Create(const Manifest& manifest, std::string_view progId) const;

  // Returns the server's facts; none from a server that reports none. Raises 429 if the server cannot serve.
  std::vector<ServerFact> Describe(const Manifest& manifest) const;

  // Raises 429 if the server would not find the ProgID. Servers that cannot tell raise nothing.
  void Check(const Manifest& manifest, const std::string& progId) const;

 private:
  explicit ServerLibrary(const qmx_component_server* server) : server_(server) {}
  const qmx_component_server* server_;
};

}  // namespace qmx
