#include "tools/qmxadmin/check/check_components.h"

#include <algorithm>

#include "copy/erp_listings.h"
#include "platform/components.h"
#include "platform/components/date_object.h"
#include "platform/components/installed_components.h"
#include "platform/error.h"
#include "platform/names.h"
#include "platform/posix/clock.h"

namespace qmx {
namespace {

constexpr const char* kAuditAndDates[] = {"audit.auditCriteria", "audit.period",       "audit.Parameter",
                                          "audit.AuditReader",   "audit.RecordStatus", "java:java.util.Date"};
constexpr const char* kSchedulingServer[] = {"QMXServer20.clsMessHandler", "QMXServer20.ClientRequests"};

constexpr const char* kRegister = "\"qmxadmin components\" shows the manifests that are read; one must name it.";
constexpr const char* kMendServer = "\"qmxadmin components\" shows which libraries load; docs/components.md has more.";
constexpr const char* kMendBridge = "The ERP's bridge says so: look there, or at its settings in --component.";

bool IsRegistered(InstalledComponents& components, const char* progId) {
  const auto claims = [progId](const Manifest& manifest) { return manifest.Claims(progId); };
  return std::any_of(components.Folders().begin(), components.Folders().end(), [&](const ManifestFolder& folder) {
    return std::any_of(folder.manifests.begin(), folder.manifests.end(), claims);
  });
}

// What becomes of the components of one line, up to the first failure.
class Trial {
 public:
  Trial(std::string what, InstalledComponents& components, Findings& findings)
      : what_(std::move(what)), components_(components), findings_(findings) {}

  // No object where it fails.
  Object Make(const char* progId) {
    Object made;
    if (!IsRegistered(components_, progId) && !SameName(progId, kDateProgId)) {
      findings_.Wrong(what_, std::string(progId) + " is not registered", kRegister);
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

  void Good(const std::string& told) { findings_.Good(what_, told); }

 private:
  std::string what_;
  InstalledComponents& components_;
  Findings& findings_;
};

void CheckMade(InstalledComponents& components, const char* progId, Findings& findings) {
  Trial trial(progId, components, findings);
  if (trial.Make(progId)) trial.Good("can be made");
}

// The manager, and the record class, which changed copies need besides.
void CheckTable(InstalledComponents& components, const ErpListing& table, const std::string& businessComponent,
                Findings& findings) {
  Trial trial(std::string(table.table) + ", " + table.manager, components, findings);
  const Object manager = trial.Make(table.manager);
  const Object record = manager ? trial.Make(table.record) : Object();
  if (!record || !trial.Succeeds(kMendBridge, [&] { record.Call("getClass"); })) return;
  if (businessComponent.empty()) {
    trial.Good("can be made");
    return;
  }
  std::string answer;
  const bool answered = trial.Succeeds(kMendBridge, [&] {
    manager.Call("initialize", businessComponent);
    const std::vector<Argument> bounds(table.bounds.begin(), table.bounds.end());
    const Object records = Invoke(manager, table.list, bounds).ToObject();
    const bool any = records && records.Call("hasMoreElements").ToBoolean();
    manager.Call("Close");
    answer = any ? "answers, and has records" : "answers, and has no record";
  });
  if (answered) trial.Good(answer);
}

}  // namespace

void CheckComponents(const std::string& businessComponent, Findings& findings) {
  PosixClock clock;
  InstalledComponents components(clock);
  for (const ManifestFolder& folder : components.Folders()) {
    for (const std::string& problem : folder.problems)
      findings.Wrong("components", problem, "Correct it, or QMX_COMPONENTS.");
  }
  for (const ErpListing& table : ErpListings()) {
    CheckTable(components, table, businessComponent, findings);
  }
  if (businessComponent.empty()) findings.NotLookedAt("ERP", "no manager was asked, since --component is not given");
  for (const char* progId : kAuditAndDates) CheckMade(components, progId, findings);
  for (const char* progId : kSchedulingServer) {
    if (IsRegistered(components, progId)) {
      CheckMade(components, progId, findings);
    } else {
      findings.NotLookedAt(progId, "it is not registered, and needed by copies with a REQUEST only");
    }
  }
}

}  // namespace qmx
