// A component server's library: loaded once, asked for its entry once, kept until the process ends.
#pragma once

#include <qmx/component_server.h>

#include <filesystem>
#include <string_view>
#include <vector>

#include "platform/components/manifest.h"
#include "platform/object.h"

namespace qmx {

// What a server says about itself, for people: what it is ("version") and its value.
struct ServerFact {
  std::string name, value;
};

class ServerLibrary {
 public:
  // The library of that file, loaded now or before. Raises 429 when it cannot serve, saying why; a library that refused
  // once is not asked again.
  static const ServerLibrary& Load(const std::filesystem::path& path, const qmx_component_host& host);

  // Makes an object of a ProgID that the manifest claims. Raises 429 when the server does not make it, saying why.
  Object Create(const Manifest& manifest, std::string_view progId) const;

  // What serves the manifest; nothing from a server that does not say. Raises 429 when the server cannot serve.
  std::vector<ServerFact> Describe(const Manifest& manifest) const;

  // Raises 429 when the server would not find the ProgID. Servers that cannot tell raise nothing.
  void Check(const Manifest& manifest, const std::string& progId) const;

 private:
  explicit ServerLibrary(const qmx_component_server* server) : server_(server) {}
  const qmx_component_server* server_;
};

}  // namespace qmx
