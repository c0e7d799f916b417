#include "platform/run_records/run_record.h"

#include <array>
#include <cstdio>
#include <cstring>

#include "platform/connection_text.h"
#include "platform/error.h"
#include "platform/json_line.h"
#include "platform/run_records/record_fields.h"
#include "platform/run_records/record_time.h"
#include "platform/run_records/run_number.h"
#include "platform/run_records/sudden_end.h"
#include "platform/system/clock.h"
#include "platform/system/process_identity.h"
#include "platform/system/write_all.h"

namespace qmx {
namespace {

using namespace run_records;

// Shorter values occur within too many words.
constexpr std::size_t kShortestSecret = 4;

constexpr const char* OutcomeOf(int status) {
  constexpr std::array kOutcomes = {kComplete, kFailed, kError, kRefused, kNothing};
  return status >= 0 && status < static_cast<int>(kOutcomes.size()) ? kOutcomes[static_cast<std::size_t>(status)]
                                                                    : kError;
}

std::vector<std::string> SecretsOf(const std::string& connection) {
  try {
    return ConnectionText(connection).Secrets();
  } catch (const Error&) {  // an unreadable text has no values
    return {};
  }
}

std::string CodeOf(const std::string& table) { return table.substr(0, table.find('=')); }

// A comma in a password shifts the pieces after it, so a text that is no table code may be part of a connection text.
bool MayBeASecret(const std::string& table) { return table.find_first_of(";\"'{}") != std::string::npos; }

// An empty text is null.
void AddText(JsonLine& record, const char* name, const std::string& text) {
  if (text.empty()) {
    record.AddNull(name);
  } else {
    record.Add(name, text);
  }
}

void AddCounts(JsonLine& record, const std::optional<RunFacts::Counts>& counts) {
  const auto add = [&](const char* name, std::int32_t RunFacts::Counts::*count) {
    record.Add(name, counts ? std::optional<std::int64_t>((*counts).*count) : std::nullopt);
  };
  add(kInserted, &RunFacts::Counts::inserted);
  add(kUpdated, &RunFacts::Counts::updated);
  add(kDeleted, &RunFacts::Counts::deleted);
}

std::string MomentText(DateTime moment) {
  const std::string text = moment.ToText();
  return moment == moment.DatePart() ? text + " 00:00:00" : text;
}

long OffsetAt(RecordTime::Moment moment) { return OffsetFromUtc(std::chrono::system_clock::to_time_t(moment)); }

std::string LocalTime(RecordTime::Moment moment) { return std::string(RecordTime(moment, OffsetAt(moment)).Text()); }

}  // namespace

template <typename Step>
void RunRecord::Try(const char* loss, Step&& step) noexcept {
  try {
    std::string reason;
    try {
      return step();
    } catch (const Error& failure) {
      reason = failure.Description();
    }
    failures_.Report(Error(errors::kPathFileAccess, "Run record", std::string(loss) + ": " + reason));
  } catch (...) {
    std::fputs("The run is not recorded: out of memory.\n", stderr);
  }
}

RunRecord::RunRecord(const RunStart& start, FailureReport& failures) noexcept : failures_(failures) {
  Try("The run is not recorded", [&] {
    path_ = start.path;
    secrets_ = SecretsOf(start.connection);
    if (MayBeASecret(start.table)) secrets_.insert(secrets_.end(), {start.table, CodeOf(start.table)});
    table_ = WithoutSecrets(start.table);
    run_ = NewRunNumber();
    Open(start.path);
    WriteStart(start);
  });
}

RunRecord::~RunRecord() { SuddenEnd::Disarm(); }

void RunRecord::Open(const std::string& path) {
  file_ = OpenPlainFile(path, FileUse::Append);
  if (file_.stream) return;
  throw Error(errors::kPathFileAccess, "Run record",
              "\"" + path + "\" cannot be written: " +
                  (file_.reason.empty() ? std::strerror(file_.code) : "it " + file_.reason) + ".");
}

JsonLine RunRecord::Beginning(const char* record) const {
  return JsonLine::Object().Add(kFormat, kVersion).Add(kRecord, record).Add(kRun, run_).Add(kTable, table_);
}

void RunRecord::WriteStart(const RunStart& start) {
  const ProcessIdentity process = ThisProcess();
  const RecordTime::Moment now = std::chrono::system_clock::now();
  JsonLine record = Beginning(kStart);
  record.Add(kTime, LocalTime(now)).Add(kHost, process.host).Add(kProcess, process.process);
  record.Add(kProcessStart, process.startTicks);
  AddText(record, kBoot, process.boot);
  record.Add(kUser, process.user).Add(kUserNumber, process.userNumber).Add(kProgram, start.version);
  record.Add(kRequest, start.request);
  AddText(record, kMode, start.mode);
  Append(record);

  const std::string end = "\n" + Beginning(run_records::kEnd).Unclosed() + ",\"" + kTime + "\":";
  SuddenEnd::Arm(file_.descriptor, end, OffsetAt(now), table_ == start.table);
}

void RunRecord::Append(const JsonLine& record) {
  const int code = WriteAtOnce(file_.descriptor, "\n" + record.Text());
  if (code == 0) return;
  file_.stream.reset();
  throw Error(errors::kDeviceIo, "Run record", "\"" + path_ + "\" cannot be written: " + std::strerror(code) + ".");
}

void RunRecord::Add(const Error& failure) noexcept {
  try {
    const std::lock_guard lock(mutex_);
    causes_.push_back(failure);
  } catch (...) {  // without memory the record lacks this cause
  }
}

void RunRecord::End(int status, const RunFacts& facts) noexcept {
  if (!file_.stream) return;
  Try("The end of the run is not recorded", [&] {
    const std::lock_guard lock(mutex_);
    const auto duration = std::chrono::steady_clock::now() - started_;
    const bool copied = facts.byChange && status != static_cast<int>(ExitStatus::NothingToCopy);
    JsonLine record = Beginning(run_records::kEnd);
    record.Add(kTime, LocalTime(std::chrono::system_clock::now()));
    record.Add(kDuration, std::chrono::duration_cast<std::chrono::milliseconds>(duration).count());
    record.Add(kOutcome, OutcomeOf(status)).Add(kStatus, status);
    AddText(record, kMethod, copied ? *facts.byChange ? kChanged : kFull : "");
    AddCounts(record, facts.counts);
    AddText(record, kLastUpdate, facts.lastUpdateTime ? MomentText(*facts.lastUpdateTime) : "");
    record.Add(kRetries, facts.retries).Add(kPeakMemory, PeakMemoryKib()).Add(kCauses, Causes());
    if (SuddenEnd::Disarm()) Append(record);
  });
  SuddenEnd::Write("Out of memory: the end of the run could not be described.", status);  // if it is not written yet
}

JsonLine RunRecord::Causes() const {
  JsonLine chains = JsonLine::Array();
  for (const Error& failure : causes_) {
    JsonLine chain = JsonLine::Array();
    for (const Error* link = &failure; link; link = link->Cause()) chain.Add(Link(*link));
    chains.Add(chain);
  }
  return chains;
}

JsonLine RunRecord::Link(const Error& error) const {
  JsonLine details = JsonLine::Object();
  for (const auto& [what, value] : error.Details()) details.Add(what.c_str(), WithoutSecrets(value));
  return JsonLine::Object()
      .Add(kNumber, error.Number())
      .Add(kSource, WithoutSecrets(error.Source()))
      .Add(kDescription, WithoutSecrets(error.Description()))
      .Add(kDetails, details);
}

std::string RunRecord::WithoutSecrets(std::string text) const {
  for (const std::string& secret : secrets_) {
    if (secret.size() < kShortestSecret) continue;
    for (std::size_t place = 0; (place = text.find(secret, place)) != std::string::npos; place += 3)
      text.replace(place, secret.size(), "***");
  }
  return text;
}

}  // namespace qmx
