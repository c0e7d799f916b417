#include "platform/system/exit_guard.h"

#include <gmock/gmock.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <thread>

#include "tests/support/second_process.h"

namespace qmx::test {
namespace {

constexpr const char* kGuardsLine =
    "exit was called by something other than the program outside of all component calls\n";

const std::map<std::string, void (*)()> kForeignEnds = {
    {"exit", [] { std::exit(0); }},
    {"exit on a thread", [] { std::thread([] { std::exit(3); }).join(); }},
    {"ExitProcess", [] { ExitProcess(0); }},
    {"ExitProcess on a thread", [] { std::thread([] { ExitProcess(0); }).join(); }},
    {"ExitProcess on a thread of Windows",
     [] {
       QueueUserWorkItem([](void*) -> DWORD { ExitProcess(0); }, nullptr, WT_EXECUTEDEFAULT);
       Sleep(INFINITE);
     }},
    {"ExitThread of main", [] { ExitThread(0); }}};

const SecondProcess::Work kGuardedWork("something ends the process", [](const SecondProcess::Words& words) {
  GuardExit();
  kForeignEnds.at(words[0])();
});

TEST(ExitGuardOfWindows, TurnsAnyEndOnAnyThreadIntoTwo) {
  for (const auto& [what, how] : kForeignEnds) {
    const Process end = SecondProcess("something ends the process", {what}).Wait();
    EXPECT_EQ(end.status, 2) << what;
    EXPECT_EQ(end.err, kGuardsLine) << what;
  }
}

const SecondProcess::Work kThreads("threads end, then main", [](const SecondProcess::Words& words) {
  GuardExit();
  for (int i = 0; i < 3; ++i) std::thread([] {}).join();
  std::fprintf(stderr, "alive\n");
  std::fflush(stderr);
  const int status = EndOfMain(7);
  if (words[0] == "main") std::exit(status);
  std::thread([status] { ExitProcess(static_cast<UINT>(status)); }).join();
});

TEST(ExitGuardOfWindows, SaysNothingOfThreadsThatEndAndOfTheEndAfterMain) {
  for (const std::string where : {"main", "thread"}) {
    const Process end = SecondProcess("threads end, then main", {where}).Wait();
    EXPECT_EQ(end.status, 7) << where;
    EXPECT_EQ(end.err, "alive\r\n") << where;
  }
}

// Windows starts a thread with this function of its own when a key is pressed.
const SecondProcess::Work kKey("a key without a handler", [](const SecondProcess::Words&) {
  GuardExit();
  SetConsoleCtrlHandler(nullptr, FALSE);  // keys are not ignored
  const auto handleKey =
      reinterpret_cast<void (*)()>(GetProcAddress(GetModuleHandleW(L"kernelbase.dll"), "CtrlRoutine"));
  constexpr std::uintptr_t event = CTRL_BREAK_EVENT;
  CreateThread(nullptr, 0, reinterpret_cast<LPTHREAD_START_ROUTINE>(handleKey), reinterpret_cast<void*>(event), 0,
               nullptr);
  Sleep(20'000);
  TerminateProcess(GetCurrentProcess(), 99);
});

TEST(ExitGuardOfWindows, LeavesKeysOfTheConsoleToWindowsWhereTheProgramHasNoHandler) {
  const Process end = SecondProcess("a key without a handler", {}).Wait();
  EXPECT_THAT(static_cast<UINT>(end.status), testing::AnyOf(0xC000013A, 0));  // 0 under Wine
  EXPECT_EQ(end.err, "");
}

}  // namespace
}  // namespace qmx::test
