// qmxadmin: what an operator does with the local database besides copying into it. One source a subcommand.

#include <CLI/CLI.hpp>
#include <iostream>

#include "platform/error.h"
#include "platform/posix/failure_report.h"
#include "tools/qmxadmin/commands.h"

namespace {

using qmx::AdminStatus;

AdminStatus Run(int argc, char** argv) {
  AdminStatus status = AdminStatus::Done;
  CLI::App program("Administers the local database of QMX Data Copy", "qmxadmin");
  program.require_subcommand(1);
  program.set_version_flag("--version", "qmxadmin " QMX_VERSION);
  program.footer(
      "Exit status: 0 all is as it should be, 1 something in the database differs from what it should be and was left\n"
      "as it is, 2 the command failed or its arguments are wrong (standard error says why).");
  qmx::AddInit(program, status);
  qmx::AddExpand(program, status);
  try {
    program.parse(argc, argv);
  } catch (const CLI::ParseError& end) {  // help is such an end as well
    status = program.exit(end) == 0 ? AdminStatus::Done : AdminStatus::Failed;
  }
  std::cout.flush();
  if (!std::cout) throw qmx::Error(qmx::errors::kDeviceIo, "qmxadmin", "Standard output cannot be written.");
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  AdminStatus status = AdminStatus::Failed;
  try {
    status = Run(argc, argv);
  } catch (...) {
    qmx::PosixFailureReport().Report(qmx::CurrentError());
  }
  return static_cast<int>(status);
}
