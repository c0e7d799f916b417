// The sandbox ERP as a host sees it, over a file of the test's own: all tables, empty, with their audit trail.
#pragma once

#include <string>
#include <vector>

#include "platform/components/installed_components.h"
#include "sandbox/erp/sqlite.h"
#include "sandbox/erp/table.h"
#include "tests/support/fake_clock.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {

class SandboxErp {
 public:
  SandboxErp();

  // Any SQL, as another program would run it on the file.
  void Run(const std::string& sql) { file_->Execute(sql); }
  // The same, at a time that the audit trail is made to believe.
  void RunAt(const std::string& moment, const std::string& sql);

  Object Create(std::string_view progId) { return components_.CreateObject(progId); }
  std::string BusinessComponent() const { return "OrvanSandbox, " + path_; }
  const std::string& Path() const { return path_; }

  Object Manager(std::string_view progId);  // initialized
  Object Date(DateTime moment);             // of the host

 private:
  TempFolder folder_;
  std::string path_;
  std::shared_ptr<orvan::Database> file_;
  FakeClock clock_;
  InstalledComponents components_;
};

// What the getters of each remaining element give, as "a|b|c".
std::vector<std::string> Rows(const Object& enumeration, const std::vector<std::string>& getters);

// A date object's parts, as the getters give them: "126-10-20 14:5:9".
std::string Parts(const Object& date);

}  // namespace qmx::test
