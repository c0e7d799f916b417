// Interrupting qmxadmin expand: it ends between two calendars.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "platform/database.h"
#include "platform/sqlite/driver.h"
#include "tests/support/caught_signals.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

using testing::AnyOf;
using testing::HasSubstr;

class InterruptedExpansion : public testing::Test {
 protected:
  InterruptedExpansion() {
    test::Run(QMX_ADMIN, {"init", text_, ""});
    local_.Open(text_, "", "");
    for (const std::string code : {"CAL1", "CAL2", "CAL3"}) {
      local_.Execute("insert into tsmdm140 (emno, ccal) values ('" + code + "', '" + code + "')");
      local_.Execute("insert into tcccp030 (ccal, ract, stdt, sttm, endt, entm) values ('" + code +
                     "', 'WRK', '2026-11-23', 800, '2026-11-24', 1200)");
      local_.Execute("insert into tscalender (ccal, sttm, entm) values ('" + code + "', '1999-01-01', '1999-01-02')");
    }
  }

  int Count(const std::string& condition) {
    Recordset rows(nullptr);
    rows.Open("select count(*) from tscalender where " + condition, local_, kCursorKeyset, kLockOptimistic,
              kCommandText);
    return rows.Fields(std::size_t{0}).Value().ToInt32();
  }

  TempFolder folder_;
  SqliteDriver driver_;
  std::string text_ = "Provider=SQLite;Data Source=" + folder_ / "local.db";
  Connection local_{{&driver_}, nullptr};
};

TEST_F(InterruptedExpansion, LeavesEachCalendarNewOrOldAndSaysWhich) {
  local_.Execute("begin immediate");  // so that at most the first calendar is begun before the signal
  RunningProcess run(
      "/bin/sh", {"-c", "echo $$ > '" + folder_ / "process" + "'; exec \"$@\"", "sh", QMX_ADMIN, "expand", text_, ""});
  std::string process;
  while (!process.ends_with('\n')) process = ReadFile(folder_ / "process");
  process.pop_back();
  while (!ReadFile("/proc/" + process + "/cmdline").starts_with(QMX_ADMIN)) continue;
  AwaitThatItCatches(process, SIGTERM);
  run.Signal(SIGTERM);
  local_.Execute("commit");
  const Process end = run.Wait();
  EXPECT_EQ(end.status, 2);
  EXPECT_EQ(end.out, "");
  EXPECT_THAT(end.err, HasSubstr("SIGTERM: the expansion ends before the next calendar. A second signal ends it at "
                                 "once.\nerror 18, Interrupted: SIGTERM asked the program to end. [expanded: "));
  EXPECT_THAT(end.err, AnyOf(HasSubstr("[expanded: 1 of 3 calendars, not CAL2 and those after it; expand again]\n"),
                             HasSubstr("[expanded: 0 of 3 calendars, not CAL1 and those after it; expand again]\n")));
  const bool firstIsNew = end.err.find("expanded: 1") != std::string::npos;
  EXPECT_EQ(Count("ccal = 'CAL1' and sttm > '2026-01-01'"), firstIsNew ? 2 : 0);
  EXPECT_EQ(Count("ccal = 'CAL1' and sttm < '2026-01-01'"), firstIsNew ? 0 : 1);
  EXPECT_EQ(Count("ccal <> 'CAL1' and sttm > '2026-01-01'"), 0);
  EXPECT_EQ(Count("ccal <> 'CAL1' and sttm < '2026-01-01'"), 2);
}

}  // namespace
}  // namespace qmx::test
