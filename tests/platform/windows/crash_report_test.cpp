#include "platform/system/crash_report.h"

#include <gmock/gmock.h>
#include <windows.h>

#include <csignal>
#include <map>
#include <thread>

#include "platform/system/end_line.h"
#include "tests/support/second_process.h"

namespace qmx::test {
namespace {

template <std::size_t kBytes>
struct Recursion {
  static int Go(int depth) {
    volatile char frame[kBytes];
    frame[static_cast<std::size_t>(depth) % kBytes] = 1;
    return depth < 0 ? 0 : again(depth + 1) + frame[0];
  }
  static inline int (*volatile again)(int) = Go;  // the compiler must not make a loop of the calls
};

void Fault() { *static_cast<int volatile*>(nullptr) = 1; }

const std::map<std::string, void (*)()> kCrashes = {
    {"fault", Fault},
    {"fault on a thread", [] { std::thread(Fault).join(); }},
    {"overflow", [] { Recursion<4096>::Go(0); }},
    {"overflow of small frames", [] { Recursion<64>::Go(0); }},
    {"overflow of large frames", [] { Recursion<50'000>::Go(0); }},
    {"overflow on a thread", [] { std::thread([] { Recursion<4096>::Go(0); }).join(); }},
    {"divide",
     [] {
       volatile int zero = 0;
       volatile int one = 1;
       one = one / zero;
     }},
    {"trap", [] { __builtin_trap(); }},
    {"abort", [] { std::abort(); }},
    {"raise", [] { raise(SIGABRT); }},
    {"own code", [] { RaiseException(0xE0000001, 0, 0, nullptr); }}};

const SecondProcess::Work kCrash("crash", [](const SecondProcess::Words& words) {
  ReportCrashes();
  EndLine::SetListener([](std::string_view, int status) noexcept {
    std::fprintf(stderr, "status %d\n", status);
    std::fflush(stderr);
  });
  kCrashes.at(words[0])();
});

void ExpectCrash(const std::string& what, std::uint32_t code, const std::string& line, int status) {
  SecondProcess crashed("crash", {what});
  const Process end = crashed.Wait();
  EXPECT_EQ(static_cast<std::uint32_t>(end.status), code) << what;
  EXPECT_EQ(end.err, line + " ended the run outside of all component calls\nstatus " + std::to_string(status) + "\r\n")
      << what;
}

TEST(ACrashOfWindows, IsReportedOnceAndEndsTheProcessWithItsException) {
  ExpectCrash("fault", 0xC0000005, "An access violation", 139);
  ExpectCrash("fault on a thread", 0xC0000005, "An access violation", 139);
  ExpectCrash("divide", 0xC0000094, "A division by zero", 136);
  ExpectCrash("trap", 0xC000001D, "An illegal instruction", 132);
  ExpectCrash("own code", 0xE0000001, "An exception that nothing handled", 134);
}

TEST(ACrashOfWindows, IsReportedThoughTheStackIsFull) {
  for (const char* what :
       {"overflow", "overflow of small frames", "overflow of large frames", "overflow on a thread"}) {
    ExpectCrash(what, 0xC00000FD, "A stack overflow", 139);
  }
}

TEST(ACrashOfWindows, IsAnAbortToo) {
  ExpectCrash("abort", 0x40000015, "abort", 134);
  ExpectCrash("raise", 0x40000015, "abort", 134);
}

}  // namespace
}  // namespace qmx::test
