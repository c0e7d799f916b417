#include "tools/qmxadmin/components.h"

#include <iostream>
#include <map>
#include <string>

#include "platform/components/date_object.h"
#include "platform/components/installed_components.h"
#include "platform/error.h"
#include "platform/names.h"
#include "platform/posix/clock.h"

namespace qmx {
namespace {

// Why the library does not load; empty where it does.
std::string WhyNotLoaded(const Manifest& manifest) {
  try {
    InstalledComponents::Load(manifest);
    return {};
  } catch (const Error& error) {
    return error.Description();
  }
}

struct Registered {
  Manifest manifest;
  std::string problem;  // of its library; empty where it loads
};

struct Registry {
  std::vector<Registered> manifests;          // in the order in which they are asked
  std::vector<std::string> problems;          // of folders and of manifests that cannot be read
  std::map<std::string, std::string> served;  // by folded ProgID: the manifest whose library is asked

  bool IsServedBy(const std::string& progId, const Manifest& manifest) const {
    const auto server = served.find(FoldName(progId));
    return server != served.end() && server->second == manifest.path;
  }
};

Registry ReadRegistry() {
  PosixClock clock;
  InstalledComponents components(clock);
  Registry registry;
  for (const ManifestFolder& folder : components.Folders()) {
    registry.problems.insert(registry.problems.end(), folder.problems.begin(), folder.problems.end());
    for (const Manifest& manifest : folder.manifests) {
      registry.manifests.push_back({manifest, WhyNotLoaded(manifest)});
      if (!registry.manifests.back().problem.empty()) continue;
      for (const std::string& progId : manifest.progIds) registry.served.emplace(FoldName(progId), manifest.path);
    }
  }
  return registry;
}

void PrintText(const Registry& registry) {
  for (const auto& [manifest, problem] : registry.manifests) {
    std::cout << manifest.path.string() << "\n  library " << manifest.library.string() << ": "
              << (problem.empty() ? "loads" : "does not load: " + problem) << '\n';
    for (const std::string& progId : manifest.progIds) {
      const bool other = problem.empty() && !registry.IsServedBy(progId, manifest);
      std::cout << "  " << progId << (other ? "  (served by " + registry.served.at(FoldName(progId)) + ")" : "")
                << '\n';
    }
  }
  if (!registry.served.contains(FoldName(kDateProgId))) std::cout << "built in\n  " << kDateProgId << '\n';
  for (const std::string& problem : registry.problems) std::cout << problem << ".\n";
}

void PrintJson(const Registry& registry) {
  Listing listing;
  for (const char* key : {"progid", "manifest", "library", "loads", "serves", "problem"}) {
    listing.columns.push_back({.key = key, .title = ""});
  }
  for (const auto& [manifest, problem] : registry.manifests) {
    for (const std::string& progId : manifest.progIds) {
      listing.rows.push_back({progId, manifest.path.string(), manifest.library.string(), problem.empty(),
                              registry.IsServedBy(progId, manifest), problem.empty() ? Variant::Null() : problem});
    }
  }
  if (!registry.served.contains(FoldName(kDateProgId))) {
    listing.rows.push_back({kDateProgId, Variant::Null(), Variant::Null(), true, true, Variant::Null()});
  }
  for (const std::string& problem : registry.problems) {
    listing.rows.push_back({Variant::Null(), Variant::Null(), Variant::Null(), false, false, problem});
  }
  Print(listing, OutputForm::Json);
}

}  // namespace

AdminStatus ShowComponents(const ComponentsArguments& arguments) {
  const Registry registry = ReadRegistry();
  arguments.form == OutputForm::Json ? PrintJson(registry) : PrintText(registry);
  bool fine = registry.problems.empty();
  for (const Registered& registered : registry.manifests) fine &= registered.problem.empty();
  return fine ? AdminStatus::Done : AdminStatus::Wrong;
}

}  // namespace qmx
