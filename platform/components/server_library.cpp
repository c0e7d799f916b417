#include "platform/components/server_library.h"

#include <map>

#include "platform/components/server_object.h"
#include "platform/running_call.h"
#include "platform/system/shared_library.h"

namespace qmx {
namespace {

struct Entered {
  const qmx_component_server* server = nullptr;
  std::string refusal;  // if there is no server
};

Entered Refused(std::string why) { return {nullptr, std::move(why)}; }

std::string Described(const Error& error) {
  return "error " + std::to_string(error.Number()) + ", " + error.Source() + ": " + error.Description();
}

Entered Enter(void* library, const qmx_component_host& host) {
  void* const symbol = FindSymbol(library, QMX_COMPONENT_SERVER_ENTRY_NAME);
  if (!symbol) return Refused("it has no entry function " QMX_COMPONENT_SERVER_ENTRY_NAME);

  qmx_error error = EmptyAbiError();
  const qmx_component_server* server = nullptr;
  try {
    server = reinterpret_cast<qmx_component_server_entry_function>(symbol)(&host, &error);
  } catch (...) {
    return Refused("its entry function threw an exception: " + CurrentError().Description());
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

// Calls the server with an error to fill in. Raises 429 for any answer but QMX_OK.
template <typename Call>
void Answered(const std::string& source, Call&& call) {
  const auto refuse = [](const std::string& why, const std::string& details = {}) {
    Error error(errors::kCannotCreateObject, "Components", why);
    throw details.empty() ? error : error.With("details", details);
  };
  qmx_error error = EmptyAbiError();
  qmx_status status = QMX_OK;
  try {
    status = call(&error);
  } catch (...) {
    refuse("it threw an exception: " + CurrentError().Description());
  }
  if (status == QMX_FAILED) {
    const std::string details = ShownText(error.details, error.details_length);
    refuse("it refused with " + Described(FromAbi(error, source)), std::string(details));
  }
  if (status != QMX_OK) refuse("it returned status " + std::to_string(status) + ", neither QMX_OK nor QMX_FAILED");
}

// A manifest in the form of the C interface. Borrows the texts of its settings.
class AbiManifest {
 public:
  AbiManifest(const Manifest& manifest, std::string_view claim) : path_(manifest.path.string()) {
    for (const Manifest::Setting& setting : manifest.settings) {
      settings_.push_back({sizeof(qmx_setting), 0, setting.name.data(), setting.name.size(), setting.value.data(),
                           setting.value.size()});
    }
    for (const qmx_setting& setting : settings_) pointers_.push_back(&setting);
    manifest_ = {sizeof(qmx_manifest), 0,           path_.data(), path_.size(), pointers_.data(), pointers_.size(),
                 claim.data(),         claim.size()};
  }
  AbiManifest(const AbiManifest&) = delete;
  AbiManifest& operator=(const AbiManifest&) = delete;

  const qmx_manifest* Get() const { return &manifest_; }

 private:
  std::string path_;
  std::vector<qmx_setting> settings_;
  std::vector<const qmx_setting*> pointers_;
  qmx_manifest manifest_;
};

// Returns the ProgID in the spelling of the claim; the part that a "*" matches keeps its spelling.
std::string Spelled(const std::string& claim, std::string_view progId) {
  if (!IsPattern(claim)) return claim;
  const std::size_t start = claim.size() - 1;
  return claim.substr(0, start) + std::string(progId.substr(start));
}

}  // namespace

const ServerLibrary& ServerLibrary::Load(const std::filesystem::path& path, const qmx_component_host& host) {
  struct Loaded {
    ServerLibrary library;
    std::string refusal;
  };
  // By handle, because one file is one library under every path. Never destroyed, because a component may end the
  // process while others are in use.
  static auto& libraries = *new std::map<void*, Loaded>;

  const auto refuse = [&](const std::string& why) { throw Error(errors::kCannotCreateObject, "Components", why); };
  const RunningCall running(RunningCall::KeepText(path.string()), "the loading");
  const SharedLibrary shared = LoadSharedLibrary(path);
  if (!shared.handle) refuse(shared.problem);
  auto known = libraries.find(shared.handle);
  if (known == libraries.end()) {
    const Entered entered = Enter(shared.handle, host);
    known = libraries.emplace(shared.handle, Loaded{ServerLibrary(entered.server), entered.refusal}).first;
  }
  if (!known->second.refusal.empty()) refuse(known->second.refusal);
  return known->second.library;
}

Object ServerLibrary::Create(const Manifest& manifest, std::string_view progId) const {
  const auto refuse = [&](const std::string& why) { throw Error(errors::kCannotCreateObject, "Components", why); };
  const bool configurable = QMX_HAS(server_, create_for) && server_->create_for;
  if (!configurable && !manifest.settings.empty()) {
    refuse("it takes no settings, but its manifest has \"setting " + manifest.settings.front().name +
           "\"; remove the setting, or install a version of the library that takes it");
  }
  qmx_object* object = nullptr;
  const RunningCall running(RunningCall::KeepText(progId), "the creation");
  Answered(std::string(progId), [&](qmx_error* error) {
    if (!configurable) return server_->create(progId.data(), progId.size(), &object, error);
    const AbiManifest abi(manifest, *manifest.Claim(progId));
    const std::string spelled = Spelled(*manifest.Claim(progId), progId);
    return server_->create_for(abi.Get(), spelled.data(), spelled.size(), &object, error);
  });
  if (!object) refuse("it succeeded without giving an object");
  return Object(std::make_shared<ServerObject>(object, progId));
}

std::vector<ServerFact> ServerLibrary::Describe(const Manifest& manifest) const {
  std::vector<ServerFact> facts;
  if (!QMX_HAS(server_, describe) || !server_->describe) return facts;
  const auto sink = [](void* context, const char* name, std::size_t nameLength, const char* value,
                       std::size_t valueLength) {
    static_cast<std::vector<ServerFact>*>(context)->push_back(
        {ShownText(name, nameLength), ShownText(value, valueLength)});
  };
  const AbiManifest abi(manifest, {});
  const RunningCall running(RunningCall::KeepText(manifest.path.string()), "the description");
  Answered("the server", [&](qmx_error* error) { return server_->describe(abi.Get(), sink, &facts, error); });
  return facts;
}

void ServerLibrary::Check(const Manifest& manifest, const std::string& progId) const {
  if (!QMX_HAS(server_, check) || !server_->check) return;
  const AbiManifest abi(manifest, progId);
  const RunningCall running(RunningCall::KeepText(progId), "the check");
  Answered(progId, [&](qmx_error* error) { return server_->check(abi.Get(), progId.data(), progId.size(), error); });
}

}  // namespace qmx
