// qmxadmin: the operator's tool. Each subcommand has its own source.
#include <iostream>

#include "platform/error.h"
#include "platform/system/crash_report.h"
#include "platform/system/descriptors.h"
#include "platform/system/entry.h"
#include "platform/system/exit_guard.h"
#include "platform/system/failure_report.h"
#include "tools/qmxadmin/command_line.h"
#include "tools/qmxadmin/system/readers.h"

namespace {

qmx::AdminStatus Run(const std::vector<std::string>& arguments) {
  const qmx::AdminStatus status = qmx::RunCommandLine(arguments);
  std::cout.flush();
  if (!std::cout && !qmx::NobodyReads(qmx::kStandardOutput))
    throw qmx::Error(qmx::errors::kDeviceIo, "qmxadmin", "Standard output cannot be written.");
  return status;
}

}  // namespace

int qmx::ProgramMain(std::span<const char* const> words) {
  qmx::AdminStatus status = qmx::AdminStatus::Failed;
  try {
    // Some commands call components in this process, and a component may exit or crash.
    qmx::GuardExit();
    qmx::ReportCrashes();
    const auto arguments = words.subspan(words.empty() ? 0 : 1);
    status = Run(std::vector<std::string>(arguments.begin(), arguments.end()));
  } catch (...) {
    std::cout.flush();
    qmx::StandardErrorReport().Report(qmx::CurrentError());
  }
  return qmx::EndOfMain(static_cast<int>(status));
}
