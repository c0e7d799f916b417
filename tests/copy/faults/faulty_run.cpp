#include "tests/copy/faults/faulty_run.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace qmx::test {
namespace {

constexpr const char* kNewTime = "2026-11-20 14:05:09";
constexpr const char* kTimeHeader = "\"Date-Time :2026-11-20 : 14:05:09\"";

struct Guard {
  const char* recordset;
  const char* source;
  const char* prefix;
};
constexpr Guard kGuards[] = {
    {"rs2.", "Data Copy In Progress", "Checking of whether Data Copy is in Progress for table "},
    {"rs3.", "Set Data Copy In Progress", "Setting Data Copy in Progress flag for table "},
    {"rs4.", "ReadSyncMethod", "Reading the synchronization Method for table "},
};

}  // namespace

FaultyRun::FaultyRun(const CopiedTable& table, std::int16_t syncMethod, Place place)
    : table_(table),
      full_(syncMethod == kFullCopy),
      rig(place == Place::AboveTheBatches ? decorate_ : nullptr, nullptr,
          place == Place::BelowTheBatches ? decorate_ : nullptr, pauses) {
  PrepareCopyOf(table, syncMethod, rig);
}

std::string FaultyRun::Raised() {
  try {
    rig.Run(table_.code);
  } catch (const Error& error) {
    return "error " + std::to_string(error.Number()) + ", " + error.Source();
  }
  return "nothing";
}

Outcome FaultyRun::Found(std::string raised) {
  Outcome found;
  found.events = rig.Events();
  found.inUse = rig.InUse(table_.code);
  found.lutm = rig.Lutm(table_.code);
  found.rows = rig.Rows(table_.code, table_.columns);
  const std::string log = rig.CopyLog(table_.code);
  for (std::size_t start = 0; start < log.size();) {
    const std::size_t end = log.find("\r\n", start);
    found.log.push_back(log.substr(start, end - start));
    start = end + 2;
  }
  found.raised = std::move(raised);
  if (!rig.failures.chains.empty()) found.reported = rig.failures.chains.back();
  EXPECT_LE(rig.failures.chains.size(), 2u);  // the last update time's, then the release's
  return found;
}

Outcome FaultyRun::Expected(const Fault& fault) const {
  const std::string failing = FirstFailure();
  const auto failed = [&](std::string_view call) { return failing.starts_with(call); };
  // The record sets, by the order in which a run makes them: 1 the engine's; the control records' for check, set and
  // method; then, of a changed copy, for reading lutm; for writing it; for the release.
  const std::string writingTime = full_ ? "rs5." : "rs6.";
  const std::string release = full_ ? "rs6." : "rs7.";
  const std::string started = Event("Started");
  const std::string failedEvent =
      Event("Error") + ", -1, \"DataCopy Failed, see logfile 'C:\\log\\" + table_.code + ".log' for details\"";
  const FailureTexts& texts = full_ ? table_.fullFailure : table_.changedFailure;
  const std::string tableRecord = Quoted(texts.source) + ',' + Quoted(texts.description);

  Outcome outcome;
  outcome.rows = AppliedRows();
  if (failed("connection.Open")) {
    outcome.log = {kTimeHeader, fault.logRecord, "\"ADODB.Recordset\",\"The connection is closed.\""};
    outcome.raised = "error 3709, ReleaseCopyInProgress";
    return outcome;
  }
  if (rig.calls.Count(started) == 0) {
    outcome.events = {failedEvent, "event done"};
    outcome.log = {kTimeHeader, fault.logRecord};
    outcome.reported = fault.described;
    for (const auto& [recordset, source, prefix] : kGuards) {
      if (!failed(recordset)) continue;
      const std::string text = std::string(prefix) + table_.code + " Failed";
      outcome.log.push_back(Quoted(source) + ',' + Quoted(text));
      outcome.reported = "error " + std::to_string(fault.number) + ", " + source + ": " + text;
    }
    return outcome;
  }

  const bool timeWritten = rig.calls.Count(writingTime + "lutm = " + kNewTime) == 1 &&  //
                           rig.calls.Count(writingTime + "Update") == 1;
  const bool counted = rig.calls.StartingWith({"log \"Table : "}).size() > 0;
  if (timeWritten) outcome.lutm = kNewTime;
  if (failed(writingTime)) outcome.log = {kTimeHeader, fault.logRecord};
  if (counted) {
    const std::vector<std::string> counts = CountLines();
    outcome.log.insert(outcome.log.end(), counts.begin(), counts.end());
  }

  const bool copied = failed(writingTime) || failed(release) || failed("connection.Close");
  if (copied) {
    outcome.events = {started, Event("Complete") + (full_ ? ", 2, 0, 0" : ", 1, 1, 1"), "event done"};
    if (failed(writingTime)) {
      outcome.reported = "error " + std::to_string(fault.number) + ", clsDataCopy: The last update time of table " +
                         table_.code + " was not written.";
      return outcome;
    }
    outcome.log.insert(outcome.log.end(), {kTimeHeader, fault.logRecord});
    if (!failed(release)) return outcome;
    const std::string text = std::string("Release of Data copy in Progress flag for table ") + table_.code + " Failed";
    outcome.log.push_back(Quoted("ReleaseCopyInProgress") + ',' + Quoted(text));
    outcome.reported = "error " + std::to_string(fault.number) + ", ReleaseCopyInProgress: " + text;
    if (!failed(release + "Close")) outcome.inUse = "1";
    return outcome;
  }

  outcome.events = {started, failedEvent, "event done"};
  outcome.log.push_back(kTimeHeader);
  if (!full_) outcome.log.push_back(fault.logRecord);
  outcome.log.push_back(tableRecord);
  const bool deleting = full_ && (failed("connection.CommandTimeout") || failed("connection.Execute"));
  outcome.reported =
      "error " + std::to_string(fault.number + (deleting ? 200 : 100)) + ", " + texts.source + ": " + texts.description;
  return outcome;
}

Outcome FaultyRun::ExpectedIfDone(const Fault& fault) const {
  Outcome outcome = Expected(fault);
  outcome.rows = AppliedRows(1);
  if (FirstFailure().starts_with(full_ ? "rs5." : "rs6.")) outcome.lutm = kNewTime;
  outcome.inUse = "0";
  return outcome;
}

std::string FaultyRun::FirstFailure() const {
  for (const std::string& line : rig.calls.Lines()) {
    if (line.find(" -> error ") != std::string::npos) return line;
  }
  return "";
}

std::string FaultyRun::Event(const std::string& event) const {
  return "event " + event + " 2026-11-20 14:05:09, \"" + table_.code + '"';
}

std::vector<std::string> FaultyRun::CountLines() const {
  const std::string table = std::string("\"Table : ") + table_.code + " - ";
  std::vector<std::string> lines = {kTimeHeader, table + (full_ ? "2" : "1") + " records Inserted\""};
  if (!full_) lines.insert(lines.end(), {table + "1 records Updated\"", table + "1 records Deleted\""});
  return lines;
}

std::size_t FaultyRun::Succeeded(std::string_view call) const {
  std::size_t count = 0;
  for (const std::string& line : rig.calls.StartingWith({call})) {
    if (line.find(" -> error ") == std::string::npos) ++count;
  }
  return count;
}

// A full copy deletes all rows and saves each listed one; a changed copy inserts A, updates B and deletes D.
std::vector<std::vector<std::string>> FaultyRun::States() const {
  const auto row = [&](const char* name, const char* value) { return table_.shown(name, value); };
  const std::string a = row("A", "7"), b = row("B", "7"), oldB = row("B", "old"), oldD = row("D", "old");
  if (full_) return {{oldB, oldD}, {}, {a}, {a, b}};
  return {{oldB, oldD}, {a, oldB, oldD}, {a, b, oldD}, {a, b}};
}

// The rows as the calls that succeeded have left them: a full copy saves a row with the AddNew or Update after it, a
// changed copy applies an entry with one Update or Execute.
std::vector<std::string> FaultyRun::AppliedRows(std::size_t more) const {
  std::size_t steps = Succeeded("connection.Execute") + Succeeded("rs1.Update");
  if (full_ && steps > 0) steps += std::max(Succeeded("rs1.AddNew"), std::size_t{1}) - 1;
  const std::vector<std::vector<std::string>> states = States();
  return states.at(std::min(steps + more, states.size() - 1));
}

}  // namespace qmx::test
