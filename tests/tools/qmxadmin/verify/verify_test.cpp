#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <nlohmann/json.hpp>
#include <thread>

#include "tests/tools/qmxadmin/copying.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class QmxAdminVerify : public Copying {
 protected:
  QmxAdminVerify() : Copying(DriversUnderTest().front().make()) {
    std::filesystem::create_directory(folder_ / "tmp");
    environment_["TMPDIR"] = folder_ / "tmp";
  }
};

TEST_F(QmxAdminVerify, FindsNoDifferenceInAnyTableAfterACopyOfAll) {
  const Process copy = Copy({"--all", "--jobs", "2", "--json"});
  EXPECT_EQ(copy.status, 0) << copy.err;
  const nlohmann::json summary = nlohmann::json::parse(copy.out);
  ASSERT_EQ(summary.size(), 17U);
  EXPECT_EQ(summary[0]["table"], "tcccp001");
  EXPECT_EQ(summary[0]["description"], "Availability Types");
  for (const auto& table : summary) {
    EXPECT_EQ(table["result"], "copied") << table;
    EXPECT_EQ(table["method"], "full") << table;
    EXPECT_EQ(table["exit_status"], 0) << table;
    EXPECT_GT(table["added"], 0) << table;
    EXPECT_GT(table["milliseconds"], 0) << table;
  }

  const Process run = Verify({"--all", "--json"});
  EXPECT_EQ(run.status, 0) << run.out << run.err;
  const nlohmann::json told = nlohmann::json::parse(run.out);
  ASSERT_EQ(told.size(), 17U) << run.out;
  for (const auto& table : told) {
    EXPECT_GT(table["erp_rows"], 0) << table;
    EXPECT_EQ(table["erp_rows"], table["local_rows"]) << table;
  }
}

TEST_F(QmxAdminVerify, FindsAllMissingInAnEmptyTable) {
  const Process run = Verify({"tsmdm030"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out,
              AllOf(StartsWith("tsmdm030 missing: cstp='"), EndsWith("tsmdm030: 3 in the ERP, 0 here: 3 missing\n")));
}

TEST_F(QmxAdminVerify, LeavesNoTraceEvenIfTheErpFails) {
  environment_["QMX_MESSAGE_BOARD"] = folder_ / "board";
  ASSERT_EQ(Copy({"tsmdm030"}).status, 0);
  const std::string log = ReadFile(folder_ / "logs/tsmdm030.log");
  EXPECT_EQ(Verify({"tsmdm030"}).status, 0);
  component_ = "OrvanSandbox, " + (folder_ / "none.db");
  const Process failed = Verify({"tsmdm030"});
  EXPECT_EQ(failed.status, 2);
  EXPECT_THAT(failed.out, IsEmpty());
  EXPECT_THAT(failed.err, AllOf(StartsWith("error "), HasSubstr("Copy of Service Types from Orvan to Local DB failed"),
                                HasSubstr("\n  because of error "), HasSubstr("none.db")));
  EXPECT_EQ(ReadFile(folder_ / "logs/tsmdm030.log"), log);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "board"));
  EXPECT_TRUE(std::filesystem::is_empty(folder_ / "tmp"));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_ / "logs"), {}), 2);  // the run record is one
  EXPECT_EQ(Rows("tstables where in_use = 0"), 1);
}

// Crashes in the middle of the listing, when rows of the ERP are written already.
class CrashingErp : public QmxAdminVerify {
 protected:
  CrashingErp() {
    std::filesystem::create_directory(folder_ / "components");
    std::string manifest = std::string("library = ") + CRASHING_ERP + "\n";
    for (const char* progId : {"ServiceTypes.ServiceTypesManager", "ServiceTypes.ServiceTypes"})
      manifest += std::string("progid = ") + progId + "\n";
    WriteFile(folder_ / "components/crashing.component", manifest);
    environment_["QMX_COMPONENTS"] = folder_ / "components";
  }
};

TEST_F(CrashingErp, LeavesNoFileBehind) {
  const Process run = Verify({"tsmdm030"});
  EXPECT_EQ(run.status, 128 + SIGABRT) << run.err;
  EXPECT_TRUE(std::filesystem::is_empty(folder_ / "tmp"));
}

TEST_F(CrashingErp, LeavesNoFileBehindIfTheProgramIsKilled) {
  environment_["QMX_TEST_KILL"] = "1";
  const Process run = Verify({"tsmdm030"});
  EXPECT_EQ(run.status, 128 + SIGKILL) << run.err;
  EXPECT_TRUE(std::filesystem::is_empty(folder_ / "tmp"));
}

TEST_F(QmxAdminVerify, ListsCalendarsAsACopyDoes) {
  ASSERT_EQ(Copy({"tsmdm140", "tcccp030"}).status, 0);
  Sql("insert into tcccp030 (ccal, ract, stdt, sttm) values ('CAL001', 'OLD', '2001-01-01', 800), "
      "('NOBODYS', 'NEW', '2030-01-01', 800)");
  const Process run = Verify({"tcccp030"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out,
              AllOf(StartsWith("tcccp030 surplus: ccal='NOBODYS', ract='NEW', stdt=2030-01-01, sttm=800\n"),
                    HasSubstr(" here: 1 surplus; 1 local rows are older than the period that the ERP lists\n")));
}

TEST_F(QmxAdminVerify, RefusesCalendarsThatNobodyHas) {
  const Process run = Verify({"tcccp030"});
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err,
              HasSubstr("No service employee in tsmdm140 has a calendar, so there is no calendar to compare."));
}

TEST_F(QmxAdminVerify, RefusesATableWithoutItsKey) {
  Sql("drop table tsmdm030");
  Sql("create table tsmdm030 (cstp text, dsca text, prod text, ract text)");
  const Process run = Verify({"tsmdm030"});
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, HasSubstr("The local table tsmdm030 does not have the key cstp"));
}

TEST_F(QmxAdminVerify, WarnsOfACopyInProgress) {
  Sql("insert into tstables (TableName, in_use) values ('tsmdm030', 1)");
  EXPECT_THAT(Verify({"tsmdm030"}).err, StartsWith("tsmdm030 is in progress: "));
}

TEST_F(QmxAdminVerify, KnowsItsTables) {
  EXPECT_THAT(Verify({"tsmdm999"}).err, HasSubstr("There is no table \"tsmdm999\""));
  EXPECT_EQ(Verify({}).status, 2);
}

// The most memory that the program has had so far, in KiB, at its last look at it.
long PeakMemoryOf(const std::vector<std::string>& arguments, const std::map<std::string, std::string>& environment) {
  std::vector<std::string> words{QMX_ADMIN};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    dup2(open("/dev/null", O_WRONLY), 1);
    for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
    execv(argv[0], argv.data());
    _exit(127);
  }
  long peak = 0;
  int state = 0;
  while (waitpid(child, &state, WNOHANG) == 0) {
    std::ifstream status("/proc/" + std::to_string(child) + "/status");
    for (std::string line; std::getline(status, line);) {
      if (line.starts_with("VmHWM:")) peak = std::atol(line.c_str() + 6);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  EXPECT_EQ(WEXITSTATUS(state), 1);  // all are surplus
  return peak;
}

TEST_F(QmxAdminVerify, TakesNoMoreMemoryForMoreRows) {
  environment_["ASAN_OPTIONS"] = "quarantine_size_mb=1";
  const auto peakFor = [&](const std::string& rows) {
    Sql("delete from tccom130");
    Sql("insert into tccom130 (cadr, nama, namc) with recursive numbers (n) as (select 1 union all select n + 1 from "
        "numbers "
        "where n < " +
        rows + ") select 'ADDRESS' || n, 'Name of the address ' || n, 'Street of the address ' || n from numbers");
    return PeakMemoryOf(VerifyArguments({"tccom130"}), environment_);
  };
  const long few = peakFor("1000");
  const long many = peakFor("10000");
  EXPECT_GT(few, 1000);
  EXPECT_LT(many, few + 4 * 1024) << "for 1000 rows " << few << " KiB, for 10000 " << many;
}

TEST_F(QmxAdminVerify, LeavesCalendarsOutOfAllTablesIfNobodyHasOne) {
  const Process run = Verify({"--all", "--quiet"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("tsmdm030: 3 in the ERP, 0 here: 3 missing\n"));
  EXPECT_EQ(run.err, "tcccp030 was not compared, because no service employee in tsmdm140 has a calendar.\n");
}

TEST_F(QmxAdminVerify, NeedsTables) {
  const Process run = Verify({});
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, HasSubstr("Name the tables or give --all."));
}

TEST_F(QmxAdminVerify, PrintsDifferencesOnlyIfItIsQuiet) {
  ASSERT_EQ(Copy({"tsmdm030", "tsmdm100"}).status, 0);
  EXPECT_EQ(Verify({"tsmdm030", "tsmdm100", "--quiet"}).out, "");
  Sql("insert into tsmdm030 (cstp) values ('NEW')");
  EXPECT_EQ(Verify({"tsmdm030", "tsmdm100", "--quiet"}).out,
            "tsmdm030 surplus: cstp='NEW'\ntsmdm030: 3 in the ERP, 4 here: 1 surplus\n");
}

TEST_F(QmxAdminVerify, LeavesOutTheColumnsThatACopyByChangeDoesNotBring) {
  ASSERT_EQ(Copy({"tssoc200", "tscfg220"}).status, 0);
  Sql("update tssoc200 set minu = -1, stna = 'an old name'");
  Sql("update tscfg220 set tecr = ''");
  EXPECT_EQ(Verify({"tssoc200", "tscfg220"}).status, 1);
  const Process run = Verify({"tssoc200", "tscfg220", "--after-changed"});
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_THAT(run.out, AllOf(HasSubstr("tssoc200: 5 in the ERP, 5 here: no difference\n"),
                             HasSubstr("tscfg220: 5 in the ERP, 5 here: no difference\n")));
  Sql("update tssoc200 set emno = 'wrong'");
  EXPECT_EQ(Verify({"tssoc200", "--after-changed"}).status, 1);
}

TEST_F(QmxAdminVerify, FindsNothingAfterACopyByChangeIfItsColumnsAreLeftOut) {
  std::filesystem::copy_file(component_.substr(component_.find('/')), folder_ / "orvan.db");
  component_ = "OrvanSandbox, " + (folder_ / "orvan.db");
  ASSERT_EQ(Copy({"tssoc200", "tscfg220"}).status, 0);
  Sql("update tstables set syme = 2, lutm = '2020-01-01 00:00:00'");
  const Process work = test::Run(ORVAN_SANDBOX, {"work", folder_ / "orvan.db", "--from", "2020-02-01 08:00:00"});
  ASSERT_EQ(work.status, 0) << work.err;
  const Process copy = Copy({"tssoc200", "tscfg220"});
  ASSERT_EQ(copy.status, 0) << copy.err;
  const Process run = Verify({"tssoc200", "tscfg220", "--after-changed"});
  EXPECT_EQ(run.status, 0) << run.out;
}

}  // namespace
}  // namespace qmx::test
