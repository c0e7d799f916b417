// The Java sandbox behind the Java bridge does what the native one does over the same file: the local databases become
// the same, and the calls in the traces are the same, in the same order, with the same arguments and results.
//
// Both traces are compared as they stand. A date object is an object like any other there: its number, the arguments of
// its setters and the results of its getters count, its class does not show.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include "schema/local_tables.h"
#include "tests/bridges/java/checked_jni.h"
#include "tests/whole/company.h"
#include "tests/whole/local_copy.h"

namespace qmx::test::java_sandbox {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

std::vector<std::string> Lines(const std::string& file) {
  std::ifstream in(file);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// The JVM checks every JNI call.
class JavaSandbox : public testing::Test {
 protected:
  static void SetUpTestSuite() { test::CheckJniOfEveryJvm(); }
  void SetUp() override { testing::internal::CaptureStderr(); }
  void TearDown() override { EXPECT_THAT(testing::internal::GetCapturedStderr(), test::ShowsNoWrongJni()); }

  JavaSandbox() {
    native_.TraceTo(folder_ / "native");
    java_.TraceTo(folder_ / "java");
  }

  void Copy(const std::string& table) {
    for (LocalCopy* local : {&native_, &java_}) local->Copy(table);
    EXPECT_EQ(native_.Counts(), java_.Counts()) << table;
  }

  void ExpectSameRows() {
    for (const std::string& table : CopiedTables()) {
      const Rows rows = native_.RowsOf(table);
      EXPECT_FALSE(rows.empty()) << table;
      EXPECT_THAT(Differences(table, java_.RowsOf(table), rows), IsEmpty());
    }
    EXPECT_THAT(Differences("tstables", java_.RowsOf("tstables"), native_.RowsOf("tstables")), IsEmpty());
  }

  // Returns the number of calls.
  std::size_t ExpectSameCalls() {
    const std::vector<std::string> native = Lines(folder_ / "native");
    const std::vector<std::string> java = Lines(folder_ / "java");
    const auto [inJava, inNative] = std::ranges::mismatch(java, native);
    if (inJava != java.end() && inNative != native.end()) {
      EXPECT_EQ(*inJava, *inNative) << "call " << inJava - java.begin() + 1;
    }
    EXPECT_EQ(java.size(), native.size());
    return java.size();
  }

  TempFolder folder_;
  FakeClock clock_{At(20, 14, 5, 9)};
  Company company_;
  LocalCopy native_{company_, clock_};
  LocalCopy java_{company_, clock_, JAVA_COMPONENTS};
};

TEST_F(JavaSandbox, LeavesTheSameRowsOfAllTablesInFullAndByChangeAfterTheSameCalls) {
  for (const std::string& table : CopiedTables()) Copy(table);
  ExpectSameRows();
  const std::size_t callsInFull = ExpectSameCalls();
  EXPECT_GT(callsInFull, 10000u);

  company_.Work(7, At(20, 15));
  clock_.now = At(21, 8);
  for (LocalCopy* local : {&native_, &java_}) local->ByChange();
  for (const std::string& table : CopiedTables()) Copy(table);
  ExpectSameRows();
  EXPECT_GT(ExpectSameCalls(), callsInFull + 2000u);
}

TEST_F(JavaSandbox, LeavesTheSameRowsOfCalendarsOnRequestAndOfTheirExpansion) {
  Copy("tsmdm140");
  const std::string employee = native_.Value("select emno from tsmdm140 where ccal <> '' order by emno limit 1");
  const std::string unused = company_.Value("select max(ccal) from tcccp030");
  for (const std::string& request : {employee + "=E", unused + "=C"}) Copy("tcccp030=" + request);
  const std::string calendars = "select distinct ccal from tcccp030";
  EXPECT_EQ(native_.Values(calendars).size(), 2u);
  EXPECT_THAT(Differences("tcccp030", java_.RowsOf("tcccp030"), native_.RowsOf("tcccp030")), IsEmpty());

  for (LocalCopy* local : {&native_, &java_}) local->Expand();
  const std::string intervals = "select ccal || ' ' || sttm || ' ' || entm from tscalender";
  EXPECT_GT(native_.Values(intervals).size(), 50u);
  EXPECT_EQ(java_.Values(intervals), native_.Values(intervals));
  EXPECT_GT(ExpectSameCalls(), 1000u);
}

}  // namespace
}  // namespace qmx::test::java_sandbox
