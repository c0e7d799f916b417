// A child process for the tests: does what its only argument says.
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <thread>

#include "platform/interruption.h"
#include "platform/system/descriptors.h"
#include "platform/system/end_at_once.h"
#include "platform/system/entry.h"
#include "platform/system/environment.h"
#include "platform/system/interrupt_signals.h"
#include "platform/system/write_all.h"

namespace {

constexpr std::string_view kWait = "wait for ";
constexpr std::string_view kStay = "stay until ";
constexpr std::string_view kEnd = "end with ";

void Tell(const char* line) {
  const std::string number = qmx::EnvironmentVariable("QMX_PROGRESS_FD").value_or("-1");
  static const int descriptor = qmx::InheritedDescriptor(std::stoi(number));
  qmx::WriteAll(descriptor, line);
}

// Returns whether the file came, and not a request that ends the wait.
bool WaitFor(const std::filesystem::path& file, bool endsAtRequests) {
  const qmx::InterruptSignals signals("the child ends.");
  Tell("waits\n");
  while (!endsAtRequests || !qmx::Interruption::IsRequested()) {
    if (std::filesystem::exists(file)) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return false;
}

}  // namespace

int qmx::ProgramMain(std::span<const char* const> words) {
  const std::string what = words.size() == 2 ? words[1] : "";
  if (what.starts_with(kWait)) return WaitFor(what.substr(kWait.size()), true) ? 0 : 1;
  if (what.starts_with(kStay)) return WaitFor(what.substr(kStay.size()), false) ? 0 : 1;
  if (what.starts_with(kEnd)) EndAtOnce(static_cast<int>(std::stoul(what.substr(kEnd.size()), nullptr, 0)));
  if (what == "trap") __builtin_trap();
  Tell("rows 7\n");
  std::fputs((what + "\n").c_str(), stdout);
  std::fflush(stdout);
  std::fputs((EnvironmentVariable("QMX_COPY").value_or("none") + "\n").c_str(), stderr);
  return 3;
}
