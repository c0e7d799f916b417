#include "platform/run_records/sudden_end.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <nlohmann/json.hpp>
#include <regex>

#include "platform/system/plain_file.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class ASuddenEnd : public testing::Test {
 protected:
  ~ASuddenEnd() override { SuddenEnd::Disarm(); }

  void Arm(const std::string& beginning = "\n{\"run\":\"r1\",\"time\":") {
    SuddenEnd::Arm(file_.descriptor, beginning, 3600);
  }
  std::string Written() { return ReadFile(folder_ / "records"); }

  TempFolder folder_;
  PlainFile file_ = OpenPlainFile(folder_ / "records", FileUse::Append);
};

TEST_F(ASuddenEnd, CompletesTheRecordThatItWasArmedWith) {
  Arm();
  SuddenEnd::Write("exit was called", 2);
  const std::regex record(
      "\n\\{\"run\":\"r1\",\"time\":\"20[0-9-]{8}T[0-9:.]{12}\\+01:00\",\"duration_ms\":[0-9]+,"
      "\"outcome\":\"ended\",\"status\":2,\"causes\":\\[\\[\\{\"description\":\"exit was called\"\\}\\]\\]\\}");
  EXPECT_TRUE(std::regex_match(Written(), record)) << Written();
}

TEST_F(ASuddenEnd, IsACrashIfASignalEndsTheProcess) {
  Arm();
  SuddenEnd::Write("SIGSEGV ended the run", 139);
  EXPECT_THAT(Written(), HasSubstr("\"outcome\":\"crashed\",\"status\":139,"));
}

TEST_F(ASuddenEnd, EscapesOrReplacesCharactersThatJsonForbids) {
  Arm();
  SuddenEnd::Write("a\"b\\c\nd\xC3\xA4", 2);
  const auto record = nlohmann::json::parse(Written());
  EXPECT_EQ(record["causes"][0][0]["description"], "a\"b\\c?d??");
}

TEST_F(ASuddenEnd, StaysJsonHoweverLongItsCauseIs) {
  Arm();
  SuddenEnd::Write(std::string(5000, '"'), 2);
  EXPECT_EQ(nlohmann::json::parse(Written())["causes"][0][0]["description"], std::string(1024, '"'));
}

TEST_F(ASuddenEnd, HasNoCauseThatMayHoldASecret) {
  SuddenEnd::Arm(file_.descriptor, "\n{\"run\":\"r1\",\"time\":", 0, false);
  SuddenEnd::Write("SIGSEGV ended the run: qmxadmin release {hush-hush}", 139);
  EXPECT_THAT(Written(), HasSubstr("\"causes\":[[{\"description\":\"***\"}]]}"));
}

TEST_F(ASuddenEnd, IsWrittenOnce) {
  Arm();
  SuddenEnd::Write("first", 2);
  SuddenEnd::Write("second", 134);
  EXPECT_THAT(Written(), testing::AllOf(HasSubstr("first"), testing::Not(HasSubstr("second"))));
}

TEST_F(ASuddenEnd, IsNotWrittenAfterAnotherEndOrWithoutARecord) {
  SuddenEnd::Write("never armed", 2);
  Arm();
  EXPECT_TRUE(SuddenEnd::Disarm());
  EXPECT_FALSE(SuddenEnd::Disarm());
  SuddenEnd::Write("disarmed", 2);
  Arm(std::string(513, 'x'));  // more than it can hold
  SuddenEnd::Write("too long", 2);
  EXPECT_THAT(Written(), IsEmpty());
}

TEST_F(ASuddenEnd, LeavesTheErrorNumberAsItWas) {
  Arm();
  errno = ENOENT;
  SuddenEnd::Write("exit was called", 2);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_THAT(Written(), StartsWith("\n"));
}

}  // namespace
}  // namespace qmx::test
