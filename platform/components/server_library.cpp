#include "platform/components/server_library.h"

#include <dlfcn.h>

#include <map>

#include "platform/components/server_object.h"
#include "platform/running_call.h"

namespace qmx {
namespace {

struct Entered {
  const qmx_component_server* server = nullptr;
  std::string refusal;  // where there is no server
};

Entered Refused(std::string why) { return {nullptr, std::move(why)}; }

std::string Described(const Error& error) {
  return "error " + std::to_string(error.Number()) + ", " + error.Source() + ": " + error.Description();
}

Entered Enter(void* library, const qmx_component_host& host) {
  void* const symbol = dlsym(library, QMX_COMPONENT_SERVER_ENTRY_NAME);
  if (!symbol) return Refused("it has no entry function " QMX_COMPONENT_SERVER_ENTRY_NAME);

  qmx_error error = EmptyAbiError();
  const qmx_component_server* server = nullptr;
  try {
    server = reinterpret_cast<qmx_component_server_entry_function>(symbol)(&host, &error);
  } catch (...) {
    return Refused("its entry function let an exception out: " + CurrentError().Description());
  }
  if (!server) return Refused("its entry function failed with " + Described(FromAbi(error, "the server")));
  if (!QMX_HAS(server, abi_version)) return Refused("its server description is too short to have a version");
  if (server->abi_version != QMX_ABI_VERSION) {
    return Refused("it speaks version " + std::to_string(server->abi_version) +
                   " of the component interface, this program version " + std::to_string(QMX_ABI_VERSION) +
                   "; rebuild it against this version");
  }
  if (!QMX_HAS(server, create) || !server->create)
    return Refused("its server description is too short to create objects");
  return {server, {}};
}

}  // namespace

const ServerLibrary& ServerLibrary::Load(const std::filesystem::path& path, const qmx_component_host& host) {
  struct Loaded {
    ServerLibrary library;
    std::string refusal;
  };
  // By handle: the same file is the same library under every path. Never destroyed, since a component may end the
  // process while others are used.
  static auto& libraries = *new std::map<void*, Loaded>;

  const auto refuse = [&](const std::string& why) { throw Error(errors::kCannotCreateObject, "Components", why); };
  const RunningCall running(RunningCall::KeepText(path.native()), "the loading");
  void* const handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!handle) refuse(dlerror());
  auto known = libraries.find(handle);
  if (known == libraries.end()) {
    const Entered entered = Enter(handle, host);
    known = libraries.emplace(handle, Loaded{ServerLibrary(entered.server), entered.refusal}).first;
  }
  if (!known->second.refusal.empty()) refuse(known->second.refusal);
  return known->second.library;
}

Object ServerLibrary::Create(std::string_view progId) const {
  const auto refuse = [&](const std::string& why) { throw Error(errors::kCannotCreateObject, "Components", why); };
  qmx_object* object = nullptr;
  qmx_error error = EmptyAbiError();
  qmx_status status = QMX_OK;
  try {
    const RunningCall running(RunningCall::KeepText(progId), "the creation");
    status = server_->create(progId.data(), progId.size(), &object, &error);
  } catch (...) {
    refuse("it let an exception out: " + CurrentError().Description());
  }
  if (status == QMX_FAILED) refuse("it refused with " + Described(FromAbi(error, std::string(progId))));
  if (status != QMX_OK) refuse("it returned status " + std::to_string(status) + ", neither QMX_OK nor QMX_FAILED");
  if (!object) refuse("it succeeded without giving an object");
  return Object(std::make_shared<ServerObject>(object, progId));
}

}  // namespace qmx
