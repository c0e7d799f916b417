// The end of a run: the table's release or the connection's closing fails.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/copy/service_type.h"
#include "tests/support/copy_rig.h"
#include "tests/support/faulty_driver.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(Run, LogsAFailedReleaseAndCountsAsFinished) {
  CopyRig rig;
  rig.erp.ListsBy(kServiceTypesManager, [&](auto) {
    rig.Sql("drop table tstables");
    return std::vector<Getters>{ServiceType("A")};
  });
  rig.Run("tsmdm030");
  EXPECT_THAT(rig.Events(), ElementsAre("event Started 2026-11-20 14:05:09, \"tsmdm030\"",
                                        "event Complete 2026-11-20 14:05:09, \"tsmdm030\", 1, 0, 0", "event done"));
  EXPECT_THAT(
      rig.CopyLog("tsmdm030"),
      HasSubstr("\"ReleaseCopyInProgress\",\"Release of Data copy in Progress flag for table tsmdm030 Failed\""));
  EXPECT_THAT(rig.failures.chains, ElementsAre(testing::StartsWith("error -2147217865, clsDataCopy: "),
                                               testing::StartsWith("error -2147217865, ReleaseCopyInProgress: ")));
  EXPECT_EQ(rig.declarations.statusWhenFinished, ExitStatus::StartUpFailed);
  EXPECT_EQ(rig.calls.Count("connection.Close"), 1u);
}

TEST(Run, IsNoSuccessIfOnlyTheReleaseFailed) {
  CopyRig rig;
  rig.erp.Serves(kServiceTypesManager, [&] {
    const auto manager = rig.erp.Make("manager");
    manager->Takes("initialize", 1).On("List", 2, [](auto) { return Variant(); });
    manager->On("Close", 0, [&](auto) -> Variant {
      rig.Sql("drop table tstables");
      return {};
    });
    return Object(manager);
  });
  rig.Run("tsmdm030");
  EXPECT_THAT(rig.Events(), ElementsAre("event Started 2026-11-20 14:05:09, \"tsmdm030\"",
                                        "event Complete 2026-11-20 14:05:09, \"tsmdm030\", 0, 0, 0", "event done"));
  EXPECT_THAT(rig.failures.chains,
              ElementsAre(testing::StartsWith("error -2147217865, ReleaseCopyInProgress: Release of Data copy in "
                                              "Progress flag for table tsmdm030 Failed")));
  EXPECT_EQ(rig.declarations.statusWhenFinished, ExitStatus::StartUpFailed);
}

// Runs an unknown table on a connection whose closing fails.
class UnclosedRun : public testing::Test {
 protected:
  UnclosedRun() {
    CopyRig whole(faulty_);
    whole.Run("unknown1");
    closing_ = driver_->Operations();
    EXPECT_EQ(driver_->Record().back(), "Close");
  }
  void Run(CopyRig& rig) {
    driver_->FailAt(closing_);
    rig.Run("unknown1");
    EXPECT_TRUE(driver_->HasFailed());
  }

  std::unique_ptr<FaultyDriver> driver_;
  std::function<Driver&(Driver&)> faulty_ = [this](Driver& sqlite) -> Driver& {
    driver_ = std::make_unique<FaultyDriver>(sqlite);
    return *driver_;
  };
  std::int64_t closing_ = 0;
};

TEST_F(UnclosedRun, LogsTheFailureAndCountsAsFinished) {
  CopyRig rig(faulty_);
  Run(rig);
  EXPECT_THAT(rig.Events(), ElementsAre("event Started 2026-11-20 14:05:09, \"unknown1\"",
                                        "event Complete 2026-11-20 14:05:09, \"unknown1\", 0, 0, 0", "event done"));
  EXPECT_THAT(rig.CopyLog("unknown1"), HasSubstr("was made to fail: Close\"\r\n"));
}

TEST_F(UnclosedRun, LogsTheFailureOfItsLogToo) {
  CopyRig rig(faulty_);
  rig.files.failOn = "Open";
  rig.files.failsOnce = true;
  Run(rig);
  EXPECT_EQ(rig.Events()[1], "event Complete 2026-11-20 14:05:09, \"unknown1\", 0, 0, 0");
  EXPECT_EQ(rig.CopyLog("unknown1"),
            "\"Date-Time :2026-11-20 : 14:05:09\"\r\n"
            "\"MemoryFiles\",\"Disk full\"\r\n"
            "\"ADODB.Connection\",\"The connection is closed.\"\r\n");
  EXPECT_EQ(rig.calls.StartingWith({"connection.Close"}).size(), 2u);
  EXPECT_EQ(rig.InUse("unknown1"), "0");
}

}  // namespace
}  // namespace qmx::test
