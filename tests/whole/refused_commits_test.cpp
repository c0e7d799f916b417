// A COMMIT that is refused, and one whose answer is lost, by the servers themselves and by a driver that makes calls
// fail: the exit status, the flag, the last update time and the rows must agree with each other after every run.
#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "tests/support/odbc_faults/odbc_faults.h"
#include "tests/whole/server_copy.h"

namespace qmx::test::refused_commits {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;

constexpr const char* kTable = "tsmdm030";
constexpr const char* kColumns = "cstp varchar(10) not null, dsca varchar(60), prod varchar(10), ract varchar(10)";

using Rows = std::vector<std::string>;

class RefusedCommit : public CopyIntoAServer {
 protected:
  // The ERP has six service types; three of them are in the local table, with another description.
  RefusedCommit() {
    final_ =
        Split(company_.Value("select group_concat(cstp || '=New', ' ') from (select cstp from tsmdm030 order by "
                             "cstp)"));
    for (std::size_t place = 0; place < final_.size(); place += 2) old_.push_back(Key(final_[place]) + "=Old");
    company_.Change(DateTime::FromDate(2002, 1, 1), "update tsmdm030 set \"desc\" = 'New'");
  }

  static Rows Split(const std::string& text) {
    std::istringstream words(text);
    Rows rows;
    for (std::string word; words >> word;) rows.push_back(word);
    return rows;
  }
  static std::string Key(const std::string& row) { return row.substr(0, row.find('=')); }

  void MakeTable(bool hasKey, const std::string& more = "") {
    Sql("drop table tsmdm030");
    Sql(std::string("create table tsmdm030 (") + kColumns + (hasKey ? ", primary key (cstp)" : "") + more + ")");
  }

  void BeginAnew(std::int16_t syncMethod) {
    Sql("delete from tsmdm030");
    for (const std::string& row : old_) {
      Sql("insert into tsmdm030 values ('" + Key(row) + "', 'Old', 'x', 'y')");
    }
    Sql("delete from tstables");
    ControlRecord(kTable, syncMethod);
  }

  Rows LocalRows() { return Column("select concat(cstp, '=', dsca) from tsmdm030 order by 1"); }

  // What a copy may leave that saves row after row and stops anywhere, or all of it at once.
  std::vector<Rows> PossibleRows(std::int16_t syncMethod) const {
    if (isWhole_) return {old_, final_};
    std::vector<Rows> possible;
    if (syncMethod == kFullCopy) possible.push_back(old_);
    for (std::size_t saved = 0; saved <= final_.size(); ++saved) {
      Rows rows(final_.begin(), final_.begin() + static_cast<std::ptrdiff_t>(saved));
      for (const std::string& row : old_) {
        if (syncMethod != kFullCopy && saved < final_.size() && Key(row) >= Key(final_[saved])) rows.push_back(row);
      }
      possible.push_back(rows);
    }
    return possible;
  }

  void Judge(const Process& ended, std::int16_t syncMethod) {
    const Rows rows = LocalRows();
    EXPECT_THAT(PossibleRows(syncMethod), Contains(rows));
    EXPECT_THAT(ended.status, testing::AnyOf(0, 1, 2)) << ended.err;
    if (isWhole_) {
      EXPECT_EQ(rows == final_, Lutm() != kLutm) << ended.err;
    }
    if (ended.status == 0 || Lutm() != kLutm) {
      EXPECT_EQ(rows, final_) << ended.err;
    }
    if (ended.status == 2) {
      EXPECT_NE(ended.err, "");
    } else {
      EXPECT_EQ(InUse(), "0") << ended.err;
      EXPECT_EQ(ended.status == 0, Lutm() != kLutm) << ended.err;
      EXPECT_EQ(ended.status == 0, ended.err.empty()) << ended.err;
    }
  }

  void CopyWith(const OdbcFault& fault, std::int16_t syncMethod, bool& wasTold) {
    SCOPED_TRACE(fault.Text());
    BeginAnew(syncMethod);
    CopyProcesses program(company_, ThroughFaultyDriver(ConnectionText(), GetParam().name), "");
    TempFolder folder;
    const std::string told = folder / "told";
    program.Environment("QMX_ODBC_FAULT", fault.Text());
    program.Environment("QMX_ODBC_FAULT_TOLD", told);
    if (isWhole_) program.Environment("QMX_COPY", "whole");
    const Process ended = program.Run(kTable);
    wasTold = std::filesystem::exists(told);
    Judge(ended, syncMethod);
    EXPECT_TRUE(wasTold || ended.status == 0) << ended.err;
  }

  void CopyWithEach(OdbcFault fault) {
    for (const bool hasKey : {true, false}) {
      if (isWhole_ && !hasKey) continue;  // one transaction writes both in the same way
      MakeTable(hasKey);
      for (const std::int16_t syncMethod : {kFullCopy, kOnlyChanged}) {
        SCOPED_TRACE((hasKey ? "with a key, sync method " : "without a key, sync method ") +
                     std::to_string(syncMethod));
        bool wasTold = true;
        for (fault.first = 1; wasTold; ++fault.first) {
          ASSERT_LT(fault.first, 200);
          CopyWith(fault, syncMethod, wasTold);
        }
      }
    }
  }

  void CopyWithEachSoOften(OdbcFault fault, const std::vector<int>& counts) {
    for (const int count : counts) {
      fault.count = count;
      CopyWithEach(fault);
    }
  }

  Rows final_;
  Rows old_;
  bool isWhole_ = false;
};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(RefusedCommit);
INSTANTIATE_TEST_SUITE_P(Over, RefusedCommit, testing::ValuesIn(ServersUnderTest()), ServerName);

constexpr const char* kRefused = "40001 1213";         // and may be tried again, which takes long if it is for good
constexpr const char* kRefusedForGood = "23514 4025";  // by a rule
constexpr const char* kLost = "08S01 2013";

TEST_P(RefusedCommit, LeavesAConsistentStateWhicheverIsRefused) {
  CopyWithEachSoOften({.function = "SQLEndTran", .answer = kRefused}, {1, 2, 0});
}

TEST_P(RefusedCommit, LeavesAConsistentStateIfItNeverReachedTheServer) {
  CopyWithEachSoOften({.function = "SQLEndTran", .answer = kLost}, {1});
}

TEST_P(RefusedCommit, LeavesAConsistentStateIfItWasDoneAndTheAnswerIsLost) {
  CopyWithEachSoOften({.function = "SQLEndTran", .isDone = true, .answer = kLost}, {1});
}

TEST_P(RefusedCommit, LeavesAConsistentStateIfTheCommitModeCannotBeSet) {
  CopyWithEachSoOften({.function = "SQLSetConnectAttr", .answer = "HY000 2000"}, {1, 0});
}

TEST_P(RefusedCommit, LeavesAConsistentStateIfTheCommitModeIsSetAndTheAnswerIsLost) {
  CopyWithEachSoOften({.function = "SQLSetConnectAttr", .isDone = true, .answer = kLost}, {1});
}

TEST_P(RefusedCommit, LeavesAConsistentStateIfAStatementIsRefused) {
  CopyWithEachSoOften({.function = "SQLExecute", .answer = kRefused}, {1});
  CopyWithEachSoOften({.function = "SQLExecute", .answer = kRefusedForGood}, {0});
}

TEST_P(RefusedCommit, LeavesAConsistentStateIfAStatementsAnswerIsLost) {
  CopyWithEachSoOften({.function = "SQLExecute", .isDone = true, .answer = kLost}, {1});
}

// In one transaction: the table and its last update time are both old or both new.
class WholeCopyWithFaults : public RefusedCommit {
 protected:
  WholeCopyWithFaults() { isWhole_ = true; }
};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(WholeCopyWithFaults);
INSTANTIATE_TEST_SUITE_P(Over, WholeCopyWithFaults, testing::ValuesIn(ServersUnderTest()), ServerName);

TEST_P(WholeCopyWithFaults, IsOldOrNewWhicheverCommitIsRefused) {
  CopyWithEachSoOften({.function = "SQLEndTran", .answer = kRefused}, {1, 0});
}

TEST_P(WholeCopyWithFaults, IsOldOrNewWhereTheAnswerToTheCommitIsLost) {
  CopyWithEachSoOften({.function = "SQLEndTran", .answer = kLost}, {1});
  CopyWithEachSoOften({.function = "SQLEndTran", .isDone = true, .answer = kLost}, {1});
}

TEST_P(WholeCopyWithFaults, IsOldOrNewWhereTheCommitModeCannotBeSet) {
  CopyWithEachSoOften({.function = "SQLSetConnectAttr", .answer = "HY000 2000"}, {1});
}

TEST_P(WholeCopyWithFaults, IsOldOrNewWhicheverStatementIsRefused) {
  CopyWithEachSoOften({.function = "SQLExecute", .answer = kRefused}, {1});
}

TEST_P(WholeCopyWithFaults, IsOldOrNewWhicheverStatementsAnswerIsLost) {
  CopyWithEachSoOften({.function = "SQLExecute", .isDone = true, .answer = kLost}, {1});
}

TEST_P(WholeCopyWithFaults, SaysThatItIsOldOrNewWhereTheAnswerToTheCommitIsLost) {
  MakeTable(true);
  CopyProcesses program(company_, ThroughFaultyDriver(ConnectionText(), GetParam().name), "");
  program.Environment("QMX_COPY", "whole");
  OdbcFault fault{.function = "SQLEndTran", .isDone = true, .answer = kLost};
  Process ended{};
  do {  // not every driver's first call ends a transaction
    ASSERT_LT(fault.first, 10);
    BeginAnew(kFullCopy);
    program.Environment("QMX_ODBC_FAULT", fault.Text());
    ended = program.Run(kTable);
    ++fault.first;
  } while (ended.status == 0);
  EXPECT_EQ(ended.status, 2);
  EXPECT_THAT(ended.err, AllOf(HasSubstr("It is not known whether the transaction was committed"),
                               HasSubstr("rows: all old or all new")));
  EXPECT_EQ(LocalRows(), final_);
  EXPECT_THAT(ended.err, HasSubstr("last update time of the new rows: " + Lutm()));
}

// The server checks such a constraint at the commit, not at the statement.
TEST_P(RefusedCommit, OfADeferredConstraintFailsTheCopyAtTheRowThatBreaksIt) {
  if (!IsPostgresql()) return;  // the other has no such constraint
  Sql("create table allowed (dsca varchar(60) primary key)");
  Sql("insert into allowed values ('Old'), ('New')");
  for (const bool hasKey : {true, false}) {
    for (const std::int16_t syncMethod : {kFullCopy, kOnlyChanged}) {
      SCOPED_TRACE((hasKey ? "with a key, sync method " : "without a key, sync method ") + std::to_string(syncMethod));
      MakeTable(hasKey, ", foreign key (dsca) references allowed deferrable initially deferred");
      BeginAnew(syncMethod);
      company_.Change(DateTime::FromDate(2002, 1, 2),
                      "update tsmdm030 set \"desc\" = 'New'; update tsmdm030 set \"desc\" = 'Bad' where cstp = '" +
                          Key(final_[3]) + "'");
      const CopyProcesses program = Program();
      const Process ended = program.Run(kTable);
      ExpectFailure(program, ended, kTable);
      EXPECT_THAT(ended.err, AllOf(HasSubstr("SQLSTATE 23503"), HasSubstr("table: tsmdm030"), HasSubstr("key: ")));
      Judge(ended, syncMethod);
    }
  }
}

}  // namespace
}  // namespace qmx::test::refused_commits
