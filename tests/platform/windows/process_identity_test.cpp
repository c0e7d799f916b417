#include "platform/system/process_identity.h"

#include <gmock/gmock.h>
#include <windows.h>

#include "platform/windows/handle.h"
#include "tests/support/second_process.h"

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

const SecondProcess::Work kWaits("waits", [](const SecondProcess::Words& words) { AwaitFile(words[0]); });

// Takes away everybody's rights to the process, as a process of another user is to this one.
bool CloseToEverybody(DWORD number) {
  const Handle process(OpenProcess(WRITE_DAC, FALSE, number));
  ACL nobody{};
  SECURITY_DESCRIPTOR descriptor{};
  return process && InitializeAcl(&nobody, sizeof nobody, ACL_REVISION) &&
         InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION) &&
         SetSecurityDescriptorDacl(&descriptor, TRUE, &nobody, FALSE) &&
         SetKernelObjectSecurity(process.Get(), DACL_SECURITY_INFORMATION, &descriptor) &&
         !Handle(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, number));
}

TEST(ProcessIdentity, HasTheSameStartWithoutARightToTheProcess) {
  const TempFolder folder;
  SecondProcess other("waits", {folder / "end"});
  const std::int64_t number = other.Number();
  const std::optional<std::int64_t> start = StartTicksOf(number);
  ASSERT_TRUE(start.has_value());
  ASSERT_TRUE(CloseToEverybody(static_cast<DWORD>(number)));
  EXPECT_EQ(StartTicksOf(number), start);
  WriteFile(folder / "end", "");
  EXPECT_EQ(other.Wait().status, 0);
  EXPECT_EQ(StartTicksOf(number), std::nullopt);
}

TEST(ProcessIdentity, HasNoStartWithoutAProcess) { EXPECT_EQ(StartTicksOf(0x7ffffff0), std::nullopt); }

TEST(ProcessIdentity, KnowsItsPeakMemory) { EXPECT_GT(PeakMemoryKib().value_or(0), 1000); }

}  // namespace
}  // namespace qmx::test
