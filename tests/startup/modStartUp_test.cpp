// Start-up: how the command line is split, the resulting switches, and where failures are reported.
#include "startup/modStartUp.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/copy_rig.h"
#include "tests/support/logged_events.h"
#include "tests/support/raised.h"
#include "tests/support/scheduling_server.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class StartUp : public testing::Test {
 protected:
  StartUp() { ServeSchedulingServer(rig_.erp); }

  void Start(const std::string& commandLine) { Main(platform_, declarations_, commandLine); }

  // A run of an unknown table, which copies nothing, with whatever follows the six pieces.
  void StartWith(const std::string& rest) { Start(rig_.ConnectionText() + ",,tsxyz999,C:\\log,a,b" + rest); }

  std::string FailureLog(const std::string& folder) { return rig_.files.texts[folder + "\\QMXDBSynclog.txt"]; }

  CopyRig rig_;
  LoggedEvents eventLog_{rig_.calls};
  Platform platform_{rig_.clock, rig_.files, eventLog_, rig_.erp, rig_.platform.database, rig_.failures};
  modDeclarations declarations_;
};

TEST_F(StartUp, WithSixPiecesCopiesWithoutReportingToTheServer) {
  StartWith("");
  EXPECT_TRUE(declarations_.ServerMessagesOff);
  EXPECT_FALSE(declarations_.HasStatusRequestId);
  EXPECT_EQ(declarations_.exitStatus, ExitStatus::NothingToCopy);
  EXPECT_THAT(rig_.calls.StartingWith({"create ", "messages.", "requests."}), IsEmpty());
  EXPECT_EQ(rig_.InUse("tsxyz999"), "0");
  EXPECT_THAT(rig_.failures.chains, ElementsAre(HasSubstr("There is no table \"tsxyz999\"")));
}

// The message handler's object is held by the handler alone.
TEST_F(StartUp, ReleasesTheHandlerBeforeAFailureIsLoggedUnderFileNumber1) {
  std::weak_ptr<Dispatch> messages;
  rig_.erp.Serves("QMXServer20.clsMessHandler", [&] {
    const auto made = rig_.erp.Make("messages");
    messages = made;
    return Object(made);
  });
  bool isReleased = false;
  rig_.files.beforeOpening = [&](const std::string& path) {
    isReleased = path == "C:\\log\\QMXDBSynclog.txt" && messages.expired();
  };
  rig_.erp.Serves("QMXServer20.ClientRequests", []() -> Object { throw Error(429, "Server", "It cannot be made."); });
  StartWith(",17");
  EXPECT_EQ(declarations_.exitStatus, ExitStatus::StartUpFailed);
  EXPECT_EQ(rig_.calls.Count("create QMXServer20.clsMessHandler"), 1u);
  EXPECT_TRUE(isReleased);
  EXPECT_EQ(rig_.files.numbers["C:\\log\\QMXDBSynclog.txt"], std::set<int>{1});
}

TEST_F(StartUp, WithARequestNumberSendsMessagesAndStatus) {
  StartWith(",17");
  EXPECT_FALSE(declarations_.ServerMessagesOff);
  EXPECT_TRUE(declarations_.HasStatusRequestId);
  EXPECT_EQ(declarations_.StatusRequestId, 17);
  EXPECT_THAT(rig_.calls.StartingWith({"requests."}),
              ElementsAre("requests.UpdateStatusByTalbe(17, \"tsxyz999\", 10)",
                          "requests.UpdateStatusByTalbe(17, \"tsxyz999\", 40)"));
}

TEST_F(StartUp, WithATextInPlaceOfARequestNumberSendsOnlyMessages) {
  StartWith(",abc");
  EXPECT_FALSE(declarations_.ServerMessagesOff);
  EXPECT_FALSE(declarations_.HasStatusRequestId);
  EXPECT_EQ(rig_.calls.StartingWith({"messages."}).size(), 2U);
  EXPECT_THAT(rig_.calls.StartingWith({"requests."}), IsEmpty());
}

TEST_F(StartUp, WithBlanksInPlaceOfARequestNumberSendsOnlyMessages) {
  StartWith(",  ");
  EXPECT_FALSE(declarations_.ServerMessagesOff);
  EXPECT_FALSE(declarations_.HasStatusRequestId);
  EXPECT_EQ(rig_.calls.StartingWith({"messages."}).size(), 2U);
  EXPECT_THAT(rig_.calls.StartingWith({"requests."}), IsEmpty());
}

TEST_F(StartUp, WithAnEmptyRequestNumberReportsNothingToTheServer) {
  StartWith(",");
  EXPECT_TRUE(declarations_.ServerMessagesOff);
  EXPECT_FALSE(declarations_.HasStatusRequestId);
  EXPECT_EQ(declarations_.exitStatus, ExitStatus::NothingToCopy);
  EXPECT_THAT(rig_.calls.StartingWith({"create ", "messages.", "requests."}), IsEmpty());
}

TEST_F(StartUp, IgnoresPiecesAfterTheRequestNumber) {
  StartWith(",17,what,ever");
  EXPECT_EQ(declarations_.StatusRequestId, 17);
  EXPECT_EQ(declarations_.exitStatus, ExitStatus::NothingToCopy);
}

TEST_F(StartUp, RoundsTheRequestNumberHalvesToEven) {
  StartWith(", +2.5 ");
  EXPECT_TRUE(declarations_.HasStatusRequestId);
  EXPECT_EQ(declarations_.StatusRequestId, 2);
}

TEST_F(StartUp, ReadsARequestNumberWithAnExponent) {
  StartWith(",-1.75E1");
  EXPECT_TRUE(declarations_.HasStatusRequestId);
  EXPECT_EQ(declarations_.StatusRequestId, -18);
}

TEST_F(StartUp, LeavesARequestNumberBeyond32BitsAtZero) {
  StartWith(",2147483648");
  EXPECT_FALSE(declarations_.ServerMessagesOff);
  EXPECT_TRUE(declarations_.HasStatusRequestId);
  EXPECT_EQ(declarations_.StatusRequestId, 0);
  EXPECT_EQ(declarations_.exitStatus, ExitStatus::NothingToCopy);
}

TEST_F(StartUp, LeavesARequestNumberBeyondAllNumbersAtZero) {
  StartWith(",1e999");
  EXPECT_TRUE(declarations_.HasStatusRequestId);
  EXPECT_EQ(declarations_.StatusRequestId, 0);
}

TEST_F(StartUp, RemovesBlanksAroundThePiecesAndKeepsThoseInside) {
  rig_.erp.Lists("ServiceTypes.ServiceTypesManager", {});
  Start("  " + rig_.ConnectionText() + " ,  , tsmdm030  , C:\\my log  ,  Orvan Business  ,  main line  ");
  EXPECT_EQ(declarations_.exitStatus, ExitStatus::Complete);
  EXPECT_TRUE(rig_.files.texts.contains("C:\\my log\\tsmdm030.log"));
  EXPECT_EQ(rig_.calls.Count("eventlog.StartLogging(\"C:\\my log\\evtlog.txt\", 0)"), 1U);
  EXPECT_EQ(rig_.calls.Count("manager.initialize(\"Orvan Business, main line\")"), 1U);
}

TEST_F(StartUp, OpensTheConnectionWithoutTheBlanksAroundItsText) {
  struct OpenedTexts : DatabaseObserver {
    void ConnectionOpened(std::string_view text, const Error*) override { texts.emplace_back(text); }
    std::vector<std::string> texts;
  } opened;
  LocalDrivers drivers;
  Database database(drivers.All(), &opened);
  Platform platform{rig_.clock, rig_.files, eventLog_, rig_.erp, database, rig_.failures};
  const std::string text = "Provider=SQLite;Data Source=" + (rig_.folder / "none.db");
  Main(platform, declarations_, "  " + text + "  ,,tsmdm030,C:\\log,a,b");
  EXPECT_THAT(opened.texts, ElementsAre(text));
}

TEST_F(StartUp, PassesTheTwoPiecesOfTheComponentJoinedByCommaAndBlank) {
  rig_.erp.Lists("ServiceTypes.ServiceTypesManager", {});
  Start(rig_.ConnectionText() + ",,tsmdm030,C:\\log,,");
  EXPECT_EQ(rig_.calls.Count("manager.initialize(\", \")"), 1U);
}

TEST_F(StartUp, StartsTheEventLogBeforeAnythingOfTheCopy) {
  StartWith(",17");
  EXPECT_EQ(rig_.calls.Lines().front(), "eventlog.StartLogging(\"C:\\log\\evtlog.txt\", 0)");
}

TEST_F(StartUp, TargetsTheEventLogWithoutADirectoryIfNoneIsNamed) {
  Start(rig_.ConnectionText() + ",,tsxyz999,   ,a,b");
  EXPECT_EQ(rig_.calls.Lines().front(), "eventlog.StartLogging(\"\\evtlog.txt\", 0)");
}

TEST_F(StartUp, WithFivePiecesIsRefusedInTheFailureLog) {
  Start("x,y,tsmdm030,C:\\log,a");
  EXPECT_EQ(FailureLog("C:\\log"),
            "Date-Time :2026-11-20 : 14:05:09\r\n"
            "Data Copy Failed:\r\n"
            "Error is - 9999: Invalid Number of Arguments, Expected 5 or More. \r\n Application cannot Start\r\n");
  EXPECT_EQ(declarations_.exitStatus, ExitStatus::StartUpFailed);
  EXPECT_THAT(rig_.calls.Lines(), IsEmpty());  // no event log, no server, no copy
  EXPECT_FALSE(declarations_.ServerMessagesOff);
  EXPECT_THAT(rig_.failures.chains,
              ElementsAre("error 9999, QMX Data Copy - Start: Invalid Number of Arguments, Expected 5 or More. "
                          " Application cannot Start [pieces: 5 of at least 6; wanted: connection text, default "
                          "database, table code, log directory, and the two of the component]"));
}

TEST_F(StartUp, WithFourPiecesIsRefusedInTheFailureLogToo) {
  Start("x,y,tsmdm030,C:\\log");
  EXPECT_THAT(FailureLog("C:\\log"), HasSubstr("Error is - 9999: "));
}

TEST_F(StartUp, WithThreePiecesOrFewerFailsWithoutALogBecauseItHasNoDirectory) {
  for (const char* commandLine : {"", "x", "x,y,tsmdm030"}) {
    const Error error = Raised([&] { Start(commandLine); });
    EXPECT_EQ(error.Number(), 9);
    ASSERT_NE(error.Cause(), nullptr);
    EXPECT_EQ(error.Cause()->Number(), 9999);
    EXPECT_THAT(rig_.files.texts, IsEmpty());
  }
}

TEST_F(StartUp, WritesTheFailureLogToTheDriveIfTheDirectoryIsBlank) {
  Start("x,y,tsmdm030,   ,a");
  EXPECT_THAT(FailureLog("C:"), HasSubstr("Error is - 9999: "));
}

TEST_F(StartUp, DoesNotTrimTabs) {
  Start("x,y,tsmdm030,\t,a");
  EXPECT_THAT(FailureLog("\t"), HasSubstr("Error is - 9999: "));
}

TEST_F(StartUp, UsesTheDirectoryOfTheFailureLogUntrimmed) {
  Start("x,y,tsmdm030, C:\\log ,a");
  EXPECT_THAT(FailureLog(" C:\\log "), HasSubstr("Error is - 9999: "));
}

TEST_F(StartUp, AppendsToTheFailureLog) {
  Start("x,y,tsmdm030,C:\\log,a");
  const std::string once = FailureLog("C:\\log");
  Start("x,y,tsmdm030,C:\\log,a");
  EXPECT_EQ(FailureLog("C:\\log"), once + once);
}

TEST_F(StartUp, ReadsTheClockForTheDateAndAgainForTheTimeOfTheFailureLog) {
  rig_.clock.now = DateTime::FromDate(2026, 11, 20).PlusTime(23, 59, 59);
  rig_.clock.step = 1;
  Start("x,y,tsmdm030,C:\\log,a");
  EXPECT_THAT(FailureLog("C:\\log"), testing::StartsWith("Date-Time :2026-11-20 : 00:00:00\r\n"));
}

TEST_F(StartUp, PassesOnAFailureLogThatCannotBeWrittenWithItsCause) {
  rig_.files.failOn = "Open";
  const Error error = Raised([&] { Start("x,y,tsmdm030,C:\\log,a"); });
  EXPECT_EQ(error.Number(), 61);
  ASSERT_NE(error.Cause(), nullptr);
  EXPECT_EQ(error.Cause()->Number(), 9999);
  EXPECT_THAT(rig_.failures.chains, IsEmpty());  // the caller reports it
}

TEST_F(StartUp, ReportsAnEventLogThatCannotBeStarted) {
  eventLog_.fails = true;
  StartWith("");
  EXPECT_THAT(FailureLog("C:\\log"), HasSubstr("Error is - 76: Path not found: C:\\log\\evtlog.txt\r\n"));
  EXPECT_EQ(declarations_.exitStatus, ExitStatus::StartUpFailed);
}

TEST_F(StartUp, ReportsAServerObjectThatCannotBeCreatedAndChangesNoTable) {
  rig_.erp.Serves("QMXServer20.ClientRequests",
                  []() -> Object { throw Error(429, "Components", "QMXServer20.ClientRequests: not registered."); });
  StartWith(",17");
  EXPECT_THAT(FailureLog("C:\\log"), HasSubstr("Error is - 429: QMXServer20.ClientRequests: not registered.\r\n"));
  EXPECT_EQ(declarations_.exitStatus, ExitStatus::StartUpFailed);
  EXPECT_EQ(rig_.InUse("tsxyz999"), "no record");
}

TEST_F(StartUp, ReportsADatabaseThatCannotBeOpened) {
  Start("Provider=SQLite;Data Source=" + (rig_.folder / "none/x.db") + ",,tsmdm030,C:\\log,a,b");
  EXPECT_EQ(declarations_.exitStatus, ExitStatus::StartUpFailed);
  EXPECT_THAT(FailureLog("C:\\log"), HasSubstr("Data Copy Failed:\r\nError is - "));
  ASSERT_EQ(rig_.failures.chains.size(), 1U);
  EXPECT_THAT(rig_.failures.chains.front(), HasSubstr("none/x.db"));
  EXPECT_FALSE(std::filesystem::exists(rig_.folder / "none"));
}

TEST_F(StartUp, ReportsTheSubscriptErrorOfAnEmptyTableNameAfterTheRun) {
  Start(rig_.ConnectionText() + ",,,C:\\log,a,b");
  EXPECT_THAT(FailureLog("C:\\log"), HasSubstr("Error is - 9: "));
  EXPECT_EQ(declarations_.exitStatus, ExitStatus::StartUpFailed);
}

TEST_F(StartUp, LeavesAFailedCopyToTheCopysOwnLogs) {
  Start(rig_.ConnectionText() + ",,tsmdm030,C:\\log,a,b");  // no ERP component serves it
  EXPECT_EQ(declarations_.exitStatus, ExitStatus::CopyFailed);
  EXPECT_FALSE(rig_.files.texts.contains("C:\\log\\QMXDBSynclog.txt"));
  EXPECT_EQ(rig_.failures.chains.size(), 1U);
}

TEST_F(StartUp, EndsRefusedIfTheTableIsInProgress) {
  rig_.ControlRecord("tsmdm030", 1);
  rig_.Sql("update tstables set in_use = 1");
  Start(rig_.ConnectionText() + ",,tsmdm030,C:\\log,a,b");
  EXPECT_EQ(declarations_.exitStatus, ExitStatus::Refused);
  EXPECT_THAT(rig_.failures.chains, ElementsAre(HasSubstr("The table tsmdm030 is in progress")));
}

TEST(TheTableCode, IsTheThirdPieceWithoutBlanksAndWithoutAKey) {
  EXPECT_EQ(TableCode("x,y, tsmdm030 ,C:\\log,a,b"), "tsmdm030");
  EXPECT_EQ(TableCode("x,y,tcccp030=DAY=C"), "tcccp030");
}

TEST(TheTableCode, IsEmptyIfThereAreTwoPiecesOrFewer) {
  for (const char* commandLine : {"", "x", "x,y"}) EXPECT_EQ(TableCode(commandLine), "") << commandLine;
}

TEST(TheRunRequest, HasThePiecesOfTheCommandLine) {
  const std::optional<RunRequest> request = ReadRunRequest(" x ,y, tcccp030=DAY=C , C:\\my log ,a,b,17");
  ASSERT_TRUE(request.has_value());
  EXPECT_EQ(request->connection, "x");
  EXPECT_EQ(request->table, "tcccp030=DAY=C");
  EXPECT_EQ(request->logDirectory, "C:\\my log");
  EXPECT_EQ(request->statusRequest, 17);
}

TEST(TheRunRequest, HasNoStatusRequestThatIsAbsentEmptyOrNoNumber) {
  for (const char* rest : {"", ",", ",abc"}) {
    const std::optional<RunRequest> request = ReadRunRequest(std::string("x,y,tsmdm030,C:\\log,a,b") + rest);
    ASSERT_TRUE(request.has_value());
    EXPECT_EQ(request->statusRequest, std::nullopt) << rest;
  }
}

TEST(TheRunRequest, IsAbsentIfTheCommandLineEndsBeforeTheLogDirectory) {
  for (const char* commandLine : {"", "x", "x,y", "x,y,tsmdm030"}) {
    EXPECT_FALSE(ReadRunRequest(commandLine).has_value()) << commandLine;
  }
  EXPECT_TRUE(ReadRunRequest("x,y,tsmdm030,").has_value());
}

}  // namespace
}  // namespace qmx::test
