// qmxadmin: what an operator does around the copies. One source a subcommand.

#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <iostream>

#include "platform/error.h"
#include "platform/posix/crash_report.h"
#include "platform/posix/exit_guard.h"
#include "platform/posix/failure_report.h"
#include "tools/qmxadmin/command_line.h"

namespace {

// Whether it is a pipe that its reader has closed, as "head" does when it has seen enough.
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
  // A command that changes something is not to die halfway because nobody reads what it says.
  std::signal(SIGPIPE, SIG_IGN);
  qmx::AdminStatus status = qmx::AdminStatus::Failed;
  try {
    // Checks, verifications and listings call components in this process.
    qmx::GuardExit();
    qmx::ReportCrashes();
    status = Run(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc));
  } catch (...) {
    std::cout.flush();
    qmx::PosixFailureReport().Report(qmx::CurrentError());
  }
  return qmx::EndOfMain(static_cast<int>(status));
}
