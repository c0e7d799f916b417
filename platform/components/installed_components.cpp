#include "platform/components/installed_components.h"

#include <algorithm>

#include "platform/components/abi_values.h"
#include "platform/components/date_object.h"
#include "platform/components/server_library.h"
#include "platform/interruption.h"
#include "platform/names.h"
#include "platform/running_call.h"
#include "platform/scheduling_server.h"

namespace qmx {
namespace {

std::vector<InstalledComponents*> hosts;  // the C interface's create has no other way to find its host

qmx_status CreateForServer(const char* progId, std::size_t length, qmx_object** object, qmx_error* error) {
  const OuterCallRestored outerCall;
  try {
    const std::string_view name(progId, length);
    if (hosts.empty()) {
      throw Error(errors::kCannotCreateObject, "Components", "The host creates no objects any more.")
          .With("progid", std::string(name));
    }
    *object = GiveObject(hosts.back()->CreateObject(name));
    return QMX_OK;
  } catch (...) {
    return FailWithCurrentError(error);
  }
}

const qmx_component_host kHost = {sizeof(qmx_component_host), QMX_ABI_VERSION, CreateForServer};

// Every place that was searched, and why it did not serve.
class Search {
 public:
  // The details of the first failure that has any are kept.
  void Failed(const Error& error, const Manifest& manifest) {
    Failed(manifest.path.string() + ", library " + manifest.library.string() + ": " + error.Description());
    for (const auto& [what, value] : error.Details()) {
      if (what == "details" && details_.empty()) details_ = value;
    }
  }

  void Failed(std::string what) {
    if (what.ends_with('.')) what.pop_back();
    report_ += "; " + what;
  }

  [[noreturn]] void Fail(std::string_view progId) const {
    Error error(errors::kCannotCreateObject, "Components",
                "Cannot create an object of \"" + std::string(progId) + "\"" + report_ +
                    ". The folders of QMX_COMPONENTS are searched for component manifests.");
    error.With("progid", std::string(progId));
    throw details_.empty() ? error : error.With("details", details_);
  }

 private:
  std::string report_;
  std::string details_;
};

}  // namespace

InstalledComponents::InstalledComponents(Clock& clock, std::vector<std::filesystem::path> folders,
                                         std::unique_ptr<FurtherComponents> further)
    : clock_(clock), further_(std::move(further)), paths_(std::move(folders)) {
  hosts.push_back(this);
}

InstalledComponents::~InstalledComponents() { std::erase(hosts, this); }

const std::vector<ManifestFolder>& InstalledComponents::Folders() {
  if (!folders_) {
    folders_.emplace();
    for (const std::filesystem::path& path : paths_) folders_->push_back(ReadManifestFolder(path));
  }
  return *folders_;
}

bool InstalledComponents::IsRegistered(std::string_view progId) {
  const auto claims = [progId](const Manifest& manifest) { return manifest.Claims(progId); };
  const auto hasOne = [&](const ManifestFolder& folder) {
    return std::any_of(folder.manifests.begin(), folder.manifests.end(), claims);
  };
  return SameName(progId, kDateProgId) || std::any_of(Folders().begin(), Folders().end(), hasOne) ||
         (further_ && further_->Find(progId).isRegistered);
}

const ServerLibrary& InstalledComponents::Load(const Manifest& manifest) {
  return ServerLibrary::Load(manifest.library, kHost);
}

Object InstalledComponents::CreateObject(std::string_view progId) {
  const bool mayBeInterrupted = !IsSchedulingServers(std::string(progId).c_str()) && !RunningCall::Member();
  if (mayBeInterrupted) Interruption::RaiseIfRequested();
  Search search;
  bool claimed = false;
  for (const ManifestFolder& folder : Folders()) {
    bool claimedHere = false;
    for (const Manifest& manifest : folder.manifests) {
      if (!manifest.Claims(progId)) continue;
      claimedHere = claimed = true;
      try {
        return ServerLibrary::Load(manifest.library, kHost).Create(manifest, progId);
      } catch (const Error& error) {
        search.Failed(error, manifest);
      }
    }
    for (const std::string& problem : folder.problems) search.Failed(problem);
    const bool unread = folder.manifests.empty() && !folder.problems.empty();
    if (!claimedHere && !unread) search.Failed(folder.path.string() + ": no manifest names it");
  }
  if (further_) {
    FurtherComponents::Answer answer = further_->Create(progId);
    if (answer.object) return answer.object;
    claimed = claimed || answer.isRegistered;
    search.Failed(std::move(answer.refusal));
  }
  if (!claimed && SameName(progId, kDateProgId)) return MakeDateObject(clock_);
  if (further_) {
    search.Failed(std::string("built-in: ") +
                  (SameName(progId, kDateProgId) ? "not used, because the date is registered" : "only the date"));
  }
  search.Fail(progId);
}

}  // namespace qmx
