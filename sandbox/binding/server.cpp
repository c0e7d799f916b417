#include "binding/server.h"

#include "binding/guard.h"
#include "binding/names.h"

namespace orvan {
namespace {

std::vector<ServedClass>& Served() {
  static std::vector<ServedClass> classes;
  return classes;
}

qmx_status Create(const char* progId, std::size_t length, qmx_object** object, qmx_error* error) {
  return Guarded(error, [&] {
    const std::string_view wanted(progId, length);
    for (const ServedClass& served : Served()) {
      if (!SameName(served.progId, wanted)) continue;
      *object = served.make();
      return;
    }
    throw Failure(QMX_E_CANNOT_CREATE, "Sandbox",
                  "The sandbox does not serve \"" + std::string(wanted) + "\". Check the ProgID.");
  });
}

}  // namespace

const qmx_component_server* Serve(const qmx_component_host* host, qmx_error* error, const char* description,
                                  std::vector<ServedClass> classes) noexcept {
  static qmx_component_server server{sizeof server, QMX_ABI_VERSION, Create, nullptr, nullptr, nullptr, nullptr};
  const qmx_status status = Guarded(error, [&] {
    if (host->abi_version != QMX_ABI_VERSION)
      throw Failure(QMX_E_INVALID_CALL, description,
                    "The host speaks version " + std::to_string(host->abi_version) +
                        " of the component interface, this server version " + std::to_string(QMX_ABI_VERSION) +
                        ". Install versions that fit together.");
    Served() = std::move(classes);
    server.description = description;
  });
  return status == QMX_OK ? &server : nullptr;
}

}  // namespace orvan
