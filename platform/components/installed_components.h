// The components of this machine: those of the component servers with manifests in the given folders, then those that
// are registered in the operating system, and the built-in date object "java:java.util.Date" if nothing claims that
// ProgID.
//
// The first manifest that claims a ProgID serves it; if that fails, the next one. A failed creation is 429, and names
// every place that was searched and why it did not serve.
//
// Folders are read when the first object is created. Servers that create objects through their host get them from this
// object, or from the latest one if there are several.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "platform/components.h"
#include "platform/components/manifest.h"
#include "platform/components/server_library.h"
#include "platform/further_components.h"

namespace qmx {

class Clock;

class InstalledComponents : public Components {
 public:
  // `further` is null where the manifests are the only place.
  explicit InstalledComponents(Clock& clock, std::vector<std::filesystem::path> folders = ComponentFolders(),
                               std::unique_ptr<FurtherComponents> further = nullptr);
  ~InstalledComponents() override;
  InstalledComponents(const InstalledComponents&) = delete;
  InstalledComponents& operator=(const InstalledComponents&) = delete;

  Object CreateObject(std::string_view progId) override;

  // Whether a manifest or the further place has the ProgID, or the built-in date object serves it.
  bool IsRegistered(std::string_view progId);

  const std::vector<ManifestFolder>& Folders();
  FurtherComponents* Further() const { return further_.get(); }  // null where the manifests are the only place

  // Loads a manifest's library without creating an object. Raises 429, with the reason, if it cannot serve.
  static const ServerLibrary& Load(const Manifest& manifest);

 private:
  Clock& clock_;
  const std::unique_ptr<FurtherComponents> further_;
  std::vector<std::filesystem::path> paths_;
  std::optional<std::vector<ManifestFolder>> folders_;
};

}  // namespace qmx
