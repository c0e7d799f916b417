// A component server's library: loaded once, asked for its entry once, kept until the process ends.
#pragma once

#include <qmx/component_server.h>

#include <filesystem>
#include <string_view>

#include "platform/object.h"

namespace qmx {

class ServerLibrary {
 public:
  // The library of that file, loaded now or before. Raises 429 when it cannot serve, saying why; a library that refused
  // once is not asked again.
  static const ServerLibrary& Load(const std::filesystem::path& path, const qmx_component_host& host);

  // Raises 429 when the server does not make the object, saying why.
  Object Create(std::string_view progId) const;

 private:
  explicit ServerLibrary(const qmx_component_server* server) : server_(server) {}
  const qmx_component_server* server_;
};

}  // namespace qmx
