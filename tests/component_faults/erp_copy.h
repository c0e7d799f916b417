// A run of the whole program over a component server, with messages and status to the scheduling server.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/components/installed_components.h"
#include "tests/component_faults/copy_subjects.h"
#include "tests/component_faults/ways.h"
#include "tests/support/logged_events.h"

namespace qmx::test {

class ErpCopy {
 public:
  ErpCopy(const CopySubject& subject, const Way& way);

  void Run();

  ServedErp& Erp() { return *erp_; }
  CalendarRig& Rig() { return rig_; }

  // What the scheduling server, the event log, the copy log and the database show, and the exit status.
  std::vector<std::string> Left();

  // The chains of causes on standard error.
  std::vector<std::string> Reported() const { return rig_.failures.chains; }

 private:
  Components& Reached(Components& scripted);

  const CopySubject& subject_;
  const Way& way_;
  std::unique_ptr<ServedErp> erp_;
  std::unique_ptr<InstalledComponents> components_;
  CalendarRig rig_{{}, [this](Components& scripted) -> Components& { return Reached(scripted); }};
  LoggedEvents eventLog_{rig_.calls};
  modDeclarations declarations_;
};

}  // namespace qmx::test
