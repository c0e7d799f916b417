#include "tests/faults/fault_driver.h"

#include <algorithm>
#include <csignal>
#include <filesystem>

namespace qmx::test::faults {
namespace {

constexpr std::chrono::seconds kLimit(60);  // for one run
constexpr int kTraced = 5;                  // one run of so many has a trace
constexpr std::size_t kShown = 1500;        // bytes of standard error, beside a finding

// The sandbox's manifest with the faulty library in place of its own.
std::string FaultyManifest() {
  std::string manifest = ReadFile(std::string(SANDBOX_COMPONENTS) + "/orvan_sandbox.component");
  const std::string line = "library = orvan_sandbox.so";
  return manifest.replace(manifest.find(line), line.size(), std::string("library = ") + FAULTY_COMPONENT);
}

void Empty(const std::filesystem::path& folder) {
  std::filesystem::remove_all(folder);
  std::filesystem::create_directory(folder);
}

}  // namespace

FaultDriver::FaultDriver()
    : table_(TableInAFile(place_.Path().string(), states_.Old())),
      program_(states_.Erp(), table_->ConnectionText(), "local"),
      calls_(place_ / "count") {
  std::filesystem::create_directory(place_ / "components");
  WriteFile(place_ / "components/orvan_sandbox.component", FaultyManifest());
  program_.Environment("TMPDIR", (program_.Folder() / "tmp").string());
}

Outcomes FaultDriver::Try(const FaultKind& kind, const CopyKind& copy, int runs) {
  Outcomes outcomes;
  Fault fault{kind, copy, 0, false};
  outcomes.findings = Judged(fault, outcomes);  // none strikes
  if (!outcomes.findings.empty()) return outcomes;
  outcomes.runs = 0;

  const long calls = calls_.Made();
  const long tries = std::min<long>(runs, calls);
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
  Prepare(fault);
  Left left = Run();
  ++outcomes.runs;
  outcomes.struck += calls_.Struck() > 0 ? 1 : 0;
  table_->LookAt(left);

  const Circumstances run{.states = &states_.Of(fault.copy.method),
                          .isWhole = fault.copy.isWhole,
                          .ending = fault.kind.ending,
                          .oldLutm = kOldTime,
                          .password = table_->Password()};
  std::vector<std::string> findings;
  for (const std::string& finding : Findings(left, run)) findings.push_back(Shown(fault, left, finding));

  WithoutFaults(fault.copy);
  if (left.inUse == "1") {
    const Left refused = Run();
    if (refused.status != 3) findings.push_back(Shown(fault, refused, "the next run was not refused"));
    table_->Release();
  }
  Left next = Run();
  table_->LookAt(next);
  for (const std::string& finding : FindingsOfTheNextRun(next, run)) findings.push_back(Shown(fault, next, finding));
  return findings;
}

void FaultDriver::Prepare(const Fault& fault) {
  table_->BeginAnew(fault.copy.method);
  calls_.Reset();
  WithoutFaults(fault.copy);
  const std::string numbers = std::to_string(fault.first) + " " + std::to_string(fault.kind.count) + " ";
  program_.Environment("QMX_FAULTY_CALLS_COUNT", calls_.File());
  if (fault.isTraced) program_.Environment("QMX_TRACE", (program_.Folder() / "log/trace").string());
  if (fault.kind.maker == Maker::Calls) {
    program_.Environment("LD_PRELOAD", FAULTY_CALLS);
    program_.Environment("QMX_FAULTY_CALLS",
                         fault.kind.calls + " " + numbers + fault.kind.action + " " + fault.kind.files);
  } else {
    program_.Environment("QMX_COMPONENTS", place_ / "components" + ":" + SANDBOX_COMPONENTS);
    program_.Environment("QMX_FAULTY_COMPONENT", numbers + SANDBOX_COMPONENTS + "/orvan_sandbox.so");
  }
}

void FaultDriver::WithoutFaults(const CopyKind& copy) {
  program_.Environment("LD_PRELOAD", "");
  program_.Environment("QMX_FAULTY_CALLS", "");
  program_.Environment("QMX_COMPONENTS", SANDBOX_COMPONENTS);
  program_.Environment("QMX_TRACE", "");
  program_.Environment("QMX_COPY", copy.isWhole ? "whole" : "");
}

Left FaultDriver::Run() {
  Empty(program_.Folder() / "log");
  Empty(program_.Folder() / "tmp");
  std::filesystem::remove(program_.Folder() / "board");
  const auto run = program_.Start(kTable);
  const auto end = std::chrono::steady_clock::now() + kLimit;
  while (!run->HasEnded() && std::chrono::steady_clock::now() < end)
    std::this_thread::sleep_for(std::chrono::microseconds(200));
  Left left;
  left.hasEnded = run->HasEnded();
  if (!left.hasEnded) run->Signal(SIGKILL);
  const Process ended = run->Wait();
  left.status = ended.status;
  left.err = ended.err;
  LookAtFiles(left);
  return left;
}

void FaultDriver::LookAtFiles(Left& left) const {
  namespace fs = std::filesystem;
  for (const auto& entry : fs::recursive_directory_iterator(program_.Folder())) {
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
  return fault.kind.name + " " + std::to_string(fault.first) + ", " + fault.copy.name + ": " + finding + " [status " +
         std::to_string(left.status) + ", in_use " + left.inUse + ", lutm " + left.lutm + ", " +
         std::to_string(left.rows.size()) + " rows] " + left.err.substr(0, kShown);
}

}  // namespace qmx::test::faults
