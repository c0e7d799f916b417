// An expansion whose transactions are refused or whose answers are lost: it prints the intervals that tscalender has,
// or it fails, and the next expansion corrects everything.
#include <filesystem>

#include "tests/support/environment.h"
#include "tests/support/odbc_faults/odbc_faults.h"
#include "tests/tools/qmxadmin/admin_on_a_system.h"

namespace qmx::test {
namespace {

using testing::IsSubsetOf;
using Rows = std::vector<std::string>;

constexpr const char* kRefused = "40001 1213";
constexpr const char* kLost = "08S01 2013";

const Rows kExpanded = {"DAY 2026-11-23 08:00:00", "DAY 2026-11-24 08:00:00", "DAY 2027-03-03 08:00:00",
                        "NIGHT 2026-11-23 22:00:00"};

class RefusedExpansion : public AdminOnASystem {
 protected:
  RefusedExpansion() {
    Execute("insert into tsmdm140 (emno, ccal) values ('1', 'DAY'), ('2', 'NIGHT')");
    Execute(
        "insert into tcccp030 (ccal, ract, stdt, sttm, endt, entm) values "
        "('DAY', 'WRK', '2026-11-23', 800, '2026-11-24', 1200), ('DAY', 'WRK', '2027-03-03', 800, '2027-03-03', 1200), "
        "('NIGHT', 'WRK', '2026-11-23', 2200, '2026-11-23', 2400)");
  }

  Rows Expanded() { return Column("select concat(ccal, ' ', sttm) from tscalender order by 1"); }

  // As the tool prints them.
  std::string Counts() {
    std::string text;
    for (const char* code : {"DAY", "NIGHT"}) {
      const std::string count = Column(std::string("select count(*) from tscalender where ccal = '") + code + "'")[0];
      text += std::string(code) + ": " + count + " intervals\n";
    }
    return text;
  }

  // Whether a call was made to fail.
  bool ExpandsWith(const OdbcFault& fault) {
    Execute("delete from tscalender");
    TempFolder folder;
    std::map<std::string, std::string> environment = Environment();
    environment["QMX_CONNECTION"] = ThroughFaultyDriver(ConnectionText(), GetParam().name);
    environment["QMX_ODBC_FAULT"] = fault.Text();
    environment["QMX_ODBC_FAULT_TOLD"] = folder / "told";
    ended_ = test::Run(QMX_ADMIN, {"expand"}, environment);
    return std::filesystem::exists(folder / "told");
  }

  void ExpectNoContradiction() {
    EXPECT_THAT(Expanded(), IsSubsetOf(kExpanded));
    if (ended_.status == 0) {
      EXPECT_EQ(ended_.out, Counts()) << ended_.err;
    } else {
      EXPECT_EQ(ended_.status, 2);
      EXPECT_EQ(ended_.out, "");
      EXPECT_NE(ended_.err, "");
    }
  }

  void ExpandWithEach(OdbcFault fault, const std::vector<int>& counts = {1, 0}) {
    for (const int count : counts) {
      fault.count = count;
      bool hasFailed = true;
      for (fault.first = 1; hasFailed; ++fault.first) {
        SCOPED_TRACE(fault.Text());
        ASSERT_LT(fault.first, 60);
        hasFailed = ExpandsWith(fault);
        ExpectNoContradiction();
        if (!hasFailed) {
          EXPECT_EQ(Expanded(), kExpanded);
        }
      }
      EXPECT_GT(fault.first, 4) << "a commit of each period is among those that fail";
    }
    EXPECT_EQ(Admin({"expand"}).out, "DAY: 3 intervals\nNIGHT: 1 intervals\n");
    EXPECT_EQ(Expanded(), kExpanded);
  }

  Process ended_;
  WithoutLeakCheck withoutLeakCheck_;
};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(RefusedExpansion);
INSTANTIATE_TEST_SUITE_P(Over, RefusedExpansion, testing::ValuesIn(ServersUnderTest()),
                         [](const auto& info) { return info.param.name; });

TEST_P(RefusedExpansion, WritesTheRowsOfARefusedTransactionOneByOne) {
  for (int commit = 1; commit <= 3; ++commit) {
    SCOPED_TRACE(commit);
    EXPECT_TRUE(ExpandsWith({.function = "SQLEndTran", .first = commit, .answer = kRefused}));
    EXPECT_EQ(ended_.status, 0) << ended_.err;
    EXPECT_EQ(ended_.out, "DAY: 3 intervals\nNIGHT: 1 intervals\n");
    EXPECT_EQ(Expanded(), kExpanded);
  }
}

TEST_P(RefusedExpansion, CountsNoRowThatIsGoneWhicheverTransactionIsRefused) {
  ExpandWithEach({.function = "SQLEndTran", .answer = kRefused});
}

TEST_P(RefusedExpansion, CountsNoRowThatIsGoneIfTheAnswerToACommitIsLost) {
  ExpandWithEach({.function = "SQLEndTran", .isDone = true, .answer = kLost});
}

TEST_P(RefusedExpansion, CountsNoRowThatIsGoneIfTheCommitModeCannotBeSet) {
  ExpandWithEach({.function = "SQLSetConnectAttr", .answer = "HY000 2000"});
}

TEST_P(RefusedExpansion, CountsNoRowThatIsGoneIfTheCommitModeIsSetAndTheAnswerIsLost) {
  ExpandWithEach({.function = "SQLSetConnectAttr", .isDone = true, .answer = kLost}, {1});
}

}  // namespace
}  // namespace qmx::test
