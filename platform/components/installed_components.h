// The components of this machine: those of the component servers with manifests in the given folders, and the built-in
// date object "java:java.util.Date" if no server claims that ProgID.
//
// The first manifest that claims a ProgID serves it; if that fails, the next one. A failed creation is 429, and names
// every place that was searched and why it did not serve.
//
// Folders are read when the first object is created. Servers that create objects through their host get them from this
// object, or from the latest one if there are several.
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "platform/components.h"
#include "platform/components/manifest.h"
#include "platform/components/server_library.h"

namespace qmx {

class Clock;

class InstalledComponents : public Components {
 public:
  explicit InstalledComponents(Clock& clock, std::vector<std::filesystem::path> folders = ComponentFolders());
  ~InstalledComponents() override;
  InstalledComponents(const InstalledComponents&) = delete;
  InstalledComponents& operator=(const InstalledComponents&) = delete;

  Object CreateObject(std::string_view progId) override;

  const std::vector<ManifestFolder>& Folders();

  // Loads a manifest's library without creating an object. Raises 429, with the reason, if it cannot serve.
  static const ServerLibrary& Load(const Manifest& manifest);

 private:
  Clock& clock_;
  std::vector<std::filesystem::path> paths_;
  std::optional<std::vector<ManifestFolder>> folders_;
};

}  // namespace qmx
