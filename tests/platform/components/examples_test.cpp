// The two servers of docs/components.md, loaded through the manifests that stand beside their sources.
#include <gmock/gmock.h>

#include "platform/components/installed_components.h"
#include "tests/platform/components/server_folder.h"
#include "tests/support/environment.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

class Examples : public testing::Test {
 protected:
  FakeClock clock;
  InstalledComponents components{clock, {TEST_EXAMPLES}};
};

TEST_F(Examples, InCppListServiceTypesWithinTheBounds) {
  const Object manager = components.CreateObject("ServiceTypes.ServiceTypesManager");
  manager.Call("initialize", "Example, 590");
  const Object list = manager.Call("List", "", "LZZ").ToObject();
  std::vector<std::string> rows;
  while (list.Call("hasMoreElements").ToBoolean()) {
    const Object row = list.Call("nextElement").ToObject();
    rows.push_back(row.Call("getServiceType").ToText() + "|" + row.Call("getServiceTypeDescription").ToText() + "|" +
                   row.Call("getServiceProcedure").ToText() + "|" + row.Call("getavailabilityType").ToText());
  }
  manager.Call("Close");
  EXPECT_EQ(rows, (std::vector<std::string>{"FLD|Field service|P010|STD", "INS|Installation|P020|STD"}));
}

TEST_F(Examples, InCppFailWithNumberAndSentence) {
  const Object manager = components.CreateObject("servicetypes.servicetypesmanager");
  const auto failure = [&](const Member& member, const auto&... arguments) {
    const Error error = Raised([&] { manager.Call(member, arguments...); });
    EXPECT_EQ(error.Source(), "Service types example");
    return std::to_string(error.Number()) + " " + error.Description();
  };
  EXPECT_EQ(failure("List", "", "ZZZ"), "5 List was called before initialize.");
  EXPECT_EQ(failure("List", ""), "450 2 arguments expected, 1 given.");
  EXPECT_EQ(failure("initialize", 1), "13 A text is expected.");
  EXPECT_EQ(failure("lst"), "438 ServiceTypes.ServiceTypesManager has no member lst");
}

TEST_F(Examples, InCWriteMessagesAndStatus) {
  TempFolder folder;
  const EnvironmentVariable variable("MESSAGES_FILE", (folder / "messages.txt").c_str());
  Variant time = DateTime::FromDate(2026, 11, 20).PlusTime(14, 5, 9);
  Variant request = 4711;
  Variant table = "tsmdm030";
  {
    const Object handler = components.CreateObject("QMXServer20.clsMessHandler");
    handler.Call("writeToMessageBox", Ref(time), "Data copy started");
    handler.Call("WRITETOALERTBOX", Ref(time), "failed");
    components.CreateObject("QMXServer20.ClientRequests")
        .Call("UpdateStatusByTalbe", Ref(request), Ref(table), std::int16_t{20});
  }
  EXPECT_EQ(ReadFile(folder / "messages.txt"),
            "writeToMessageBox: 14:05, Data copy started\n"
            "WriteToAlertBox: 14:05, failed\n"
            "UpdateStatusByTalbe: 4711, tsmdm030, 20\n");
}

TEST_F(Examples, InCFailWithNumberAndSentence) {
  const Object handler = components.CreateObject("QMXServer20.clsMessHandler");
  const auto failure = [&](const Member& member) {
    const Error error = Raised([&] { handler.Call(member); });
    return std::to_string(error.Number()) + " " + error.Description();
  };
  EXPECT_EQ(failure("writeToMessageBox"), "450 A time and a text are expected.");
  EXPECT_EQ(failure("writeToMessageBoxes"), "438 The message handler has no such member.");
}

}  // namespace
}  // namespace qmx::test
