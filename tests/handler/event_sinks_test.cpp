// The event sinks one by one: the calls to the scheduling server and the event log, their order, and the kinds of their
// arguments.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "handler/clsDataCopyHandler.h"
#include "tests/support/copy_rig.h"
#include "tests/support/logged_events.h"
#include "tests/support/raised.h"
#include "tests/support/scheduling_server.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const Variant kTime = DateTime::FromDate(2026, 11, 20).PlusTime(14, 5, 9);

class EventSinks : public testing::Test {
 protected:
  EventSinks() {
    ServeSchedulingServer(components_);
    declarations_.HasStatusRequestId = true;
    declarations_.StatusRequestId = 17;
    declarations_.CurrentDatabaseName = "service";
  }

  // Makes the server objects as the switches allow. The run ends at once, because nothing serves its connection text,
  // and does not come to the event that releases them.
  void Begin() {
    Raised([&] { handler_.HandleDataCopy("DSN=none", "", "tsmdm030", "C:\\log", "a, b"); });
    created_ = calls_.StartingWith({"create "});
    calls_.Clear();
  }

  CopyRig rig_;
  CallLog& calls_ = rig_.calls;
  ScriptedErp& components_ = rig_.erp;
  LoggedEvents eventLog_{calls_};
  Platform platform_{rig_.clock, rig_.files, eventLog_, components_, rig_.platform.database, rig_.failures};
  modDeclarations declarations_;
  clsDataCopyHandler handler_{platform_, declarations_};
  std::vector<std::string> created_;
};

TEST_F(EventSinks, ReportThatACopyStarted) {
  Begin();
  handler_.MyDataCopy_DataCopyStarted(kTime, "tsmdm030");
  EXPECT_THAT(
      calls_.Lines(),
      ElementsAre("messages.writeToMessageBox(2026-11-20 14:05:09, \"Service Types (tsmdm030) : Data copy started\")",
                  "requests.UpdateStatusByTalbe(17, \"tsmdm030\", 10)"));
}

TEST_F(EventSinks, NameTheMemberThatWroteNoNumberIntoTheRequestNumber) {
  components_.Serves("QMXServer20.ClientRequests", [this] {
    const auto requests = components_.Make("requests");
    requests->On("UpdateStatusByTalbe", 3, [](auto arguments) {
      arguments[0].Write("nonsense");
      return Variant();
    });
    return Object(requests);
  });
  Begin();
  const Error error = Raised([&] { handler_.MyDataCopy_DataCopyStarted(kTime, "tsmdm030"); });
  EXPECT_EQ(
      DescribeChain(error),
      "error 13, Values: Type mismatch: the text 'nonsense' is not a number. [argument: the request number, which "
      "the server wrote; member: UpdateStatusByTalbe]");
}

TEST_F(EventSinks, ReportTheResultWithItsCounts) {
  Begin();
  handler_.MyDataCopy_DataCopyComplete(kTime, "tssoc200", 1000000, 0, 12);
  EXPECT_THAT(calls_.Lines(),
              ElementsAre("messages.writeToMessageBox(2026-11-20 14:05:09, \"Service Orders (tssoc200) : Copy result. "
                          "Added - 1000000;   Updated - 0;   Removed - 12\")",
                          "requests.UpdateStatusByTalbe(17, \"tssoc200\", 40)"));
  EXPECT_EQ(declarations_.exitStatus, ExitStatus::Complete);
}

TEST_F(EventSinks, ReportThatACopyIsAlreadyInProgressWithoutADescription) {
  Begin();
  handler_.MyDataCopy_DataCopyAlreadyInProgress(kTime, "tsmdm030");
  EXPECT_THAT(
      calls_.Lines(),
      ElementsAre(
          "messages.writeToMessageBox(2026-11-20 14:05:09, \" For Table tsmdm030 datacopy is already in progress\")",
          "requests.UpdateStatusByTalbe(17, \"tsmdm030\", 30)"));
  EXPECT_EQ(declarations_.exitStatus, ExitStatus::Refused);
}

TEST_F(EventSinks, ReportAFailureToTheEventLogFirstThenToTheServer) {
  Begin();
  handler_.MyDataCopy_DataCopyError(kTime, "tsmdm030", std::int16_t{-1},
                                    "DataCopy Failed, see logfile 'C:\\log\\tsmdm030.log' for details");
  EXPECT_THAT(
      calls_.Lines(),
      ElementsAre("eventlog.LogEvent(\"\r\nDatabase    : service\r\nTable       : tsmdm030\r\nDescription : DataCopy "
                  "Failed, see logfile 'C:\\log\\tsmdm030.log' for details\", 1)",
                  "messages.writeToMessageBox(2026-11-20 14:05:09, \"Service Types (tsmdm030) : Data copy FAILED\")",
                  "messages.WriteToAlertBox(2026-11-20 14:05:09, \" Data copy of Table tsmdm030 failed.\r\n"
                  "Error is -1 DataCopy Failed, see logfile 'C:\\log\\tsmdm030.log' for details\r\n"
                  "------------------------------------------------------\")",
                  "requests.UpdateStatusByTalbe(17, \"tsmdm030\", 20)"));
  EXPECT_EQ(declarations_.exitStatus, ExitStatus::CopyFailed);
}

TEST_F(EventSinks, ReportAFailureOnlyToTheEventLogIfMessagesAndStatusAreOff) {
  declarations_.ServerMessagesOff = true;
  declarations_.HasStatusRequestId = false;
  Begin();
  EXPECT_THAT(created_, IsEmpty());
  handler_.MyDataCopy_DataCopyStarted(kTime, "tsmdm030");
  handler_.MyDataCopy_DataCopyError(kTime, "tsmdm030", std::int16_t{-1}, "why");
  handler_.MyDataCopy_DataCopyAlreadyInProgress(kTime, "tsmdm030");
  handler_.MyDataCopy_DataCopyComplete(kTime, "tsmdm030", 1, 2, 3);
  handler_.MyDataCopy_DataCopydone();
  EXPECT_THAT(calls_.Lines(), ElementsAre("eventlog.LogEvent(\"\r\nDatabase    : service\r\nTable       : tsmdm030\r\n"
                                          "Description : why\", 1)"));
}

TEST_F(EventSinks, SendMessagesWithoutStatusIfThereIsNoRequestNumber) {
  declarations_.HasStatusRequestId = false;
  Begin();
  EXPECT_THAT(created_, ElementsAre("create QMXServer20.clsMessHandler"));
  handler_.MyDataCopy_DataCopyStarted(kTime, "tsmdm030");
  handler_.MyDataCopy_DataCopyError(kTime, "tsmdm030", std::int16_t{-1}, "why");
  EXPECT_EQ(calls_.StartingWith({"messages.writeToMessageBox"}).size(), 2U);
  EXPECT_EQ(calls_.StartingWith({"messages.WriteToAlertBox"}).size(), 1U);
  EXPECT_THAT(calls_.StartingWith({"requests."}), IsEmpty());
}

TEST_F(EventSinks, SendStatusWithoutMessagesIfMessagesAreOff) {
  declarations_.ServerMessagesOff = true;
  Begin();
  EXPECT_THAT(created_, ElementsAre("create QMXServer20.ClientRequests"));
  handler_.MyDataCopy_DataCopyError(kTime, "tsmdm030", std::int16_t{-1}, "why");
  EXPECT_THAT(calls_.StartingWith({"messages.", "requests."}),
              ElementsAre("requests.UpdateStatusByTalbe(17, \"tsmdm030\", 20)"));
}

TEST_F(EventSinks, DescribeEveryTable) {
  Begin();
  const std::pair<const char*, const char*> tables[] = {{"tsclm020", "Response Times"},
                                                        {"tsclm024", "Priority Time Scales"},
                                                        {"tsmdm030", "Service Types"},
                                                        {"tsmdm100", "Service Centers"},
                                                        {"tsmdm105", "Service Areas"},
                                                        {"tsmdm130", "Skills"},
                                                        {"tsmdm135", "Skills By Employee"},
                                                        {"tsmdm140", "Service Employees"},
                                                        {"tscfg200", "Objects"},
                                                        {"tscfg220", "Configurations"},
                                                        {"tssoc200", "Service Orders"},
                                                        {"tssoc205", "Service Order Engineers"},
                                                        {"tssoc210", "Service Order Activities"},
                                                        {"tsspc200", "Planned Activities"},
                                                        {"tcccp001", "Availability Types"},
                                                        {"tcccp030", "Calendars"},
                                                        {"tccom130", "Addresses"}};
  for (const auto& [table, description] : tables) {
    calls_.Clear();
    handler_.MyDataCopy_DataCopyStarted(kTime, table);
    EXPECT_EQ(calls_.Lines().front(), "messages.writeToMessageBox(2026-11-20 14:05:09, \"" + std::string(description) +
                                          " (" + table + ") : Data copy started\")");
  }
}

TEST_F(EventSinks, DescribeATableWhateverTheCaseOfItsCodeAndTheBlanksAroundIt) {
  Begin();
  handler_.MyDataCopy_DataCopyStarted(kTime, " TSMDM030 ");
  EXPECT_THAT(
      calls_.Lines(),
      ElementsAre("messages.writeToMessageBox(2026-11-20 14:05:09, \"Service Types ( TSMDM030 ) : Data copy started\")",
                  "requests.UpdateStatusByTalbe(17, \" TSMDM030 \", 10)"));
}

TEST_F(EventSinks, DescribeAnUnknownTableByNothing) {
  Begin();
  handler_.MyDataCopy_DataCopyStarted(kTime, "tsxyz999");
  EXPECT_EQ(calls_.Lines().front(),
            "messages.writeToMessageBox(2026-11-20 14:05:09, \" (tsxyz999) : Data copy started\")");
}

TEST_F(EventSinks, PassTimeRequestAndTableByReferenceAndTextAndStatusByValue) {
  std::vector<std::string> kinds;
  const auto note = [&kinds](ScriptedObject::Arguments arguments) {
    for (const Argument& argument : arguments) {
      kinds.push_back((argument.IsReference() ? "ref " : "value ") +
                      std::to_string(static_cast<int>(argument.Value().GetKind())));
    }
    return Variant();
  };
  components_.Serves("QMXServer20.clsMessHandler", [&] {
    const auto messages = components_.Make("messages");
    messages->On("writeToMessageBox", 2, note).On("WriteToAlertBox", 2, note);
    return Object(messages);
  });
  components_.Serves("QMXServer20.ClientRequests", [&] {
    const auto requests = components_.Make("requests");
    requests->On("UpdateStatusByTalbe", 3, note);
    return Object(requests);
  });
  Begin();
  handler_.MyDataCopy_DataCopyError(kTime, "tsmdm030", std::int16_t{-1}, "why");
  // 4: 16-bit integer, 5: 32-bit integer, 7: date-time, 8: text
  EXPECT_THAT(kinds, ElementsAre("ref 7", "value 8", "ref 7", "value 8", "ref 5", "ref 8", "value 4"));
}

TEST_F(EventSinks, PassTheTimeThatTheMessageBoxWroteBackToTheAlertBox) {
  components_.Serves("QMXServer20.clsMessHandler", [&] {
    const auto messages = components_.Make("messages");
    messages->On("writeToMessageBox", 2, [](ScriptedObject::Arguments arguments) {
      arguments[0].Write("noon");
      return Variant();
    });
    messages->Takes("WriteToAlertBox", 2);
    return Object(messages);
  });
  Begin();
  handler_.MyDataCopy_DataCopyError(kTime, "tsmdm030", std::int16_t{-1}, "why");
  EXPECT_EQ(calls_.StartingWith({"messages.WriteToAlertBox(\"noon\", "}).size(), 1U);
}

TEST_F(EventSinks, KeepTheRequestNumberThatTheServerWritesBack) {
  components_.Serves("QMXServer20.ClientRequests", [&] {
    const auto requests = components_.Make("requests");
    requests->On("UpdateStatusByTalbe", 3, [](ScriptedObject::Arguments arguments) {
      arguments[0].Write(18);
      return Variant();
    });
    return Object(requests);
  });
  Begin();
  handler_.MyDataCopy_DataCopyStarted(kTime, "tsmdm030");
  EXPECT_EQ(declarations_.StatusRequestId, 18);
}

TEST_F(EventSinks, ReleaseTheServerObjectsWhenTheRunIsDone) {
  std::weak_ptr<ScriptedObject> messages;
  std::weak_ptr<ScriptedObject> requests;
  components_.Serves("QMXServer20.clsMessHandler", [&] {
    const auto made = components_.Make("messages");
    messages = made;
    return Object(made);
  });
  components_.Serves("QMXServer20.ClientRequests", [&] {
    const auto made = components_.Make("requests");
    requests = made;
    return Object(made);
  });
  Begin();
  EXPECT_FALSE(messages.expired());
  EXPECT_FALSE(requests.expired());
  handler_.MyDataCopy_DataCopydone();
  EXPECT_TRUE(messages.expired());
  EXPECT_TRUE(requests.expired());
}

TEST_F(EventSinks, PassAServerCallThatFailsToTheEngine) {
  components_.Serves("QMXServer20.clsMessHandler", [&] {
    const auto messages = components_.Make("messages");
    messages->On("writeToMessageBox", 2,
                 [](ScriptedObject::Arguments) -> Variant { throw Error(4711, "Server", "The board is full."); });
    return Object(messages);
  });
  Begin();
  EXPECT_EQ(Raised([&] { handler_.MyDataCopy_DataCopyStarted(kTime, "tsmdm030"); }).Number(), 4711);
  EXPECT_THAT(calls_.StartingWith({"requests."}), IsEmpty());
}

TEST_F(EventSinks, PassAFailureOfTheEventLogToTheEngineBeforeTheServerIsCalled) {
  Begin();
  eventLog_.fails = true;
  EXPECT_EQ(Raised([&] { handler_.MyDataCopy_DataCopyError(kTime, "tsmdm030", std::int16_t{-1}, "why"); }).Number(),
            61);
  EXPECT_THAT(calls_.StartingWith({"messages.", "requests."}), IsEmpty());
}

TEST_F(EventSinks, CannotBeReachedIfAServerObjectCannotBeCreated) {
  components_.Serves("QMXServer20.ClientRequests", []() -> Object {
    throw Error(429, "Components", "QMXServer20.ClientRequests cannot be created.");
  });
  const Error error = Raised([&] { handler_.HandleDataCopy("DSN=none", "", "tsmdm030", "C:\\log", "a, b"); });
  EXPECT_EQ(error.Number(), 429);
  EXPECT_THAT(rig_.files.texts, IsEmpty());  // no copy was tried
}

}  // namespace
}  // namespace qmx::test
