#include "tools/qmxadmin/components.h"

#include <fmt/format.h>

#include <iostream>
#include <map>
#include <string>

#include "platform/components/date_object.h"
#include "platform/components/installed_components.h"
#include "platform/error.h"
#include "platform/system/clock.h"
#include "platform/system/further_components.h"
#include "tools/qmxadmin/used_components.h"

namespace qmx {
namespace {

struct Registered {
  Manifest manifest;
  std::string problem;                         // why the library does not load, or empty
  std::vector<ServerFact> facts;               // what the library reports about itself
  std::map<std::string, std::string> missing;  // by ProgID: why the library cannot create it
};

// Loads the library and asks it for its facts and its ProgIDs.
Registered Examine(const Manifest& manifest) {
  Registered registered{manifest, {}, {}, {}};
  try {
    const ServerLibrary& library = InstalledComponents::Load(manifest);
    registered.facts = library.Describe(manifest);
    for (const std::string& progId : manifest.progIds) {
      if (IsPattern(progId)) continue;
      try {
        library.Check(manifest, progId);
      } catch (const Error& error) {
        registered.missing.emplace(progId, error.Description());
      }
    }
  } catch (const Error& error) {
    registered.problem = error.Description();
  }
  return registered;
}

// What is registered besides the manifests, of the ProgIDs that the copies use.
struct FurtherPlace {
  std::string name;
  std::map<std::string, std::string> problems;  // by ProgID: why its server cannot be used, or empty
};

struct Registry {
  std::vector<Registered> manifests;  // in the order of their precedence
  FurtherPlace further;
  std::vector<std::string> problems;  // folders and manifests that cannot be read

  // Returns the first manifest that claims the ProgID and whose library loads, or null.
  const Manifest* ServerOf(std::string_view progId) const {
    for (const Registered& registered : manifests) {
      if (registered.problem.empty() && registered.manifest.Claims(progId)) return &registered.manifest;
    }
    return nullptr;
  }
  bool HasBuiltInDate() const { return !ServerOf(kDateProgId) && !further.problems.contains(std::string(kDateProgId)); }
};

FurtherPlace Examine(FurtherComponents& place) {
  FurtherPlace examined{place.Name(), {}};
  for (const std::string& progId : UsedProgIds()) {
    FurtherComponents::Registration found = place.Find(progId);
    if (found.isRegistered) examined.problems.emplace(progId, std::move(found.problem));
  }
  return examined;
}

Registry ReadRegistry() {
  SystemClock clock;
  InstalledComponents components(clock, ComponentFolders(), ComponentsOfTheSystem());
  Registry registry;
  for (const ManifestFolder& folder : components.Folders()) {
    registry.problems.insert(registry.problems.end(), folder.problems.begin(), folder.problems.end());
    for (const Manifest& manifest : folder.manifests) registry.manifests.push_back(Examine(manifest));
  }
  if (components.Further()) registry.further = Examine(*components.Further());
  return registry;
}

// `server` is that of another manifest, which serves the ProgID first, or null.
void PrintProgId(const std::string& progId, const Manifest* server, const std::string& problem) {
  std::cout << fmt::format("  {}{}{}\n", progId, server ? fmt::format("  (served by {})", server->path.string()) : "",
                           problem.empty() ? "" : ": " + problem);
}

void PrintText(const Registry& registry) {
  for (const auto& [manifest, problem, facts, missing] : registry.manifests) {
    std::cout << fmt::format("{}\n  library {}: {}\n", manifest.path.string(), manifest.library.string(),
                             problem.empty() ? "loads" : "does not load: " + problem);
    for (const ServerFact& fact : facts) std::cout << fmt::format("  {}: {}\n", fact.name, fact.value);
    for (const std::string& progId : manifest.progIds) {
      const Manifest* const server = registry.ServerOf(progId);
      const bool other = problem.empty() && server->path != manifest.path;
      const auto reason = missing.find(progId);
      PrintProgId(progId, other ? server : nullptr, reason == missing.end() ? "" : reason->second);
    }
  }
  if (!registry.further.problems.empty()) std::cout << registry.further.name << "\n";
  for (const auto& [progId, problem] : registry.further.problems)
    PrintProgId(progId, registry.ServerOf(progId), problem);
  if (registry.HasBuiltInDate()) std::cout << fmt::format("built in\n  {}\n", kDateProgId);
  for (const std::string& problem : registry.problems) std::cout << fmt::format("{}.\n", problem);
}

void PrintJson(const Registry& registry) {
  Listing listing;
  for (const char* key : {"progid", "manifest", "library", "loads", "serves", "server", "problem"}) {
    listing.columns.push_back({.key = key, .title = ""});
  }
  for (const auto& [manifest, problem, facts, missing] : registry.manifests) {
    std::vector<std::string> pairs;
    for (const auto& [name, value] : facts) pairs.push_back(fmt::format("{}: {}", name, value));
    const std::string server = fmt::format("{}", fmt::join(pairs, "; "));
    for (const std::string& progId : manifest.progIds) {
      const auto why = missing.find(progId);
      const Manifest* const asked = registry.ServerOf(progId);
      const bool serves = asked && asked->path == manifest.path && why == missing.end();
      listing.rows.push_back({progId, manifest.path.string(), manifest.library.string(), problem.empty(), serves,
                              TextOrNull(server), TextOrNull(why == missing.end() ? problem : why->second)});
    }
  }
  const Variant null = Variant::Null();
  for (const auto& [progId, problem] : registry.further.problems) {
    const bool loads = problem.empty();
    listing.rows.push_back(
        {progId, null, null, loads, loads && !registry.ServerOf(progId), registry.further.name, TextOrNull(problem)});
  }
  if (registry.HasBuiltInDate()) listing.rows.push_back({kDateProgId, null, null, true, true, null, null});
  for (const std::string& problem : registry.problems) {
    listing.rows.push_back({null, null, null, false, false, null, problem});
  }
  Print(listing, OutputForm::Json);
}

}  // namespace

AdminStatus ShowComponents(const ComponentsArguments& arguments) {
  const Registry registry = ReadRegistry();
  arguments.form == OutputForm::Json ? PrintJson(registry) : PrintText(registry);
  bool fine = registry.problems.empty();
  for (const Registered& registered : registry.manifests)
    fine &= registered.problem.empty() && registered.missing.empty();
  for (const auto& [progId, problem] : registry.further.problems) fine &= problem.empty();
  return fine ? AdminStatus::Done : AdminStatus::Wrong;
}

}  // namespace qmx
