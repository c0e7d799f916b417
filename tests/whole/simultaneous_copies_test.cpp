// Several runs at once on one local database: of different tables, and of the same.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <optional>

#include "platform/sqlite/driver.h"
#include "tests/support/faulty_driver.h"
#include "tests/whole/copy_process.h"
#include "tests/whole/watched_run.h"

namespace qmx::test::simultaneous_copies {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class SimultaneousCopies : public testing::Test {
 protected:
  int CopiesInProgress() { return std::stoi(local_.Value("select count(*) from tstables where in_use = 1")); }
  static bool HasOpen(pid_t process, const std::string& file) {
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/fd", none)) {
      if (std::filesystem::read_symlink(entry.path(), none) == file) return true;
    }
    return false;
  }
  Rows Fresh(const std::string& table) {
    LocalCopy fresh(company_, clock_);
    fresh.Copy(table);
    return fresh.RowsOf(table);
  }

  FakeClock clock_{At(20, 14, 5, 9)};
  Company company_{{{"orders", 400},
                    {"addresses", 600},
                    {"configurations", 200},
                    {"employees", 150},
                    {"service-types", 300},
                    {"areas", 300}}};
  LocalCopy local_{company_, clock_};
  CopyProcesses program_{company_, local_};
};

TEST_F(SimultaneousCopies, OfTenTablesIntoOneFileAllSucceedWhileAReaderReads) {
  const std::vector<std::string> tables = {"tsmdm030", "tsmdm105", "tsmdm135", "tsmdm140", "tccom130",
                                           "tscfg220", "tscfg200", "tssoc200", "tssoc210", "tsspc200"};
  std::vector<std::unique_ptr<RunningProcess>> runs;
  {
    // None begins before all can.
    SqliteDriver driver;
    Connection lock({&driver}, nullptr);
    lock.Open(local_.ConnectionText(), "", "");
    lock.Execute("begin immediate");
    for (const std::string& table : tables) runs.push_back(program_.Start(table));
    WaitUntil("all have opened the database", [&] {
      return std::ranges::all_of(runs, [&](const auto& run) { return HasOpen(run->Number(), local_.File()); });
    });
    lock.Close();
  }

  int mostInProgress = 0;
  const auto haveEnded = [&] { return std::ranges::all_of(runs, [](const auto& run) { return run->HasEnded(); }); };
  WaitUntil("ten copies have ended", [&] {
    mostInProgress = std::max(mostInProgress, CopiesInProgress());
    local_.Value("select count(*) from tssoc200 where stna <> ''");
    return haveEnded();
  });
  EXPECT_GE(mostInProgress, 2) << "the copies did not meet";

  auto run = runs.begin();
  for (const std::string& table : tables) {
    const Process ended = (*run++)->Wait();
    EXPECT_EQ(ended.status, 0) << table << ": " << ended.err;
    EXPECT_EQ(ended.err, "") << table;
    EXPECT_THAT(Differences(table, local_.RowsOf(table), Fresh(table)), IsEmpty());
  }
  EXPECT_EQ(local_.Value("select count(*) from tstables where in_use = 0 and lutm is not null"), "10");
  EXPECT_EQ(local_.Value("pragma integrity_check"), "ok");
}

TEST_F(SimultaneousCopies, ByChangeLetOtherProgramsWriteInBetween) {
  local_.Copy("tssoc200");
  for (int day = 1; day <= 5; ++day) {
    company_.Change(DateTime::FromDate(2002, 1, day), "update tssoc200 set crit = 'NEW', minu = minu + 1");
  }
  local_.ByChange();
  const std::string orders = local_.Value("select count(*) from tssoc200");

  int written = 0;
  int writtenInBetween = 0;
  // On a busy machine a copy may be over before another program has its turn.
  for (int attempt = 0; attempt < 20 && writtenInBetween == 0; ++attempt) {
    local_.Sql("update tstables set lutm = '2001-02-03 04:05:06'");
    const auto run = program_.Start("tssoc200");
    while (!run->HasEnded()) {
      local_.Sql("insert into tsmdm030 (cstp) values ('" + std::to_string(written++) + "')");
      writtenInBetween += CopiesInProgress();
    }
    const Process ended = run->Wait();
    EXPECT_EQ(ended.status, 0) << ended.err;
  }
  EXPECT_GT(writtenInBetween, 0);
  EXPECT_EQ(local_.Value("select count(*) from tsmdm030"), std::to_string(written));
  EXPECT_EQ(local_.Value("select count(*) from tssoc200 where crit = 'NEW'"), orders);
}

TEST_F(SimultaneousCopies, OfOneTableAreRefusedButForTheFirst) {
  const auto start = [&] {
    local_.Sql("delete from tssoc200");
    return program_.Start("tssoc200");
  };
  const auto first = StoppedWithin(
      start, [&] { return local_.Value("select count(*) from tssoc200") != "0"; },
      [&] { return CopiesInProgress() == 0; });
  const Process second = program_.Run("tssoc200");
  EXPECT_EQ(second.status, 3) << second.err;
  EXPECT_EQ(CopiesInProgress(), 1);

  first->Signal(SIGCONT);
  const Process ended = first->Wait();
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(CopiesInProgress(), 0);
  EXPECT_THAT(Differences("tssoc200", local_.RowsOf("tssoc200"), Fresh("tssoc200")), IsEmpty());
}

// Checking the flag and setting it are two steps. These tests start a second run between two operations of the first,
// which continues when the second has ended.
class SecondRunWithinTheFirst : public SimultaneousCopies {
 protected:
  // Before the nth operation of the first run that begins so.
  void Run(const std::string& operation, int nth) {
    std::optional<FaultyDriver> first;
    firstEnd_ = EndOf([&](Driver& inner) -> Driver& {
      first.emplace(inner);
      first->before = [&](const std::string& next) {
        if (!next.starts_with(operation) || --nth != 0) return;
        inProgressBefore_ = CopiesInProgress();
        secondEnd_ = EndOf({});
      };
      return *first;
    });
  }

  int inProgressBefore_ = -1;
  std::string firstEnd_, secondEnd_ = "never began";

 private:
  std::string EndOf(const LocalDrivers::Decorate& belowBatches) {
    try {
      local_.Copy("tsmdm030", belowBatches);
    } catch (const std::runtime_error& end) {
      return end.what();
    }
    return "complete";
  }
};

// The statement is prepared once and bound for each execution.
constexpr const char* kSelectControlRecord = "Bind select * from tstables where tablename = ";

TEST_F(SecondRunWithinTheFirst, PassesTheCheckTooIfTheFirstHasNotSetItsFlagYet) {
  Run(kSelectControlRecord, 2);  // the first one checks, the second one sets
  EXPECT_EQ(inProgressBefore_, 0);
  EXPECT_EQ(secondEnd_, "complete");
  EXPECT_EQ(firstEnd_, "complete");
  EXPECT_THAT(Differences("tsmdm030", local_.RowsOf("tsmdm030"), Fresh("tsmdm030")), IsEmpty());
  EXPECT_EQ(CopiesInProgress(), 0);
}

TEST_F(SecondRunWithinTheFirst, IsRefusedOnceTheFlagIsSet) {
  Run(kSelectControlRecord, 3);  // which reads the sync method
  EXPECT_EQ(inProgressBefore_, 1);
  EXPECT_THAT(secondEnd_, HasSubstr("already in progress"));
  EXPECT_EQ(firstEnd_, "complete");
  EXPECT_EQ(CopiesInProgress(), 0);
}

TEST_F(SecondRunWithinTheFirst, MakesTheFirstFailIfBothAddTheControlRecord) {
  Run("Prepare insert into \"tstables\"", 1);
  EXPECT_EQ(secondEnd_, "complete");
  EXPECT_THAT(firstEnd_, HasSubstr("Setting Data Copy in Progress flag for table tsmdm030 Failed"));
  EXPECT_THAT(Differences("tsmdm030", local_.RowsOf("tsmdm030"), Fresh("tsmdm030")), IsEmpty());
  EXPECT_EQ(CopiesInProgress(), 0);
}

}  // namespace
}  // namespace qmx::test::simultaneous_copies
