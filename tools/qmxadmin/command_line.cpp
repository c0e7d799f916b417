// The one source that sees the argument library, which is slow to compile: each command's own source gets a struct.
#include "tools/qmxadmin/command_line.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "tools/qmxadmin/calendar/calendar.h"
#include "tools/qmxadmin/check/check.h"
#include "tools/qmxadmin/components.h"
#include "tools/qmxadmin/copy/copy.h"
#include "tools/qmxadmin/database_arguments.h"
#include "tools/qmxadmin/environment_arguments.h"
#include "tools/qmxadmin/expand.h"
#include "tools/qmxadmin/history.h"
#include "tools/qmxadmin/init.h"
#include "tools/qmxadmin/listing.h"
#include "tools/qmxadmin/method.h"
#include "tools/qmxadmin/release.h"
#include "tools/qmxadmin/run_outputs.h"
#include "tools/qmxadmin/status.h"
#include "tools/qmxadmin/verify/verify.h"

namespace qmx {
namespace {

constexpr const char* kConnection = "CONNECTION";
constexpr const char* kDatabase = "DATABASE";

// Has `run` called with `arguments` when this is the command that is asked for.
template <typename Arguments>
void Does(CLI::App& command, AdminStatus& status, const std::shared_ptr<Arguments>& arguments,
          AdminStatus (*run)(const Arguments&)) {
  command.callback([arguments, run, &status] { status = run(*arguments); });
}

void AddDatabase(CLI::App& command, DatabaseArguments& arguments) {
  command.add_option(kConnection, arguments.connection, "Such as \"Provider=SQLite;Data Source=FILE\"")->required();
  command.add_option(kDatabase, arguments.database, "Default database; \"\" for the connection's own")->required();
  command.footer(
      "CONNECTION is the connection text of the local database. Where QMX_CONNECTION is\n"
      "set, CONNECTION and DATABASE may both be left out, so that no password stands on\n"
      "the command line; QMX_DATABASE is then the default database.");
}

void AddJson(CLI::App& command, OutputForm& form) {
  command.add_flag_callback(
      "--json", [&form] { form = OutputForm::Json; }, "Tell it as JSON");
}

void AddLogs(CLI::App& command, std::string& logs) {
  command.add_option("--logs", logs, "The copies' LOGDIR")->required();
}

void AddCalendar(CLI::App& program, AdminStatus& status) {
  CLI::App& command = *program.add_subcommand(
      "calendar", "Draw the working intervals of calendars, as \"expand\" made them, week by week");
  const auto arguments = std::make_shared<CalendarArguments>();
  AddDatabase(command, *arguments);
  command.add_option("CALENDAR", arguments->codes, "Codes of calendars");
  command.add_option("--employee", arguments->employee, "Number of a service employee, whose calendar is drawn");
  command.add_option("--from", arguments->from, "A day of the first week, YYYY-MM-DD; without it this week");
  command.add_option("--to", arguments->to, "A day of the last week; without it four weeks are drawn");
  command.add_option("--svg", arguments->svg, "Write an SVG picture to this file instead; - is standard output");
  AddJson(command, arguments->form);
  Does(command, status, arguments, ShowCalendars);
}

void AddCheck(CLI::App& program, AdminStatus& status) {
  CLI::App& command = *program.add_subcommand("check", "Look whether all that the copies need is there");
  const auto arguments = std::make_shared<CheckArguments>();
  AddDatabase(command, *arguments);
  command.add_option("--logs", arguments->logs, "The copies' LOGDIR, to be looked at");
  command.add_option("--component", arguments->component, "The copies' \"COMPONENT1, COMPONENT2\", to ask the ERP");
  AddJson(command, arguments->form);
  Does(command, status, arguments, Check);
}

void AddComponents(CLI::App& program, AdminStatus& status) {
  CLI::App& command = *program.add_subcommand("components", "Show component servers and whether they load");
  const auto arguments = std::make_shared<ComponentsArguments>();
  AddJson(command, arguments->form);
  command.footer("Manifests are read from the folders in QMX_COMPONENTS, else from the installed\none.");
  Does(command, status, arguments, ShowComponents);
}

void AddComponent(CLI::App& command, std::string& component) {
  command
      .add_option("--component", component,
                  "The ERP's business component, \"COMPONENT1, COMPONENT2\", as qmxdatacopy takes it")
      ->required();
}

void AddCopy(CLI::App& program, AdminStatus& status) {
  CLI::App& command =
      *program.add_subcommand("copy", "Copy tables, each with a run of qmxdatacopy, and sum up how they went");
  const auto arguments = std::make_shared<CopyArguments>();
  AddDatabase(command, *arguments);
  command.add_option("TABLE", arguments->tables, "Table codes, such as tsmdm030, or tcccp030=KEY=E or =C");
  command.add_flag("--all", arguments->all, "All tables; calendars come after employees");
  command.add_option("--logs", arguments->logs, "Folder of the logs")->required();
  AddComponent(command, arguments->component);
  command.add_option("--request", arguments->request, "Status request number of the scheduling server");
  command.add_option("--jobs", arguments->jobs, "Copies that run at a time")->capture_default_str();
  AddJson(command, arguments->form);
  command.footer(
      command.get_footer() +
      "\nEach run has the connection text as an argument, which other users of the machine can see while it\n"
      "runs: a DSN keeps a password out of it. qmxdatacopy is taken from beside qmxadmin, else from $PATH.\n"
      "An interrupt is passed on to the runs, and no further one is started. Exit status 1: at least one\n"
      "table was not copied.");
  Does(command, status, arguments, CopyTables);
}

void AddExpand(CLI::App& program, AdminStatus& status) {
  CLI::App& command = *program.add_subcommand("expand", "Expand employees' calendars into tscalender");
  const auto arguments = std::make_shared<DatabaseArguments>();
  AddDatabase(command, *arguments);
  Does(command, status, arguments, Expand);
}

void AddHistory(CLI::App& program, AdminStatus& status) {
  CLI::App& command = *program.add_subcommand("history", "Show the last runs of qmxdatacopy, the newest last");
  const auto arguments = std::make_shared<HistoryArguments>();
  command.add_option("TABLE", arguments->tables, "Table codes, such as tsmdm030; default: all tables");
  AddLogs(command, arguments->logs);
  command.add_option("--last", arguments->last, "Number of runs")->capture_default_str();
  command.add_flag("--failed", arguments->failed, "Show failed runs and runs that never ended");
  command.add_option("--since", arguments->since,
                     "Show runs since a time, such as 2026-11-20, \"2026-11-20 14:05\", 26h or 3days");
  command.add_option("--run", arguments->run,
                     "Show one run with its whole chain of causes; its number or the beginning");
  AddJson(command, arguments->form);
  command.footer("Exit status: 1 if --run finds no run.");
  Does(command, status, arguments, ShowHistory);
}

void AddInit(CLI::App& program, AdminStatus& status) {
  CLI::App& command = *program.add_subcommand("init", "Make the local tables that are missing");
  const auto arguments = std::make_shared<InitArguments>();
  AddDatabase(command, *arguments);
  command.add_flag("--print", arguments->print, "Show the statements, and make nothing");
  const CLI::Option* printFor = command.add_option(
      "--print-for", arguments->printFor, "Show the statements for SQLite, PostgreSQL or MariaDB; needs no CONNECTION");
  for (const char* name : {kConnection, kDatabase}) command.get_option(name)->required(false);
  command.callback([arguments, printFor, &command, &status] {
    for (const char* name : {kConnection, kDatabase}) {
      if (printFor->empty() && command.count(name) == 0) throw CLI::RequiredError(name);
    }
    status = Init(*arguments);
  });
}

void AddMethod(CLI::App& program, AdminStatus& status) {
  CLI::App& command = *program.add_subcommand("method", "Have tables copied in full, or by change");
  const auto arguments = std::make_shared<MethodArguments>();
  AddDatabase(command, *arguments);
  command.add_option("TABLE", arguments->tablesAndMethod, "Codes, such as tsmdm030, then full or changed")->required();
  Does(command, status, arguments, Method);
}

void AddMetrics(CLI::App& program, AdminStatus& status) {
  CLI::App& command =
      *program.add_subcommand("metrics", "Print the state of the last runs for Prometheus' textfile collector");
  const auto arguments = std::make_shared<RunOutputArguments>();
  AddLogs(command, arguments->logs);
  command.add_option("--output", arguments->output, "Replace this file by a rename; default: standard output");
  Does(command, status, arguments, WriteMetrics);
}

void AddRelease(CLI::App& program, AdminStatus& status) {
  CLI::App& command = *program.add_subcommand("release", "Free a table after a copy that was killed");
  const auto arguments = std::make_shared<ReleaseArguments>();
  AddDatabase(command, *arguments);
  command.add_option("TABLE", arguments->table, "Table code, such as tsmdm030")->required();
  command.add_flag("--yes", arguments->yes, "Release without asking");
  Does(command, status, arguments, Release);
}

void AddReport(CLI::App& program, AdminStatus& status) {
  CLI::App& command = *program.add_subcommand("report", "Write the state of all tables as one HTML page");
  const auto arguments = std::make_shared<RunOutputArguments>();
  AddLogs(command, arguments->logs);
  command.add_option("--output", arguments->output, "File to write; - is standard output")->required();
  Does(command, status, arguments, WriteReport);
}

void AddStatus(CLI::App& program, AdminStatus& status) {
  CLI::App& command = *program.add_subcommand("status", "Show what is known of every copied table");
  const auto arguments = std::make_shared<StatusArguments>();
  AddDatabase(command, *arguments);
  AddJson(command, arguments->form);
  Does(command, status, arguments, Status);
}

void AddVerify(CLI::App& program, AdminStatus& status) {
  CLI::App& command = *program.add_subcommand(
      "verify", "Compare local tables with what the ERP lists, and tell every row that differs");
  const auto arguments = std::make_shared<VerifyArguments>();
  AddDatabase(command, *arguments);
  command.add_option("TABLE", arguments->tables, "Table codes, such as tsmdm030")->required();
  AddComponent(command, arguments->component);
  AddJson(command, arguments->form);
  command.footer(
      command.get_footer() +
      "\nThe ERP's rows stand in a temporary file in $TMPDIR, else /tmp, meanwhile. Exit status 1: something\n"
      "differs. What the ERP changes meanwhile, and what a copy by change leaves as it was, differs too.");
  Does(command, status, arguments, Verify);
}

void AddCommands(CLI::App& program, AdminStatus& status) {
  AddCalendar(program, status);
  AddCheck(program, status);
  AddComponents(program, status);
  AddCopy(program, status);
  AddExpand(program, status);
  AddHistory(program, status);
  AddInit(program, status);
  AddMethod(program, status);
  AddMetrics(program, status);
  AddRelease(program, status);
  AddReport(program, status);
  AddStatus(program, status);
  AddVerify(program, status);
}

bool TakesDatabase(const CLI::App& program, const std::string& command) {
  for (const CLI::App* known : program.get_subcommands([](const CLI::App*) { return true; })) {
    if (known->get_name() == command) return known->get_option_no_throw(kConnection) != nullptr;
  }
  return false;
}

// What is too much is not repeated, unless it is an option's name: it may be a connection text, or a piece of one.
void TellOfExtras(const CLI::App& program) {
  for (const std::string& extra : program.remaining(true)) {
    const bool option = extra.starts_with('-');
    std::cerr << (option ? "There is no option " + extra.substr(0, extra.find('=')) : "There is an argument too many")
              << ".\n";
  }
  std::cerr << "Run with --help for more information.\n";
}

}  // namespace

AdminStatus RunCommandLine(const std::vector<std::string>& given) {
  AdminStatus status = AdminStatus::Done;
  CLI::App program("Administers the local database of QMX Data Copy", "qmxadmin");
  program.require_subcommand(1);
  program.set_version_flag("--version", "qmxadmin " QMX_VERSION);
  program.footer(
      "Exit status: 0 done, and all is as it should be; 1 something is not as it should\n"
      "be, or was left as it was; 2 the command failed or its arguments are wrong\n"
      "(standard error says why).");
  AddCommands(program, status);

  const bool needsDatabase = !given.empty() && TakesDatabase(program, given.front());
  std::vector<std::string> arguments = needsDatabase ? WithEnvironment(given) : given;
  std::reverse(arguments.begin(), arguments.end());  // as the library reads them
  try {
    program.parse(std::move(arguments));
  } catch (const CLI::ExtrasError&) {
    TellOfExtras(program);
    return AdminStatus::Failed;
  } catch (const CLI::ParseError& end) {  // help is such an end as well
    return program.exit(end) == 0 ? AdminStatus::Done : AdminStatus::Failed;
  }
  return status;
}

}  // namespace qmx
