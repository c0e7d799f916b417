// A run record that the system refuses to write: a pipe in its place, and a full disk.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "platform/run_records/run_record.h"
#include "tests/platform/run_records/kept_failures.h"
#include "tests/support/full_disk.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

using Json = nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class AnUnwritableRunRecord : public testing::Test {
 protected:
  AnUnwritableRunRecord() {
    start_.path = folder_ / "QMXRuns.jsonl";
    start_.table = "tsmdm030";
  }

  std::string Written() { return ReadFile(start_.path); }

  TempFolder folder_;
  RunStart start_;
  KeptFailures failures_;
};

TEST_F(AnUnwritableRunRecord, DoesNotWaitForAReaderOfAPipeInItsPlace) {
  ASSERT_EQ(mkfifo(start_.path.c_str(), 0600), 0);
  const RunRecord record(start_, failures_);
  EXPECT_THAT(failures_.descriptions,
              ElementsAre(HasSubstr("\" cannot be written: it is a named pipe, not a regular")));
}

TEST_F(AnUnwritableRunRecord, PrintsOneSentenceIfTheDiskIsFull) {
  {
    const FullDisk full(100);  // the start is cut short
    RunRecord record(start_, failures_);
    record.End(0, {});
  }
  EXPECT_THAT(failures_.descriptions, ElementsAre(HasSubstr("\" cannot be written: No space left on device.")));
  EXPECT_EQ(Written().size(), 100U);

  RunRecord(start_, failures_).End(0, {});
  std::istringstream lines(Written().substr(100));
  std::string rest;
  std::getline(lines, rest);
  EXPECT_EQ(rest, "");  // the next record stands on lines of its own
  std::getline(lines, rest);
  EXPECT_EQ(Json::parse(rest)["record"], "start");
}

TEST_F(AnUnwritableRunRecord, PrintsOneSentenceIfTheDiskIsFullAtItsEnd) {
  RunRecord record(start_, failures_);
  const FullDisk full(Written().size());
  record.End(0, {});
  record.End(0, {});
  EXPECT_THAT(failures_.descriptions, ElementsAre(StartsWith("error 75, Run record: The end of the run is not "
                                                             "recorded: \"" +
                                                             start_.path + "\" cannot be written: ")));
}

}  // namespace
}  // namespace qmx::test
