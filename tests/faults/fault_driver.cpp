#include "tests/faults/fault_driver.h"

#include <algorithm>
#include <csignal>
#include <filesystem>

#include "tests/support/odbc_faults/odbc_faults.h"

namespace qmx::test::faults {
namespace {

constexpr std::chrono::seconds kLimit(60);  // for one run
constexpr const char* kSilence = "1";       // second, after which the program gives up a silent server
constexpr int kTraced = 5;                  // one run of so many has a trace
constexpr int kSlow = 10;                   // so many times fewer runs of a slow kind
constexpr std::size_t kShown = 1500;        // bytes of standard error, beside a finding

// The sandbox's manifest with the faulty library in place of its own.
std::string FaultyManifest() {
  std::string manifest = ReadFile(std::string(SANDBOX_COMPONENTS) + "/orvan_sandbox.component");
  const std::string line = "library = orvan_sandbox.so";
  return manifest.replace(manifest.find(line), line.size(), std::string("library = ") + FAULTY_COMPONENT);
}

// Has a folder for temporary files of its own.
struct Program : CopyProcesses {
  Program(const TableStates& states, const std::string& connectionText, const std::string& database,
          const CopyKind& copy)
      : CopyProcesses(states.Erp(), connectionText, database) {
    std::filesystem::create_directory(Folder() / "tmp");
    Environment("TMPDIR", (Folder() / "tmp").string());
    Environment("QMX_COPY", copy.isWhole ? "whole" : "");
  }
};

}  // namespace

FaultDriver::FaultDriver(const std::string& system)
    : system_(system),
      table_(system == "SQLite" ? TableInAFile(place_.Path().string(), states_.Old())
                                : TableOnAServer(system, states_.Old())) {
  std::filesystem::create_directory(place_ / "components");
  WriteFile(place_ / "components/orvan_sandbox.component", FaultyManifest());
}

bool FaultDriver::Has(const FaultKind& kind) const {
  return kind.systems & (system_ == "SQLite" ? kSqlite : system_ == "PostgreSQL" ? kPostgresql : kMariadb);
}

Outcomes FaultDriver::Try(const FaultKind& kind, const CopyKind& copy, int runs) {
  Outcomes outcomes;
  Fault fault{kind, copy, 0, false};
  outcomes.findings = Judged(fault, outcomes);  // none strikes
  if (!outcomes.findings.empty()) return outcomes;
  outcomes.runs = 0;

  const long calls = made_;
  const long tries = std::min<long>(kind.isSlow ? 1 + (runs - 1) / kSlow : runs, calls);
  for (long number = 0; number < tries; ++number) {
    const long begin = calls * number / tries;
    const long end = calls * (number + 1) / tries;
    fault.first = 1 + begin + static_cast<long>(dice_() % static_cast<unsigned long>(end - begin));
    fault.isTraced = number % kTraced == kTraced - 1;
    for (std::string& finding : Judged(fault, outcomes)) outcomes.findings.push_back(std::move(finding));
  }
  return outcomes;
}

std::vector<std::string> FaultDriver::Judged(const Fault& fault, Outcomes& outcomes) {
  table_->BeginAnew(fault.copy.method);
  Left left = RunWith(fault);
  ++outcomes.runs;
  outcomes.struck += left.isStruck ? 1 : 0;
  table_->LookAt(left);

  const Circumstances run{.states = &states_.Of(fault.copy.method),
                          .isWhole = fault.copy.isWhole,
                          .ending = fault.kind.ending,
                          .oldLutm = kOldTime,
                          .password = table_->Password()};
  std::vector<std::string> findings;
  for (const std::string& finding : Findings(left, run)) findings.push_back(Shown(fault, left, finding));

  if (left.inUse == "1") {
    const Left refused = RunWithout(fault.copy);
    if (refused.status != 3) findings.push_back(Shown(fault, refused, "the next run was not refused"));
    table_->Release();
  }
  Left next = RunWithout(fault.copy);
  table_->LookAt(next);
  for (const std::string& finding : FindingsOfTheNextRun(next, run)) findings.push_back(Shown(fault, next, finding));
  return findings;
}

Left FaultDriver::RunWith(const Fault& fault) {
  const FaultKind& kind = fault.kind;
  const std::string numbers = std::to_string(fault.first) + " " + std::to_string(kind.count) + " ";
  std::unique_ptr<FaultyLine> line;
  std::string connection = table_->ConnectionText();
  if (kind.maker == Maker::Odbc) connection = ThroughFaultyDriver(connection, system_);
  if (kind.maker == Maker::Line) {
    line = std::make_unique<FaultyLine>(*table_, kind.calls, kind.action, fault.first);
    connection = line->ConnectionText();
  }

  Program program(states_, connection, table_->Database(), fault.copy);
  calls_.Reset();
  program.Environment("QMX_FAULTY_CALLS_COUNT", calls_.File());
  if (fault.isTraced) program.Environment("QMX_TRACE", (program.Folder() / "log/trace").string());
  if (kind.maker == Maker::Calls) {
    program.Environment("LD_PRELOAD", FAULTY_CALLS);
    program.Environment("QMX_FAULTY_CALLS", kind.calls + " " + numbers + kind.action + " " + kind.files);
  } else if (kind.maker == Maker::Component) {
    program.Environment("QMX_COMPONENTS", place_ / "components" + ":" + SANDBOX_COMPONENTS);
    program.Environment("QMX_FAULTY_COMPONENT", numbers + SANDBOX_COMPONENTS + "/orvan_sandbox.so");
  } else if (kind.maker == Maker::Odbc) {
    program.Environment("QMX_ODBC_FAULT", kind.calls + " " + numbers + kind.action);
  } else if (kind.isSlow) {
    program.Environment("QMX_SILENCE_LIMIT", kSilence);
  }

  Left left = EndOf(program);
  made_ = line ? line->Made() : calls_.Made();
  left.isStruck = (line ? line->Struck() : calls_.Struck()) > 0;
  line.reset();
  table_->EndSessions();
  return left;
}

Left FaultDriver::RunWithout(const CopyKind& copy) {
  return EndOf(Program(states_, table_->ConnectionText(), table_->Database(), copy));
}

Left FaultDriver::EndOf(const CopyProcesses& program) const {
  const auto run = program.Start(kTable);
  const auto end = std::chrono::steady_clock::now() + kLimit;
  while (!run->HasEnded() && std::chrono::steady_clock::now() < end)
    std::this_thread::sleep_for(std::chrono::microseconds(200));
  Left left;
  left.hasEnded = run->HasEnded();
  if (!left.hasEnded) run->Signal(SIGKILL);
  const Process ended = run->Wait();
  left.status = ended.status;
  left.err = ended.err;
  LookAtFiles(program, left);
  return left;
}

void FaultDriver::LookAtFiles(const CopyProcesses& program, Left& left) const {
  namespace fs = std::filesystem;
  for (const auto& entry : fs::recursive_directory_iterator(program.Folder())) {
    if (!entry.is_regular_file()) continue;
    const std::string name = entry.path().filename().string();
    left.files.push_back(name);
    left.texts[name] = ReadFile(entry.path());
  }
  for (const auto& entry : fs::directory_iterator(place_.Path())) {
    const std::string name = entry.path().filename().string();
    if (name != "count" && name != "components") left.files.push_back(name);
  }
}

std::string FaultDriver::Shown(const Fault& fault, const Left& left, const std::string& finding) const {
  return fault.kind.name + " " + std::to_string(fault.first) + (fault.isTraced ? " with a trace" : "") + ", " +
         fault.copy.name + ", " + system_ + ": " + finding + " [status " + std::to_string(left.status) + ", in_use " +
         left.inUse + ", lutm " + left.lutm + ", " + std::to_string(left.rows.size()) + " rows] " +
         left.err.substr(0, kShown);
}

}  // namespace qmx::test::faults
