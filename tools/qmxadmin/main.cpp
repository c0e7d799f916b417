// qmxadmin: what an operator does with the local database besides copying into it. One source a subcommand.

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>

#include "platform/error.h"
#include "tools/qmxadmin/commands.h"

namespace {

int Exit(qmx::AdminStatus status) { return static_cast<int>(status); }

}  // namespace

int main(int argc, char** argv) {
  qmx::AdminStatus status = qmx::AdminStatus::Done;
  CLI::App program("Administers the local database of QMX Data Copy", "qmxadmin");
  program.require_subcommand(1);
  program.set_version_flag("--version", "qmxadmin " QMX_VERSION);
  program.footer(
      "Exit status: 0 all is as it should be, 1 something in the database differs from what it should be and was left\n"
      "as it is, 2 the command failed or its arguments are wrong (standard error says why).");
  try {
    qmx::AddInit(program, status);
    program.parse(argc, argv);
    std::cout.flush();
    if (!std::cout) throw qmx::Error(qmx::errors::kDeviceIo, "qmxadmin", "Standard output cannot be written.");
    return Exit(status);
  } catch (const CLI::ParseError& wrong) {
    return program.exit(wrong) == 0 ? Exit(qmx::AdminStatus::Done) : Exit(qmx::AdminStatus::Failed);
  } catch (...) {
    std::cerr << "qmxadmin: " << qmx::DescribeChain(qmx::CurrentError()) << '\n';
    return Exit(qmx::AdminStatus::Failed);
  }
}
