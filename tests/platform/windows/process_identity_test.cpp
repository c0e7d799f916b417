#include "platform/system/process_identity.h"

#include <gmock/gmock.h>
#include <windows.h>

namespace qmx::test {
namespace {

TEST(ProcessIdentity, IsThisProcesss) {
  const ProcessIdentity own = ThisProcess();
  EXPECT_EQ(own.process, GetCurrentProcessId());
  EXPECT_FALSE(own.host.empty());
  EXPECT_FALSE(own.user.empty());
  EXPECT_EQ(own.startTicks, StartTicksOf(own.process));
}

TEST(ProcessIdentity, HasAStartInThePast) {
  FILETIME now{};
  GetSystemTimeAsFileTime(&now);
  const auto ticks = static_cast<std::int64_t>((std::uint64_t{now.dwHighDateTime} << 32) | now.dwLowDateTime);
  const std::int64_t start = ThisProcess().startTicks.value_or(0);
  EXPECT_LE(start, ticks);
  EXPECT_GT(start, ticks - std::int64_t{24} * 3600 * 10'000'000);
}

TEST(ProcessIdentity, HasNoStartWithoutAProcess) { EXPECT_EQ(StartTicksOf(0x7ffffff0), std::nullopt); }

TEST(ProcessIdentity, KnowsItsPeakMemory) { EXPECT_GT(PeakMemoryKib().value_or(0), 1000); }

}  // namespace
}  // namespace qmx::test
