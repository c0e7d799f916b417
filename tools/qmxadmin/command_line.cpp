// The argument library is slow to compile, so commands take their arguments in structs.
#include "tools/qmxadmin/command_line.h"

#include <fmt/format.h>

#include <iostream>
#include <memory>
#include <optional>

#include "tools/qmxadmin/calendar/calendar.h"
#include "tools/qmxadmin/check/check.h"
#include "tools/qmxadmin/components.h"
#include "tools/qmxadmin/copy/copy.h"
#include "tools/qmxadmin/environment_arguments.h"
#include "tools/qmxadmin/expand.h"
#include "tools/qmxadmin/history.h"
#include "tools/qmxadmin/init.h"
#include "tools/qmxadmin/listing.h"
#include "tools/qmxadmin/method.h"
#include "tools/qmxadmin/nearest_name.h"
#include "tools/qmxadmin/options.h"
#include "tools/qmxadmin/release.h"
#include "tools/qmxadmin/run_outputs.h"
#include "tools/qmxadmin/status.h"
#include "tools/qmxadmin/system/usual_places.h"
#include "tools/qmxadmin/verify/verify.h"

namespace qmx {
namespace {

// Calls `run` with `arguments` if this command is given.
template <typename Arguments>
void Does(CLI::App& command, AdminStatus& status, const std::shared_ptr<Arguments>& arguments,
          AdminStatus (*run)(const Arguments&)) {
  command.callback([arguments, run, &status] { status = run(*arguments); });
}

void AddCalendar(CLI::App& program, AdminStatus& status) {
  CLI::App& command =
      *program.add_subcommand("calendar", "Draw the working intervals that \"expand\" made, week by week");
  const auto arguments = std::make_shared<CalendarArguments>();
  AddDatabase(command, *arguments);
  command.add_option("CALENDAR", arguments->codes, "Calendar codes");
  command.add_option("--employee", arguments->employee,
                     "Number of a service employee, to draw the employee's calendar");
  command.add_option("--from", arguments->from, "A day of the first week, YYYY-MM-DD; default: today");
  command.add_option("--to", arguments->to, "A day of the last week; default: four weeks are drawn");
  command.add_option("--svg", arguments->svg, "Write an SVG picture to this file; - is standard output");
  AddJson(command, arguments->form);
  Does(command, status, arguments, ShowCalendars);
}

void AddCheck(CLI::App& program, AdminStatus& status) {
  CLI::App& command = *program.add_subcommand("check", "Check that everything the copies need is in place");
  const auto arguments = std::make_shared<CheckArguments>();
  AddDatabase(command, *arguments);
  AddLogs(command, arguments->logs, Need::Optional);
  AddComponent(command, arguments->component, Need::Optional);
  command.add_flag("--records", arguments->records, "Read one record per table, and the audit trail");
  AddJson(command, arguments->form);
  AddQuiet(command, arguments->quiet);
  command.footer(command.get_footer() +
                 "\nWithout --logs the log folder is not checked. Without --component the ERP is not called.");
  Does(command, status, arguments, Check);
}

void AddComponents(CLI::App& program, AdminStatus& status) {
  CLI::App& command = *program.add_subcommand("components", "Show the component servers and whether they load");
  const auto arguments = std::make_shared<ComponentsArguments>();
  AddJson(command, arguments->form);
  command.footer(
      "Manifests are read from the folders in QMX_COMPONENTS, or from the installed folder\nif it is not set.");
  Does(command, status, arguments, ShowComponents);
}

void AddCopy(CLI::App& program, AdminStatus& status) {
  CLI::App& command =
      *program.add_subcommand("copy", "Copy tables, each in its own run of qmxdatacopy, and print a summary");
  const auto arguments = std::make_shared<CopyArguments>();
  AddDatabase(command, *arguments);
  AddTables(command, arguments->tables, arguments->all,
            "Table codes, such as tsmdm030, or tcccp030=KEY=E or tcccp030=KEY=C");
  command.add_flag("--full", arguments->full, "Copy in full, whatever the sync method, which is not changed");
  command.add_flag("--whole", arguments->whole, "Make each copy visible in one commit, or not at all");
  AddLogs(command, arguments->logs, Need::Required);
  AddComponent(command, arguments->component, Need::Required);
  command.add_option("--request", arguments->request, "Status request number of the scheduling server");
  command.add_option("--jobs", arguments->jobs, "Number of copies that run at the same time")->capture_default_str();
  AddJson(command, arguments->form);
  AddQuiet(command, arguments->quiet);
  command.footer(
      command.get_footer() +
      "\nOther users of the machine can see the arguments of each run, including the connection text. Use a DSN\n"
      "to keep a password out of it. qmxdatacopy is looked for in the folder of qmxadmin, then in $PATH. An\n"
      "interrupt is passed on to the running copies, and no further copy is started. Exit status 1: at least\n"
      "one table was not copied.");
  Does(command, status, arguments, CopyTables);
}

void AddExpand(CLI::App& program, AdminStatus& status) {
  CLI::App& command = *program.add_subcommand("expand", "Expand the employees' calendars into tscalender");
  const auto arguments = std::make_shared<ExpandArguments>();
  AddDatabase(command, *arguments);
  command.add_flag("--whole", arguments->whole, "Make each calendar visible in one commit, or not at all");
  AddJson(command, arguments->form);
  AddQuiet(command, arguments->quiet);
  command.footer(command.get_footer() +
                 "\nWith --whole, calendars that fail stay as they are and are printed. Exit status 1: at least one\n"
                 "failed.");
  Does(command, status, arguments, Expand);
}

void AddHistory(CLI::App& program, AdminStatus& status) {
  CLI::App& command = *program.add_subcommand("history", "Show the last runs of qmxdatacopy, the newest last");
  const auto arguments = std::make_shared<HistoryArguments>();
  command.add_option("TABLE", arguments->tables, "Table codes, such as tsmdm030; default: all tables");
  AddLogs(command, arguments->logs, Need::Required);
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
  CLI::App& command = *program.add_subcommand("init", "Create the missing local tables");
  const auto arguments = std::make_shared<InitArguments>();
  AddDatabase(command, *arguments);
  command.add_flag("--print", arguments->print, "Print the statements and create nothing");
  const CLI::Option* printFor =
      command.add_option("--print-for", arguments->printFor,
                         "Print the statements for SQLite, PostgreSQL or MariaDB; needs no CONNECTION");
  AddJson(command, arguments->form);
  AddQuiet(command, arguments->quiet);
  for (const char* name : {kConnection, kDatabase}) command.get_option(name)->required(false);
  command.callback([arguments, printFor, &command, &status] {
    for (const char* name : {kConnection, kDatabase}) {
      if (printFor->empty() && command.count(name) == 0) throw CLI::RequiredError(name);
    }
    status = Init(*arguments);
  });
}

void AddMethod(CLI::App& program, AdminStatus& status) {
  CLI::App& command = *program.add_subcommand("method", "Set the sync method of tables");
  const auto arguments = std::make_shared<MethodArguments>();
  AddDatabase(command, *arguments);
  command.add_option("TABLE", arguments->tablesAndMethod, "Table codes, such as tsmdm030, followed by full or changed")
      ->required();
  command.add_flag("--all", arguments->all, "All tables");
  AddJson(command, arguments->form);
  AddQuiet(command, arguments->quiet);
  Does(command, status, arguments, Method);
}

void AddMetrics(CLI::App& program, AdminStatus& status) {
  CLI::App& command =
      *program.add_subcommand("metrics", "Print the state of the last runs for Prometheus' textfile collector");
  const auto arguments = std::make_shared<RunOutputArguments>();
  AddLogs(command, arguments->logs, Need::Required);
  command.add_option("--output", arguments->output, "Replace this file by a rename; default: standard output");
  Does(command, status, arguments, WriteMetrics);
}

void AddRelease(CLI::App& program, AdminStatus& status) {
  CLI::App& command = *program.add_subcommand("release", "Release a table after a copy that was killed");
  const auto arguments = std::make_shared<ReleaseArguments>();
  AddDatabase(command, *arguments);
  command.add_option("TABLE", arguments->tables, "Table codes, such as tsmdm030")->required();
  AddLogs(command, arguments->logs, Need::Optional);
  command.add_flag("--force", arguments->force, "Release even if a process on this machine copies the table");
  command.add_flag("--yes", arguments->yes, "Release without asking");
  AddJson(command, arguments->form);
  AddQuiet(command, arguments->quiet);
  Does(command, status, arguments, Release);
}

void AddReport(CLI::App& program, AdminStatus& status) {
  CLI::App& command = *program.add_subcommand("report", "Write the state of all tables as one HTML page");
  const auto arguments = std::make_shared<RunOutputArguments>();
  AddLogs(command, arguments->logs, Need::Required);
  command.add_option("--output", arguments->output, "File to write; - is standard output")->required();
  Does(command, status, arguments, WriteReport);
}

void AddStatus(CLI::App& program, AdminStatus& status) {
  CLI::App& command = *program.add_subcommand("status", "Show the state of every copied table");
  const auto arguments = std::make_shared<StatusArguments>();
  AddDatabase(command, *arguments);
  AddLogs(command, arguments->logs, Need::Optional);
  command.add_option("--max-age", arguments->maxAge, "How old a last update may be, such as 26h or 3days");
  AddJson(command, arguments->form);
  command.footer(
      command.get_footer() +
      "\nExit status: 1 if something needs attention: a table that is missing or in use without a run, a last\n"
      "run that failed, a last update older than --max-age, a copied table without a control record.");
  Does(command, status, arguments, Status);
}

void AddVerify(CLI::App& program, AdminStatus& status) {
  CLI::App& command = *program.add_subcommand(
      "verify", "Compare local tables with what the ERP lists and print every row that differs");
  const auto arguments = std::make_shared<VerifyArguments>();
  AddDatabase(command, *arguments);
  AddTables(command, arguments->tables, arguments->all, "Table codes, such as tsmdm030");
  AddComponent(command, arguments->component, Need::Required);
  command.add_flag("--after-changed", arguments->afterChanged,
                   "Leave out columns that a copy by change does not bring");
  AddJson(command, arguments->form);
  AddQuiet(command, arguments->quiet);
  command.footer(
      command.get_footer() +
      "\nThe ERP's rows are kept in a temporary file in $TMPDIR or /tmp. Exit status 1: there are differences.\n"
      "Changes in the ERP during the comparison and columns that a copy by change leaves unchanged count as\n"
      "differences.");
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

std::vector<std::string> CommandNames(const CLI::App& program) {
  std::vector<std::string> names;
  for (const CLI::App* command : program.get_subcommands([](const CLI::App*) { return true; })) {
    names.push_back(command->get_name());
  }
  return names;
}

// Returns the word that stands in the place of the command, if there is no such command.
std::optional<std::string> UnknownCommand(const CLI::App& program, const std::vector<std::string>& given) {
  const auto word =
      std::find_if(given.begin(), given.end(), [](const std::string& argument) { return !argument.starts_with('-'); });
  const std::vector<std::string> names = CommandNames(program);
  const bool isKnown = word == given.end() || std::find(names.begin(), names.end(), *word) != names.end();
  return isKnown ? std::nullopt : std::optional(*word);
}

// Does not repeat the word, because it may be a connection text.
void ReportUnknownCommand(const CLI::App& program, const std::string& word) {
  const std::vector<std::string> names = CommandNames(program);
  const std::string nearest = NearestName(word, names);
  std::cerr << (nearest.empty()
                    ? fmt::format("There is no such command. The commands are {}.\n", fmt::join(names, ", "))
                    : fmt::format("There is no such command. Did you mean \"{}\"?\n", nearest))
            << "Run with --help for more information.\n";
}

// Repeats only the names of options, because other arguments may be a connection text or a piece of one.
void ReportExtras(const CLI::App& program) {
  for (const std::string& extra : program.remaining(true)) {
    const bool option = extra.starts_with('-');
    std::cerr << (option ? fmt::format("There is no option {}.\n", extra.substr(0, extra.find('=')))
                         : "There is one argument too many.\n");
  }
  std::cerr << "Run with --help for more information.\n";
}

}  // namespace

AdminStatus RunCommandLine(const std::vector<std::string>& given) {
  AdminStatus status = AdminStatus::Done;
  const SettingsFile settings = SettingsFile::FromEnvironment();
  settings.ApplyToEnvironment();
  CLI::App program("Administers the local database of QMX Data Copy", "qmxadmin");
  program.require_subcommand(1);
  program.set_version_flag("--version", "qmxadmin " QMX_VERSION);
  program.footer(
      fmt::format("Exit status: 0 done, no problem found; 1 a problem was found, or nothing was changed\n"
                  "on request; 2 the command failed or its arguments are wrong (see standard error).\n"
                  "\n"
                  "Settings: QMX_CONNECTION, QMX_DATABASE, QMX_LOGS and QMX_COMPONENT replace arguments.\n"
                  "They come from the environment or from {}. Arguments take\n"
                  "precedence over the environment, and the environment over the file. QMX_SETTINGS\n"
                  "names another file; if it is empty, no file is read.",
                  UsualSettingsFile()));
  AddCommands(program, status);

  if (const std::optional<std::string> unknown = UnknownCommand(program, given)) {
    ReportUnknownCommand(program, *unknown);
    return AdminStatus::Failed;
  }
  for (const std::string& problem : settings.Problems()) std::cerr << problem << '\n';
  const bool needsDatabase = !given.empty() && TakesDatabase(program, given.front());
  std::vector<std::string> arguments = needsDatabase ? WithEnvironment(given) : given;
  std::reverse(arguments.begin(), arguments.end());  // the library reads them from the end
  try {
    program.parse(std::move(arguments));
  } catch (const CLI::ExtrasError&) {
    ReportExtras(program);
    return AdminStatus::Failed;
  } catch (const CLI::RequiredError& missing) {
    ReportMissing(missing, settings);
    return AdminStatus::Failed;
  } catch (const CLI::ParseError& end) {  // --help ends here as well
    return program.exit(end) == 0 ? AdminStatus::Done : AdminStatus::Failed;
  }
  return status;
}

}  // namespace qmx
