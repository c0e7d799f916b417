#include "tools/qmxadmin/copy/copy_log.h"

#include <gtest/gtest.h>

#include <fstream>

#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

class ACopyLog : public testing::Test {
 protected:
  void Append(const std::string& text) { std::ofstream(folder / "tsmdm030.log", std::ios::app) << text; }

  std::string Read(const CopyLog& log) {
    const auto counts = log.NewCounts();
    if (!counts) return "none";
    return std::to_string(counts->added) + " " + std::to_string(counts->updated) + " " +
           std::to_string(counts->removed);
  }

  TempFolder folder;
};

TEST_F(ACopyLog, GivesWhatARunAddedToIt) {
  Append("\"Date-Time :2026-11-20 : 14:05:09\"\r\n\"Table : tsmdm030 - 99 records Inserted\"\r\n");
  const CopyLog log(folder.Path(), "tsmdm030");
  EXPECT_EQ(Read(log), "none");
  Append(
      "\"Date-Time :2026-11-21 : 14:05:09\"\r\n\"Table : tsmdm030 - 12 records Inserted\"\r\n"
      "\"Table : tsmdm030 - 3 records Updated\"\r\n\"Table : tsmdm030 - 4 records Deleted\"\r\n");
  EXPECT_EQ(Read(log), "12 3 4");
}

TEST_F(ACopyLog, HasZeroForCountsThatWereNotWritten) {
  const CopyLog log(folder.Path(), "tsmdm030");  // which is not there yet
  Append(
      "\"Date-Time :2026-11-21 : 14:05:09\"\r\n\"Table : tsmdm030 - 0 records Inserted\"\r\n"
      "\"Table : tsmdm030 - 4 records Deleted\"\r\n");
  EXPECT_EQ(Read(log), "0 0 4");
}

TEST_F(ACopyLog, HasNoCountsOfAFailedRun) {
  const CopyLog log(folder.Path(), "tsmdm030");
  Append("\"Date-Time :2026-11-21 : 14:05:09\"\r\n\"Copy Service Types\",\" Copy of 5 records Inserted failed\"\r\n");
  EXPECT_EQ(Read(log), "none");
}

TEST_F(ACopyLog, MayBeMissing) { EXPECT_EQ(Read(CopyLog(folder / "none", "tsmdm030")), "none"); }

}  // namespace
}  // namespace qmx::test
