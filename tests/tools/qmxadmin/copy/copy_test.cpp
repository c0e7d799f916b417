#include <chrono>
#include <nlohmann/json.hpp>

#include "tests/tools/qmxadmin/copying.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class QmxAdminCopy : public Copying {
 protected:
  QmxAdminCopy() : Copying(DriversUnderTest().front().make()) {}

  std::string Refusal(const std::vector<std::string>& more) {
    const Process run = Copy(more);
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.out, IsEmpty());
    EXPECT_THAT(run.err, Not(HasSubstr("started")));
    return run.err;
  }
};

TEST_F(QmxAdminCopy, CopiesByChangeIfTheTableIsSetSo) {
  EXPECT_EQ(Copy({"tsmdm030"}).status, 0);
  Sql("update tstables set syme = 2");
  Sql("delete from tsmdm030");  // which no audit entry repairs
  const Process run = Copy({"tsmdm030", "--json"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out,
              AllOf(HasSubstr("\"method\":\"changed\""), HasSubstr("\"added\":0,\"updated\":0,\"removed\":0")));
  EXPECT_EQ(Rows("tsmdm030"), 0);
}

TEST_F(QmxAdminCopy, CopiesOneEmployeesCalendar) {
  EXPECT_EQ(Copy({"tsmdm140"}).status, 0);
  const Process run = Copy({"tcccp030=E00001=E"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("tcccp030=E00001=E  Calendars    full    copied"));
  const int records = Rows("tcccp030 where ccal = (select ccal from tsmdm140 where emno = 'E00001')");
  EXPECT_GT(records, 0);
  EXPECT_EQ(Rows("tcccp030"), records);
  EXPECT_THAT(run.err, HasSubstr("tcccp030=E00001=E: copied, " + std::to_string(records) + " added"));
}

TEST_F(QmxAdminCopy, CopiesATableOnceHoweverOftenItIsNamed) {
  const Process run = Copy({"tsmdm030", "tsmdm030", "--json"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(nlohmann::json::parse(run.out).size(), 1U);
  EXPECT_EQ(Place(run.err, "tsmdm030: started\n"), run.err.rfind("tsmdm030: started\n"));
}

TEST_F(QmxAdminCopy, PrintsTheErrorsOfAFailedCopyAndContinues) {
  component_ = "OrvanSandbox, " + (folder_ / "none.db");
  const Process run = Copy({"tsmdm030", "tsmdm100"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, AllOf(HasSubstr("tsmdm030  Service Types    full    failed      -        -        - "),
                             HasSubstr("tsmdm100  Service Centers  full    failed")));
  EXPECT_THAT(run.err, AllOf(HasSubstr("tsmdm030: failed\n  error "), HasSubstr("\n    because of error "),
                             HasSubstr("none.db"), HasSubstr("tsmdm100: failed\n")));
}

TEST_F(QmxAdminCopy, ReportsARefusalByStatusAndText) {
  Sql("insert into tstables (TableName, in_use) values ('tsmdm030', 1)");
  const Process run = Copy({"tsmdm030"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("tsmdm030  Service Types  full    refused, in progress      -        -        -"));
  EXPECT_THAT(run.err, HasSubstr("tsmdm030: refused, in progress\n"));
}

TEST_F(QmxAdminCopy, ReportsAnUnknownCalendarKind) {
  const Process run = Copy({"tcccp030=DAY=X"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("tcccp030=DAY=X  Calendars    full    no such calendar kind"));
  EXPECT_THAT(run.err,
              HasSubstr("tcccp030=DAY=X: no such calendar kind\n  error 5, clsDataCopy: There is no calendar kind"));
}

TEST_F(QmxAdminCopy, DistinguishesACopyWhoseTableStaysInProgressFromOneThatCouldNotStart) {
  Sql("drop table tstables");
  Sql("create table tstables (TableName varchar(30) primary key, in_use smallint check (in_use = 1), freq smallint, "
      "reqd smallint, syme smallint, lutm datetime)");
  const Process run = Copy({"tsmdm030"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("tsmdm030  Service Types  full    copied, then failed      3"));
  EXPECT_THAT(run.err, HasSubstr("tsmdm030: copied, then failed, 3 added, 0 updated, 0 removed\n  error "));
}

TEST_F(QmxAdminCopy, LeavesCalendarsAloneIfEmployeesFailed) {
  component_ = "OrvanSandbox, " + (folder_ / "none.db");
  const Process run = Copy({"tsmdm140", "tcccp030"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("tcccp030  Calendars          full    not run"));
  EXPECT_THAT(run.err, HasSubstr("Not run: tcccp030, because the service employees were not copied.\n"));
}

TEST_F(QmxAdminCopy, HandsTheRequestOn) {
  environment_["QMX_MESSAGE_BOARD"] = folder_ / "board";
  EXPECT_EQ(Copy({"tsmdm030"}).status, 0);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "board"));
  EXPECT_EQ(Copy({"tsmdm030", "--request", "17"}).status, 0);
  EXPECT_THAT(ReadFile(folder_ / "board"), HasSubstr("status | 17 | tsmdm030 | 40\n"));
}

TEST_F(QmxAdminCopy, TakesTheConnectionFromTheEnvironment) {
  environment_["QMX_CONNECTION"] = base_->ConnectionText();
  const Process run =
      test::Run(QMX_ADMIN, {"copy", "tsmdm030", "--logs", folder_ / "logs", "--component", component_}, environment_);
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.err, HasSubstr("tsmdm030: copied, 3 added"));
}

TEST_F(QmxAdminCopy, StartsNothingIfSomethingIsWrongBeforehand) {
  EXPECT_THAT(Refusal({}), HasSubstr("Name the tables or give --all."));
  EXPECT_THAT(Refusal({"tsmdm999"}), HasSubstr("There is no table \"tsmdm999\""));
  EXPECT_THAT(Refusal({"tsmdm030", "--jobs", "0"}), HasSubstr("1 or more"));
  component_ = "OrvanSandbox";
  EXPECT_THAT(Refusal({"tsmdm030"}), HasSubstr("\"COMPONENT1, COMPONENT2\""));
  component_ = "OrvanSandbox, a, b";
  EXPECT_THAT(Refusal({"tsmdm030"}), HasSubstr("\"COMPONENT1, COMPONENT2\""));
}

TEST_F(QmxAdminCopy, StartsNothingIfItsCommandLineWouldBeSplitElsewhere) {
  const Process comma = test::Run(
      QMX_ADMIN, {"copy", "Provider=SQLite;Data Source=a,b", "", "tsmdm030", "--logs", "x", "--component", component_},
      environment_);
  EXPECT_EQ(comma.status, 2);
  EXPECT_THAT(comma.err, HasSubstr("CONNECTION holds a comma, and qmxdatacopy splits its command line at commas."));
}

TEST_F(QmxAdminCopy, StartsNothingWithoutALocalDatabase) {
  const Process none = test::Run(QMX_ADMIN,
                                 {"copy", "Provider=SQLite;Data Source=" + (folder_ / "none.db"), "", "tsmdm030",
                                  "--logs", folder_ / "logs", "--component", component_},
                                 environment_);
  EXPECT_EQ(none.status, 2);
  EXPECT_THAT(none.err, AllOf(HasSubstr("none.db"), Not(HasSubstr("started"))));
}

TEST_F(QmxAdminCopy, PrintsOnlyWhatWentWrongIfItIsQuiet) {
  const Process well = Copy({"tsmdm030", "--quiet"});
  EXPECT_EQ(well.status, 0);
  EXPECT_EQ(well.out + well.err, "");
  Sql("update tstables set in_use = 1 where tablename = 'tsmdm030'");
  const Process run = Copy({"tsmdm030", "tsmdm100", "--quiet"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, AllOf(HasSubstr("tsmdm030  Service Types  full    refused"), Not(HasSubstr("tsmdm100"))));
  EXPECT_THAT(run.err, AllOf(StartsWith("tsmdm030: refused, in progress\n"), Not(HasSubstr("tsmdm100"))));
}

TEST_F(QmxAdminCopy, MeasuresInMilliseconds) {
  const auto start = std::chrono::steady_clock::now();
  const auto summary = nlohmann::json::parse(Copy({"tsmdm030", "--json"}).out);
  const std::chrono::milliseconds::rep all =
      std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
  ASSERT_TRUE(summary[0]["milliseconds"].is_number_integer()) << summary;
  EXPECT_GT(summary[0]["milliseconds"], 1);  // a process alone takes longer
  EXPECT_LE(summary[0]["milliseconds"], all);
  EXPECT_FALSE(summary[0].contains("seconds"));
}

TEST_F(QmxAdminCopy, CopiesInWholeModeAndShowsItInStatusAndHistory) {
  const Process run = Copy({"tsmdm030", "--whole"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(Rows("tsmdm030"), 3);
  const std::string logs = folder_ / "logs";
  const auto admin = [&](std::vector<std::string> arguments) {
    return test::Run(QMX_ADMIN, arguments, environment_).out;
  };
  EXPECT_THAT(admin({"history", "--logs", logs}), testing::ContainsRegex("METHOD +MODE .*\n.* full +whole "));
  EXPECT_THAT(admin({"history", "--logs", logs, "--json"}), HasSubstr("\"mode\":\"whole\""));
  EXPECT_THAT(admin({"status", base_->ConnectionText(), "", "--logs", logs, "--json"}),
              HasSubstr("\"last_run_mode\":\"whole\""));
  Copy({"tsmdm030"});
  EXPECT_THAT(admin({"status", base_->ConnectionText(), "", "--logs", logs}), Not(HasSubstr(" MODE ")));
}

class AFullCopyOfATableCopiedByChange : public QmxAdminCopy {
 protected:
  AFullCopyOfATableCopiedByChange() {
    Copy({"tsmdm030"});
    Sql("update tstables set syme = 2");
    Sql("delete from tsmdm030");  // nothing that a copy by change would see
  }
  int TablesByChange() { return Rows("tstables where tablename = 'tsmdm030' and syme = 2 and in_use = 0"); }
};

TEST_F(AFullCopyOfATableCopiedByChange, CopiesAllRowsAndKeepsTheMethod) {
  EXPECT_EQ(Copy({"tsmdm030"}).status, 0);
  EXPECT_EQ(Rows("tsmdm030"), 0);
  const Process run = Copy({"tsmdm030", "--full", "--json"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, AllOf(HasSubstr("\"method\":\"full\""), HasSubstr("\"added\":3")));
  EXPECT_EQ(Rows("tsmdm030"), 3);
  EXPECT_EQ(TablesByChange(), 1);
  EXPECT_THAT(Copy({"tsmdm030", "--json"}).out, HasSubstr("\"method\":\"changed\""));
}

TEST_F(AFullCopyOfATableCopiedByChange, KeepsTheMethodIfItFails) {
  component_ = "OrvanSandbox, " + (folder_ / "none.db");
  EXPECT_EQ(Copy({"tsmdm030", "--full"}).status, 1);
  EXPECT_EQ(TablesByChange(), 1);
}

TEST_F(AFullCopyOfATableCopiedByChange, IsRefusedForAnyOtherMethod) {
  environment_["QMX_METHOD"] = "changed";
  const Process run = Copy({"tsmdm030"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, HasSubstr("QMX_METHOD is \"changed\". It may be \"full\" or empty."));
  EXPECT_EQ(Copy({"tsmdm030", "--full"}).status, 0);
}

}  // namespace
}  // namespace qmx::test
