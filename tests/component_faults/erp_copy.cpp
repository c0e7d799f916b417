#include "tests/component_faults/erp_copy.h"

#include <sstream>

#include "startup/modStartUp.h"
#include "tests/support/scheduling_server.h"

namespace qmx::test {

ErpCopy::ErpCopy(const CopySubject& subject, const Way& way) : subject_(subject), way_(way) {
  ServeSchedulingServer(rig_.erp);
  subject.prepare(rig_);
  rig_.calls.Clear();
}

Components& ErpCopy::Reached(Components& scripted) {
  erp_ = std::make_unique<ServedErp>(scripted);
  components_ =
      std::make_unique<InstalledComponents>(rig_.clock, std::vector<std::filesystem::path>(), way_.reach(*erp_));
  return *components_;
}

void ErpCopy::Run() {
  Platform platform{rig_.clock, rig_.files, eventLog_, *components_, rig_.platform.database, rig_.failures};
  Main(platform, declarations_, rig_.ConnectionText() + ",," + subject_.request + ",C:\\log,Orvan,main,17");
}

std::vector<std::string> ErpCopy::Left() {
  std::vector<std::string> left = {"exit status " + std::to_string(static_cast<int>(declarations_.exitStatus))};
  for (const std::string& call : rig_.calls.StartingWith({"messages.", "requests.", "eventlog.Log"}))
    left.push_back(call);
  for (const auto& [path, text] : rig_.files.texts) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) left.push_back(path + ": " + line.substr(0, line.find('\r')));
  }
  left.push_back("in use " + rig_.InUse(subject_.table) + ", last update time " + rig_.Lutm(subject_.table));
  for (const std::string& row : rig_.Rows(subject_.table, subject_.columns)) left.push_back("row " + row);
  return left;
}

}  // namespace qmx::test
