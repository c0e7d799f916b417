// The process entry: builds the platform from its adapters, runs Main, and returns the run's exit status.
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/components/installed_components.h"
#include "platform/database.h"
#include "platform/drivers/local_drivers.h"
#include "platform/error.h"
#include "platform/join.h"
#include "platform/modDeclarations.h"
#include "platform/platform.h"
#include "platform/progress/progress.h"
#include "platform/run_records/record_fields.h"
#include "platform/run_records/run_record.h"
#include "platform/run_records/sudden_end.h"
#include "platform/system/clock.h"
#include "platform/system/crash_report.h"
#include "platform/system/end_line.h"
#include "platform/system/entry.h"
#include "platform/system/environment.h"
#include "platform/system/event_log.h"
#include "platform/system/exit_guard.h"
#include "platform/system/failure_report.h"
#include "platform/system/further_components.h"
#include "platform/system/interrupt_signals.h"
#include "platform/system/paths.h"
#include "platform/system/text_files.h"
#include "platform/trace/database_trace.h"
#include "platform/trace/trace.h"
#include "platform/trace/traced_components.h"
#include "startup/modStartUp.h"
#include "startup/silent_run.h"
#include "startup/usage.h"

namespace {

using qmx::ExitStatus;

constexpr const char* kMode = "QMX_COPY";

std::string Variable(const std::string& name) { return qmx::EnvironmentVariable(name).value_or(""); }

// Whether the environment asks for what the variable's only value stands for. Raises 5 for any other value.
bool IsRequested(const std::string& variable, const std::string& onlyValue) {
  const std::string value = Variable(variable);
  if (value.empty() || value == onlyValue) return !value.empty();
  throw qmx::Error(qmx::errors::kInvalidCall, "qmxdatacopy",
                   variable + " is \"" + value + "\". It may be \"" + onlyValue + "\" or empty.");
}

ExitStatus Answer(const std::string& text) {
  const bool written = std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0;
  return written ? ExitStatus::Complete : ExitStatus::StartUpFailed;
}

ExitStatus Run(const std::string& commandLine, int listener, qmx::modDeclarations& declarations,
               qmx::FailureReport& failures, qmx::RunRecord* record) {
  const qmx::InterruptSignals signals(
      "the copy ends at its next call to the ERP. A second signal ends it at once and leaves the table in progress.");
  qmx::SystemClock clock;
  qmx::SystemTextFiles files;
  qmx::SystemEventLog eventLog(clock, files);
  qmx::InstalledComponents components(clock, qmx::ComponentFolders(), qmx::ComponentsOfTheSystem());
  qmx::Watchdog watchdog(qmx::SilenceLimits::FromEnvironment(), [&](const qmx::Error& silence) {
    qmx::EndSilentRun(commandLine, listener, silence, failures, record);
  });
  qmx::LocalDrivers drivers({}, watchdog);

  const std::unique_ptr<qmx::Trace> trace = qmx::Trace::FromEnvironment();
  std::optional<qmx::TracedComponents> tracedComponents;
  std::optional<qmx::DatabaseTrace> databaseTrace;
  std::vector<qmx::DatabaseObserver*> observers;
  if (trace) {
    tracedComponents.emplace(components, *trace);
    observers.push_back(&databaseTrace.emplace(*trace));
  }
  qmx::Components& seenComponents = trace ? static_cast<qmx::Components&>(*tracedComponents) : components;

  const std::string table = qmx::TableCode(commandLine);
  qmx::EndLine::SetTable(table);
  const std::unique_ptr<qmx::Progress> progress = qmx::Progress::FromEnvironment(table);
  if (progress) observers.push_back(&progress->Counter());
  qmx::ReportAfterProgress clearedFailures(failures, progress.get());

  qmx::Database database(drivers.All(), qmx::DatabaseObservers(observers));
  qmx::Platform platform{clock, files, eventLog, seenComponents, database, clearedFailures};

  declarations.copiesInFull = IsRequested("QMX_METHOD", "full");
  declarations.copiesWhole = IsRequested(kMode, qmx::run_records::kWhole);
  try {
    qmx::Main(platform, declarations, commandLine);
  } catch (...) {
    declarations.facts.retries = drivers.Retries();
    throw;
  }
  declarations.facts.retries = drivers.Retries();
  return declarations.exitStatus;
}

// Reports the exception in flight. Without memory for its text it prints a shorter one.
void ReportStartUpFailure(qmx::FailureReport& failures) noexcept {
  try {
    failures.Report(qmx::CurrentError());
    std::fputs(qmx::Usage().c_str(), stderr);
  } catch (...) {
    std::fputs("Out of memory: the program could not start.\n", stderr);
  }
}

// Empty where the mode is none.
std::string ModeForRecord() {
  const std::string mode = Variable(kMode);
  if (mode.empty()) return qmx::run_records::kByRow;
  return mode == qmx::run_records::kWhole ? mode : "";
}

// Null if the command line names no folder for it.
std::unique_ptr<qmx::RunRecord> BeginRecord(const std::string& commandLine, qmx::FailureReport& failures) {
  const std::optional<qmx::RunRequest> request = qmx::ReadRunRequest(commandLine);
  if (!request) return nullptr;
  const qmx::RunStart start{qmx::NativePath(request->logDirectory + "\\" + qmx::run_records::kFileName),
                            qmx::VersionNumber(),
                            request->table,
                            request->connection,
                            request->statusRequest,
                            ModeForRecord()};
  auto record = std::make_unique<qmx::RunRecord>(start, failures);
  qmx::EndLine::SetListener(qmx::SuddenEnd::Write);
  return record;
}

ExitStatus RecordedRun(const std::string& commandLine, int listener, qmx::FailureReport& failures) {
  const std::unique_ptr<qmx::RunRecord> record = BeginRecord(commandLine, failures);
  qmx::RecordedFailures recorded(failures, record.get());
  qmx::modDeclarations declarations;
  ExitStatus status = ExitStatus::StartUpFailed;
  try {
    status = Run(commandLine, listener, declarations, recorded, record.get());
  } catch (...) {
    ReportStartUpFailure(recorded);
  }
  if (record) record->End(static_cast<int>(status), declarations.facts);
  return status;
}

}  // namespace

int qmx::ProgramMain(std::span<const char* const> words) {
  int listener = qmx::Progress::kNobody;
  qmx::StandardErrorReport failures;
  ExitStatus status = ExitStatus::StartUpFailed;
  try {
    listener = qmx::Progress::ListenerFromEnvironment();  // before another file can get its number
    qmx::GuardExit();
    qmx::ReportCrashes();
    const auto given = words.subspan(words.empty() ? 0 : 1);
    const std::vector<std::string> arguments(given.begin(), given.end());
    if (arguments == std::vector<std::string>{"--help"}) {
      status = Answer(qmx::Help());
    } else if (arguments == std::vector<std::string>{"--version"}) {
      status = Answer(qmx::Version());
    } else {
      status = RecordedRun(qmx::Joined(arguments, " "), listener, failures);
    }
  } catch (...) {
    ReportStartUpFailure(failures);
    status = ExitStatus::StartUpFailed;
  }
  qmx::Progress::TellEnd(listener, static_cast<int>(status));
  return qmx::EndOfMain(static_cast<int>(status));
}
