#include "platform/system/interrupt_signals.h"

#include <gmock/gmock.h>
#include <windows.h>

#include <chrono>
#include <thread>

#include "platform/error.h"
#include "platform/interruption.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

// tests/windows/run.sh runs it once more in a terminal, because Wine has a console only there.

TEST(ConsoleEvents, AreRequestsToEndTheRun) {
  const InterruptSignals signals("the copy ends.");
  if (!GenerateConsoleCtrlEvent(CTRL_BREAK_EVENT, 0)) GTEST_SKIP() << "This process has no console.";
  while (!Interruption::IsRequested()) std::this_thread::sleep_for(std::chrono::milliseconds(5));
  EXPECT_EQ(Raised([] { Interruption::RaiseIfRequested(); }).Description(), "CTRL_BREAK asked the program to end.");
}

}  // namespace
}  // namespace qmx::test
