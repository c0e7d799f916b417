#include "tools/qmxadmin/options.h"

#include <fmt/format.h>

#include <iostream>

#include "platform/system/environment.h"

namespace qmx {
namespace {

constexpr const char* kLogs = "--logs";
constexpr const char* kComponent = "--component";

void AddSetting(CLI::App& command, const char* name, const char* variable, const std::string& description,
                std::string& value, Need need) {
  value = EnvironmentVariable(variable).value_or("");
  command.add_option(name, value, fmt::format("{}; default: {}", description, variable))
      ->required(need == Need::Required && value.empty());
}

}  // namespace

void AddDatabase(CLI::App& command, DatabaseArguments& arguments) {
  command.add_option(kConnection, arguments.connection, "Such as \"Provider=SQLite;Data Source=FILE\"")->required();
  command.add_option(kDatabase, arguments.database, "Default database; \"\" for the connection's own")->required();
  command.footer(
      "CONNECTION is the connection text of the local database. If QMX_CONNECTION is set\n"
      "in the environment or in the settings file, omit both CONNECTION and DATABASE to\n"
      "keep passwords off the command line. The default database is then QMX_DATABASE.");
}

void AddJson(CLI::App& command, OutputForm& form) {
  command.add_flag_callback(
      "--json", [&form] { form = OutputForm::Json; }, "Print JSON");
}

void AddQuiet(CLI::App& command, bool& quiet) { command.add_flag("--quiet", quiet, "Print problems only"); }

void AddLogs(CLI::App& command, std::string& logs, Need need) {
  AddSetting(command, kLogs, "QMX_LOGS", "Log folder, the copies' LOGDIR", logs, need);
}

void AddComponent(CLI::App& command, std::string& component, Need need) {
  AddSetting(command, kComponent, "QMX_COMPONENT", "The ERP's business component, \"COMPONENT1, COMPONENT2\"",
             component, need);
}

void AddTables(CLI::App& command, std::vector<std::string>& tables, bool& all, const std::string& description) {
  command.add_option("TABLE", tables, description);
  command.add_flag("--all", all, "All tables");
}

void ReportMissing(const CLI::RequiredError& error, const SettingsFile& settings) {
  const std::string what = error.what();
  const std::string where = settings.Path().empty() ? "" : fmt::format(" or in {}", settings.Path());
  std::cerr << fmt::format("{}.", what);
  for (const auto& [name, variable] :
       {std::pair{kConnection, "QMX_CONNECTION"}, {kLogs, "QMX_LOGS"}, {kComponent, "QMX_COMPONENT"}}) {
    if (what.starts_with(name))
      std::cerr << fmt::format(" {} can be set in the environment{} instead.", variable, where);
  }
  std::cerr << '\n';
  if (what.starts_with(kComponent) && EnvironmentVariable("QMX_COMPONENTS")) {
    std::cerr << "QMX_COMPONENTS is set, but it names the folders of the manifests. The ERP's business component is "
                 "QMX_COMPONENT, without an S.\n";
  }
  if (!settings.Unreadable().empty()) std::cerr << settings.Unreadable() << '\n';
  std::cerr << "Run with --help for more information.\n";
}

}  // namespace qmx
