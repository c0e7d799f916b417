// Ends that the program did not choose: a component that calls exit, and crashes.
#include <csignal>

#include "tests/startup/ending_component.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char* kStays = ": the table stays in progress: qmxadmin release tsmdm030\n";
constexpr const char* kMayStay = ": the table may stay in progress: qmxadmin status, qmxadmin release tsmdm030\n";
constexpr const char* kExit = "exit was called by something other than the program during ";

using AnExitOfAComponent = EndingComponent;

TEST_F(AnExitOfAComponent, EndsTheRunWithTwoWhateverStatusItAsksFor) {
  for (const char* what : {"exit 0", "exit 1", "exit 3", "exit 0 on a thread", "exit 3 on a thread", "quick_exit 0"}) {
    Sql("delete from tstables");
    const Process copy = CopyEndedAt("getServiceType", 5, what);
    EXPECT_EQ(copy.status, 2) << what;
    EXPECT_EQ(copy.err, std::string(kExit) + "getServiceType of ServiceTypes.ServiceTypesManager" + kStays) << what;
    EXPECT_EQ(copy.out, "") << what;
    EXPECT_THAT(InUse(), ElementsAre("1")) << what;
  }
}

TEST_F(AnExitOfAComponent, NamesTheObjectsOwnProgIdAndItsMember) {
  EXPECT_THAT(CopyEndedAt("initialize", 1, "exit 0").err,
              StartsWith(std::string(kExit) + "initialize of ServiceTypes.ServiceTypesManager:"));
  Sql("update tstables set in_use = 0, syme = 2");
  EXPECT_THAT(CopyEndedAt("addOutputField", 2, "exit 0").err,
              StartsWith(std::string(kExit) + "addOutputField of audit.auditCriteria:"));
}

TEST_F(AnExitOfAComponent, DoesNotSayThatTheTableStaysInProgressIfTheSchedulingServerCalledIt) {
  pieces_.rest = ",17";
  const Process copy = CopyEndedAt("UpdateStatusByTalbe", 2, "exit 0");
  EXPECT_EQ(copy.status, 2);
  EXPECT_EQ(copy.err, std::string(kExit) + "UpdateStatusByTalbe of QMXServer20.ClientRequests" + kMayStay);
  EXPECT_THAT(InUse(), ElementsAre("0"));  // the copy had ended
}

TEST_F(AnExitOfAComponent, IsNotReportedForARunThatEndsByItself) {
  const Process copy = Copy();
  EXPECT_EQ(copy.status, 0);
  EXPECT_THAT(copy.err, IsEmpty());
  EXPECT_THAT(Column("select count(*) from tsmdm030"), ElementsAre("40"));
}

TEST_F(AnExitOfAComponent, CannotBeCaughtIfItIsTheSystemsOwn) {
  const Process copy = CopyEndedAt("getServiceType", 5, "_exit 0");
  EXPECT_EQ(copy.status, 0);
  EXPECT_THAT(copy.err, IsEmpty());
  EXPECT_THAT(InUse(), ElementsAre("1"));
}

TEST_F(AnExitOfAComponent, LeavesTheProgressDescriptorWithoutItsLastLine) {
  const auto told = [&] {
    test::Run(
        "/bin/sh",
        {"-c", "exec 3> '" + folder_ / "told" + "'; QMX_PROGRESS_FD=3 exec \"$0\" \"$1\"", QMXDATACOPY, pieces_.Line()},
        environment_);
    return ReadFile(folder_ / "told");
  };
  EXPECT_THAT(told(), EndsWith("rows 40\nend 0\n"));
  for (const char* what : {"_exit 0", "exit 0"}) {
    At("getServiceType", 5, what);
    Sql("delete from tstables");
    EXPECT_THAT(told(), Not(HasSubstr("end"))) << what;
  }
}

struct Signal {
  int number;
  const char* name;
};

using ACrash = EndingComponent;

TEST_F(ACrash, NamesTheCallAndTheTableAndEndsByItsSignal) {
  for (const Signal& signal : {Signal{SIGSEGV, "SIGSEGV"}, Signal{SIGABRT, "SIGABRT"}, Signal{SIGBUS, "SIGBUS"},
                               Signal{SIGFPE, "SIGFPE"}, Signal{SIGILL, "SIGILL"}}) {
    Sql("delete from tstables");
    const Process copy = CopyEndedAt("nextElement", 7, "raise " + std::to_string(signal.number));
    EXPECT_EQ(copy.status, 128 + signal.number);
    EXPECT_EQ(copy.err, std::string(signal.name) + " ended the run during nextElement of " +
                            "ServiceTypes.ServiceTypesManager" + kStays);
    EXPECT_THAT(InUse(), ElementsAre("1"));
  }
}

TEST_F(ACrash, IsReportedOnceIfTheFaultComesAgain) {
  const Process copy = CopyEndedAt("List", 1, "fault");
  EXPECT_EQ(copy.status, 128 + SIGSEGV);
  EXPECT_EQ(copy.err, std::string("SIGSEGV ended the run during List of ServiceTypes.ServiceTypesManager") + kStays);
}

TEST_F(ACrash, IsReportedThoughTheStackIsFull) {
  const Process copy = CopyEndedAt("List", 1, "overflow");
  EXPECT_EQ(copy.status, 128 + SIGSEGV);
  EXPECT_EQ(copy.err, std::string("SIGSEGV ended the run during List of ServiceTypes.ServiceTypesManager") + kStays);
}

TEST_F(ACrash, OfTheSchedulingServerMayComeBeforeTheTableIsMarked) {
  pieces_.rest = ",17";
  const Process copy = CopyEndedAt("writeToMessageBox", 1, "raise " + std::to_string(SIGSEGV));
  EXPECT_EQ(copy.err,
            std::string("SIGSEGV ended the run during writeToMessageBox of QMXServer20.clsMessHandler") + kMayStay);
}

TEST_F(ACrash, NamesOnlyTheTableCodeOfAnExtendedForm) {
  pieces_.table = "tsmdm030=1=E";
  EXPECT_THAT(CopyEndedAt("List", 1, "fault").err, EndsWith(": qmxadmin release tsmdm030\n"));
}

}  // namespace
}  // namespace qmx::test
