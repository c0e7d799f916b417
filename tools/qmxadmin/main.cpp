// qmxadmin: the operator's tool. Each subcommand has its own source.

#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <iostream>

#include "platform/error.h"
#include "platform/system/crash_report.h"
#include "platform/system/exit_guard.h"
#include "platform/system/failure_report.h"
#include "tools/qmxadmin/command_line.h"

namespace {

// Returns whether the descriptor is a pipe whose reader has closed it, as "head" does.
bool NobodyReads(int descriptor) {
  pollfd pipe{descriptor, POLLOUT, 0};
  return poll(&pipe, 1, 0) == 1 && (pipe.revents & POLLERR) != 0;
}

qmx::AdminStatus Run(const std::vector<std::string>& arguments) {
  const qmx::AdminStatus status = qmx::RunCommandLine(arguments);
  std::cout.flush();
  if (!std::cout && !NobodyReads(STDOUT_FILENO))
    throw qmx::Error(qmx::errors::kDeviceIo, "qmxadmin", "Standard output cannot be written.");
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  // A closed pipe must not end a command in the middle of a change.
  std::signal(SIGPIPE, SIG_IGN);
  qmx::AdminStatus status = qmx::AdminStatus::Failed;
  try {
    // Some commands call components in this process, and a component may exit or crash.
    qmx::GuardExit();
    qmx::ReportCrashes();
    status = Run(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc));
  } catch (...) {
    std::cout.flush();
    qmx::StandardErrorReport().Report(qmx::CurrentError());
  }
  return qmx::EndOfMain(static_cast<int>(status));
}
