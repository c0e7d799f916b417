// The line about an end that the program did not choose.
#include "platform/system/end_line.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/running_call.h"

namespace qmx::test {
namespace {

class TheEndLine : public testing::Test {
 protected:
  ~TheEndLine() override { EndLine::SetTable(""); }

  static std::string Line(const char* reason = "SIGSEGV ended the run") {
    testing::internal::CaptureStderr();
    EndLine(reason).Write(2);
    return testing::internal::GetCapturedStderr();
  }
};

TEST_F(TheEndLine, NamesCallAndTable) {
  EndLine::SetTable("tsmdm030");
  const RunningCall running("A.Manager", "List");
  EXPECT_EQ(Line(),
            "SIGSEGV ended the run during List of A.Manager: the table stays in progress: qmxadmin release tsmdm030\n");
}

TEST_F(TheEndLine, SaysThatTheTableMayStayInProgressOutsideOfCallsToTheErp) {
  EndLine::SetTable("tsmdm030");
  EXPECT_EQ(Line(),
            "SIGSEGV ended the run outside of all component calls: the table may stay in progress: qmxadmin status, "
            "qmxadmin release tsmdm030\n");
  const RunningCall running("QMXServer20.ClientRequests", "UpdateStatusByTalbe");
  EXPECT_EQ(Line(),
            "SIGSEGV ended the run during UpdateStatusByTalbe of QMXServer20.ClientRequests: the table may stay in "
            "progress: qmxadmin status, qmxadmin release tsmdm030\n");
}

TEST_F(TheEndLine, NamesNoTableIfNoneIsCopied) {
  const RunningCall running(nullptr, "List");
  EXPECT_EQ(Line(), "SIGSEGV ended the run during List of an object without a ProgID\n");
}

TEST_F(TheEndLine, StaysOneLineOfLimitedLength) {
  EndLine::SetTable(std::string(200, 't'));
  const RunningCall running("A\x1b[2J", "two\nlines");
  EXPECT_EQ(Line(), "SIGSEGV ended the run during two lines of A [2J: the table stays in progress: qmxadmin release " +
                        std::string(63, 't') + "\n");
  EXPECT_EQ(Line(std::string(2000, 'r').c_str()), std::string(1023, 'r') + "\n");
}

}  // namespace
}  // namespace qmx::test
