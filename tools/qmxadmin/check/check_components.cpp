#include "tools/qmxadmin/check/check_components.h"

#include <fmt/format.h>

#include "copy/erp_listings.h"
#include "platform/components.h"
#include "platform/components/installed_components.h"
#include "platform/error.h"
#include "platform/system/clock.h"
#include "platform/system/further_components.h"
#include "tools/qmxadmin/check/check_records.h"
#include "tools/qmxadmin/check/separate_process.h"
#include "tools/qmxadmin/used_components.h"

namespace qmx {
namespace {

constexpr const char* kMendServer = "\"qmxadmin components\" shows which libraries load. See docs/components.md.";
constexpr const char* kMendBridge =
    "The ERP's component server reported this. Check its configuration and the --component argument.";

std::string HowToRegister(const InstalledComponents& components) {
  return fmt::format("One of the manifests must name it{}. \"qmxadmin components\" lists them.",
                     components.Further() ? ", or it must be registered in " + components.Further()->Name() : "");
}

// Checks the components of one line of output, up to the first failure.
class Trial {
 public:
  Trial(std::string what, InstalledComponents& components, FindingSink& findings)
      : what_(std::move(what)), components_(components), findings_(findings) {}

  // Returns no object if the creation fails.
  Object Make(const char* progId) {
    Object made;
    if (!components_.IsRegistered(progId)) {
      findings_.Wrong(what_, fmt::format("{} is not registered", progId), HowToRegister(components_));
    } else {
      Succeeds(kMendServer, [&] { made = components_.CreateObject(progId); });
    }
    return made;
  }

  template <typename Step>
  bool Succeeds(const char* whatToDo, Step&& step) {
    try {
      step();
      return true;
    } catch (const Error& error) {
      findings_.Wrong(what_, error, whatToDo);
      return false;
    }
  }

  void Good(const std::string& detail) { findings_.Good(what_, detail); }

 private:
  std::string what_;
  InstalledComponents& components_;
  FindingSink& findings_;
};

void CheckMade(InstalledComponents& components, const char* progId, FindingSink& findings) {
  Trial trial(progId, components, findings);
  if (trial.Make(progId)) trial.Good("can be created");
}

// Checks the manager, and the record class, which changed copies need as well.
void CheckTable(InstalledComponents& components, const ErpListing& table, const std::string& businessComponent,
                FindingSink& findings) {
  Trial trial(fmt::format("{}, {}", table.table, table.manager), components, findings);
  const Object manager = trial.Make(table.manager);
  const Object record = manager ? trial.Make(table.record) : Object();
  if (!record || !trial.Succeeds(kMendBridge, [&] { record.Call("getClass"); })) return;
  if (businessComponent.empty()) {
    trial.Good("can be created");
    return;
  }
  std::string answer;
  const bool answered = trial.Succeeds(kMendBridge, [&] {
    manager.Call("initialize", businessComponent);
    const std::vector<Argument> bounds(table.bounds.begin(), table.bounds.end());
    const Object records = Invoke(manager, table.list, bounds).ToObject();
    const bool any = records && records.Call("hasMoreElements").ToBoolean();
    manager.Call("Close");
    answer = any ? "answers and has records" : "answers and has no records";
  });
  if (answered) trial.Good(answer);
}

}  // namespace

void CheckComponents(const ComponentChecks& wanted, FindingSink& findings) {
  // Parses the manifests and loads no library, so this process keeps running whatever a component does.
  SystemClock clock;
  InstalledComponents components(clock, ComponentFolders(), ComponentsOfTheSystem());
  for (const ManifestFolder& folder : components.Folders()) {
    for (const std::string& problem : folder.problems)
      findings.Wrong("components", problem, "Correct it or QMX_COMPONENTS.");
  }
  std::vector<SeparateCheck> checks;
  for (const ErpListing& table : ErpListings()) {
    checks.push_back({fmt::format("{}, {}", table.table, table.manager),
                      [&, table](FindingSink& to) { CheckTable(components, table, wanted.businessComponent, to); }});
    if (!wanted.records || wanted.businessComponent.empty()) continue;
    checks.push_back({fmt::format("record of {}", table.table), [&, table](FindingSink& to) {
                        CheckRecord(table.table, wanted.businessComponent, wanted.calendars, to);
                      }});
  }
  if (wanted.businessComponent.empty()) {
    checks.push_back(
        {"ERP", [](FindingSink& to) { to.NotChecked("ERP", "--component is not given, so no manager was called"); }});
  }
  for (const char* progId : kAuditAndDates) {
    checks.push_back({progId, [&, progId](FindingSink& to) { CheckMade(components, progId, to); }});
  }
  for (const char* progId : kSchedulingServer) {
    checks.push_back({progId, [&, progId](FindingSink& to) {
                        if (components.IsRegistered(progId)) {
                          CheckMade(components, progId, to);
                        } else {
                          to.NotChecked(progId, "it is not registered; only copies with a REQUEST need it");
                        }
                      }});
  }
  RunInSeparateProcess(checks, findings);
}

}  // namespace qmx
