// Interrupting qmxadmin copy while real copies run: each table's fate is told, and none stays in progress.
#include <csignal>
#include <sstream>

#include "platform/sqlite/driver.h"
#include "tests/support/caught_signals.h"
#include "tests/tools/qmxadmin/copying.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

// The local database is locked, so that no copy comes far before the test lets it.
class InterruptedCopies : public Copying {
 protected:
  InterruptedCopies() : Copying(DriversUnderTest().front().make()) {
    lock_.Open(base_->ConnectionText(), "", "");
    lock_.Execute("begin immediate");
  }

  // The processes of the copies, once there are so many of them.
  std::vector<std::string> Copies(std::size_t count) {
    std::vector<std::string> processes;
    while (processes.size() < count) {
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
      processes.clear();
      const std::string admin = ReadFile(folder_ / "process");
      const std::string own = admin.substr(0, admin.find('\n'));
      std::istringstream children(ReadFile("/proc/" + own + "/task/" + own + "/children"));
      for (std::string child; children >> child;) processes.push_back(child);
    }
    return processes;
  }

  SqliteDriver driver_;
  Connection lock_{{&driver_}, nullptr};
};

TEST_F(InterruptedCopies, AreReleasedAndThoseThatWaitAreNotRun) {
  std::vector<std::string> arguments = {"-c", "echo $$ > '" + folder_ / "process" + "'; exec \"$@\"", "sh", admin_};
  for (const std::string& argument : Arguments({"tsmdm030", "tsmdm100", "tsmdm105", "--jobs", "2"}))
    arguments.push_back(argument);
  RunningProcess run("/bin/sh", arguments, environment_);
  for (const std::string& copy : Copies(2)) AwaitThatItCatches(copy, SIGTERM);
  run.Signal(SIGTERM);
  lock_.Close();
  const Process end = run.Wait();
  EXPECT_EQ(end.status, 1);
  EXPECT_THAT(end.out, AllOf(HasSubstr("tsmdm030  Service Types    full    interrupted      -        -        -"),
                             HasSubstr("tsmdm100  Service Centers  full    interrupted      -"),
                             HasSubstr("tsmdm105  Service Areas    full    not run          -")));
  EXPECT_THAT(end.err, AllOf(HasSubstr("tsmdm030: interrupted\n  SIGTERM: the copy ends at its next call to the ERP."),
                             HasSubstr("  The table is released, so the next copy can start.\n"),
                             HasSubstr("Not run: tsmdm105.\n")));
  EXPECT_EQ(Rows("tstables where in_use <> 0"), 0);
  EXPECT_EQ(Rows("tstables"), 2);
}

}  // namespace
}  // namespace qmx::test
