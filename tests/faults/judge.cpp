#include "tests/faults/judge.h"

#include <algorithm>
#include <csignal>
#include <set>
#include <sstream>

namespace qmx::test::faults {
namespace {

constexpr int kSignal = 128;  // and a signal's number: the status of a process that a signal ended

class Case {
 public:
  Case(const Left& left, const Circumstances& run) : left_(left), run_(run) {}

  std::vector<std::string> Findings() {
    JudgeRows();
    JudgeEnd();
    JudgeFlag();
    JudgeMessages();
    JudgeFiles();
    return std::move(findings_);
  }

  std::vector<std::string> FindingsOfTheNextRun() {
    if (left_.status != 0) Find("ended with status " + std::to_string(left_.status));
    if (!left_.err.empty()) Find("printed an error");
    if (left_.rows != New()) Find("did not make the table right");
    if (left_.inUse != "0") Find("left the table in progress");
    if (HasOldTime()) Find("left the old last update time");
    for (const std::string& file : left_.files) {
      if (file.ends_with("-wal") || file.ends_with("-shm")) Find("left the file " + file);
    }
    JudgeFiles();
    for (std::string& finding : findings_) finding = "the next run " + finding;
    return std::move(findings_);
  }

 private:
  const Rows& Old() const { return run_.states->front(); }
  const Rows& New() const { return run_.states->back(); }
  bool HasOldTime() const { return left_.lutm == run_.oldLutm; }
  bool IsUntouched() const { return left_.rows == Old() && HasOldTime(); }
  bool IsComplete() const { return left_.rows == New() && !HasOldTime(); }

  // The first difference from the rows of a complete copy.
  std::string FromNew() const {
    const auto [left, right] = std::ranges::mismatch(left_.rows, New());
    return "there is " + (left == left_.rows.end() ? "none" : *left) + " where the ERP has " +
           (right == New().end() ? "none" : *right);
  }

  void Find(std::string finding) { findings_.push_back(std::move(finding)); }

  void JudgeRows() {
    if (left_.integrity != "ok") Find("the database is damaged: " + left_.integrity);
    if (std::ranges::find(*run_.states, left_.rows) == run_.states->end())
      Find(std::to_string(left_.rows.size()) + " rows are no state that a copy goes through; " + FromNew());
    if (run_.isWhole && !IsUntouched() && !IsComplete()) Find("rows and last update time are not all old or all new");
    if (!HasOldTime() && left_.rows != New()) Find("the last update time is ahead of the rows");
  }

  void JudgeEnd() {
    if (!left_.hasEnded) return Find("it did not end by itself");
    if (left_.status > kSignal) {
      if (!MayEndSo()) Find("it crashed by signal " + std::to_string(left_.status - kSignal));
      return;
    }
    if (left_.status > 2) return Find("it ended with status " + std::to_string(left_.status));
    if (left_.status == 0 && !IsComplete()) Find("status 0 without a complete copy");
    if (left_.status == 1 && !HasOldTime() && left_.rows != New()) Find("status 1, and the last update time moved");
    if (left_.status != 0 && left_.err.empty()) Find("it failed without a word on standard error");
    if (left_.status == 0 && !IsNoError(left_.err)) Find("status 0, and an error on standard error");
  }

  void JudgeFlag() {
    const bool wasKilled = !left_.hasEnded || left_.status > kSignal;
    if (left_.inUse != "0" && left_.inUse != "1") Find("in_use is " + left_.inUse);
    if (left_.inUse == "1" && !wasKilled && left_.status != 2)
      Find("status " + std::to_string(left_.status) + ", and the table is still in progress");
    if (left_.inUse == "0" && wasKilled && !IsUntouched() && !IsComplete())
      Find("killed within its work, and the table is not in progress");
  }

  void JudgeMessages() {
    const auto board = left_.texts.find("board");
    if (board == left_.texts.end()) return;
    const bool saysComplete = board->second.find("Copy result.") != std::string::npos;
    const bool saysFailed = board->second.find("FAILED") != std::string::npos;
    if (saysComplete && saysFailed) Find("the scheduling server heard of a complete and of a failed copy");
    if (saysComplete && left_.rows != New()) Find("the scheduling server heard of a complete copy");
    if (left_.status == 1 && saysComplete) Find("status 1, and the scheduling server heard of a complete copy");
  }

  void JudgeFiles() {
    static const std::set<std::string> known = {"local.db",         "local.db-wal",  "local.db-shm",
                                                "tsmdm030.log",     "evtlog.txt",    "board",
                                                "QMXDBSynclog.txt", "QMXRuns.jsonl", "trace"};
    for (const std::string& file : left_.files) {
      if (!known.contains(file)) Find("left the file " + file);
    }
    if (run_.password.empty()) return;
    if (left_.err.find(run_.password) != std::string::npos) Find("showed the password on standard error");
    for (const auto& [file, text] : left_.texts) {
      if (text.find(run_.password) != std::string::npos) Find("wrote the password into " + file);
    }
  }

  bool MayEndSo() const {
    switch (run_.ending) {
      case Ending::ByItself:
        return false;
      case Ending::Killed:
        return left_.status == kSignal + SIGKILL;
      case Ending::Interrupted:
        return left_.status == kSignal + SIGTERM && (IsUntouched() || IsComplete()) && left_.inUse == "0";
    }
    return false;
  }

  // A copy goes on where its run record or its trace cannot be written, and says so. A signal may come too late.
  static bool IsNoError(const std::string& err) {
    std::istringstream lines(err);
    for (std::string line; std::getline(lines, line);) {
      const auto begins = [&](const char* text) { return line.starts_with(text); };
      const char* const known[] = {"SIGTERM: ",
                                   "error 75, Run record: ",
                                   "error 61, Run record: ",
                                   "error 57, Run record: ",
                                   "The trace",
                                   "The run is not recorded",
                                   "The end of the run is not recorded"};
      if (std::ranges::none_of(known, begins)) return false;
    }
    return true;
  }

  const Left& left_;
  const Circumstances& run_;
  std::vector<std::string> findings_;
};

}  // namespace

std::vector<std::string> Findings(const Left& left, const Circumstances& run) { return Case(left, run).Findings(); }

std::vector<std::string> FindingsOfTheNextRun(const Left& left, const Circumstances& run) {
  return Case(left, run).FindingsOfTheNextRun();
}

}  // namespace qmx::test::faults
