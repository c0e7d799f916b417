// Every fault in its turn: the database driver fails at its Nth operation, the ERP at its Nth call, for every N until
// the run passes. After each the events, the flag, lutm, the local rows, the copy log, the raised error and the report
// are what they must be for the place where the fault hit.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

#include "tests/support/copy_rig.h"
#include "tests/support/faulty_driver.h"

namespace qmx::test {
namespace {

using testing::ElementsAreArray;
using testing::StartsWith;
using testing::UnorderedElementsAreArray;

// One table with two local, two listed and three audited rows. Getters that are not named give "7", which every column
// but a date's takes.
struct CopiedTable {
  const char* code;
  const char* manager;
  const char* record;
  const char* listing = "List";
  FailureTexts fullFailure;
  FailureTexts changedFailure;

  // "A" is missing here and inserted by the ERP, "B" is updated, "D" is deleted; listed are "A" and "B".
  std::function<Getters(const std::string& row)> key;
  std::vector<std::string> dates = {};  // getters
  const char* localRows;                // columns and values of B and D
  std::vector<std::string> columns;     // to be compared
  std::function<std::string(const std::string& row, const std::string& value)> shown;
};

std::ostream& operator<<(std::ostream& out, const CopiedTable& table) { return out << table.code; }

std::string Quoted(const std::string& text) { return '"' + text + '"'; }

const CopiedTable kTables[] = {
    {.code = "tsmdm030",
     .manager = "ServiceTypes.ServiceTypesManager",
     .record = "ServiceTypes.ServiceTypes",
     .fullFailure = {"Copy Service Types", " Copy of Service Types from Orvan to Local DB failed"},
     .changedFailure = {"Copy Service Types - Only Changed", " Copy of Service Types from Orvan to Local DB failed"},
     .key =
         [](const std::string& row) {
           return Getters{{"getServiceType", row}};
         },
     .localRows = "(cstp, dsca) values ('B', 'old'), ('D', 'old')",
     .columns = {"cstp", "dsca"},
     .shown = [](auto& row, auto& value) { return Quoted(row) + ", " + Quoted(value); }},
    {.code = "tcccp001",
     .manager = "AvailabilityType.AvailabilityTypeManager",
     .record = "AvailabilityType.AvailabilityType",
     .listing = "ListAllAvailable",
     .fullFailure = {"Copy Availability Types", " Copy of Availability Types from Orvan to Local DB failed"},
     .changedFailure = {"Copy Availability Type", " Copy of Availability Type from Orvan to Local DB failed"},
     .key =
         [](const std::string& row) {
           return Getters{{"getavailabilityType", row}};
         },
     .localRows = "(ract, dsca) values ('B', 'old'), ('D', 'old')",
     .columns = {"ract", "dsca"},
     .shown = [](auto& row, auto& value) { return Quoted(row) + ", " + Quoted(value); }},
    {.code = "tsmdm135",
     .manager = "SkillsByEmployee.SkillsByEmployeeManager",
     .record = "SkillsByEmployee.SkillsByEmployee",
     .fullFailure = {"Copy Service Skills by Employee",
                     " Copy of Service Skilsl by Employee from Orvan to Local DB failed"},
     .changedFailure = {"Copy Service Skills by Employee",
                        " Copy of Service Skilsl by Employee from Orvan to Local DB failed"},
     .key =
         [](const std::string& row) {
           return Getters{{"getserviceemployee", row}, {"getSkill", "S"}};
         },
     .localRows = "(emno, skll, cogr, afct) values ('B', 'S', '7', 1), ('D', 'S', '7', 1)",
     .columns = {"emno", "skll", "cogr", "afct"},
     .shown = [](auto& row,
                 auto& value) { return Quoted(row) + ", \"S\", \"7\", " + (value == "old" ? "1.0" : "7.0"); }},
    {.code = "tsmdm140",
     .manager = "ServiceEmployees.ServiceEmployeesManager",
     .record = "ServiceEmployees.ServiceEmployees",
     .fullFailure = {"Copy Service Employees", " Copy of Service Employees from Orvan to Local DB failed"},
     .changedFailure = {"Copy Service Employees", " Copy of Service Employees from Orvan to Local DB failed"},
     .key =
         [](const std::string& row) {
           return Getters{{"getserviceemployee", row}};
         },
     .localRows = "(emno, dsca) values ('B', 'old'), ('D', 'old')",
     .columns = {"emno", "dsca"},
     .shown = [](auto& row, auto& value) { return Quoted(row) + ", " + Quoted(value); }},
    {.code = "tsclm024",
     .manager = "PriorityTimeScale.PriorityTimeScaleManager",
     .record = "PriorityTimeScale.PriorityTimeScale",
     .fullFailure = {"Copy Priority Time Scales", " Copy of Priority Time Scales from Orvan to Local DB failed"},
     .changedFailure = {"Copy Service Priority Time Scales - Only Changed",
                        " Copy of Service Priority Time Scales from Orvan to Local DB failed"},
     .key =
         [](const std::string& row) {
           return Getters{{"getSolutionTimeInMinutes", double(row[0])}};
         },
     .localRows = "(sltt, dsca) values (66, 'old'), (68, 'old')",
     .columns = {"sltt", "dsca"},
     .shown = [](auto& row, auto& value) { return std::to_string(int(row[0])) + ".0, " + Quoted(value); }},
    {.code = "tscfg220",
     .manager = "Configurations.ConfigurationsManager",
     .record = "Configurations.Configurations",
     .fullFailure = {"Copy Service Configurations", " Copy of Service Configurations from Orvan to Local DB failed"},
     .changedFailure = {"Copy Service Configurations - Only Change",
                        " Copy of Service Configurations from Orvan to Local DB failed"},
     .key =
         [](const std::string& row) {
           return Getters{{"getConfiguration", row}};
         },
     .localRows = "(ccfg, dsca) values ('B', 'old'), ('D', 'old')",
     .columns = {"ccfg", "dsca"},
     .shown = [](auto& row, auto& value) { return Quoted(row) + ", " + Quoted(value); }},
    {.code = "tscfg200",
     .manager = "ServiceObjects.ServiceObjectsManager",
     .record = "ServiceObjects.ServiceObjects",
     .fullFailure = {"Copy Service Objects", " Copy of Service Objects from Orvan to Local DB failed"},
     .changedFailure = {"Copy Service Objects - Only Change", " Copy of Service Objects from Orvan to Local DB failed"},
     .key =
         [](const std::string& row) {
           return Getters{{"getServiceObject", row}};
         },
     .localRows = "(ccfg, crob, oseq, dsca) values ('7', 'B', 7, 'old'), ('7', 'D', 7, 'old')",
     .columns = {"ccfg", "crob", "oseq", "dsca"},
     .shown = [](auto& row, auto& value) { return "\"7\", " + Quoted(row) + ", 7, " + Quoted(value); }},
    {.code = "tssoc200",
     .manager = "ServiceOrders.ServiceOrdersManager",
     .record = "ServiceOrders.ServiceOrders",
     .listing = "listServiceOrders",
     .fullFailure = {"Copy Service Orders", " Copy of Service Orders from Orvan to Local DB failed"},
     .changedFailure = {"Copy Service Orders - Only Changed", " Copy of Service Orders from Orvan to Local DB failed"},
     .key =
         [](const std::string& row) {
           return Getters{{"getServiceOrder", row}};
         },
     .dates = {"getOrderDate", "getPlannedStartTime", "getPlannedFinishTime", "getPlannedEarliestStartTime",
               "getPlannedLatestFinishTime", "getActualTravelStartTime", "getExecutionStartTime",
               "getExecutionFinishTime", "getDispatchTime"},
     .localRows = "(orno, stna) values ('B', 'old'), ('D', 'old')",
     .columns = {"orno", "stna"},
     .shown = [](auto& row, auto& value) { return Quoted(row) + ", " + Quoted(value); }},
    {.code = "tssoc210",
     .manager = "ServiceOrderActivities.ServiceOrderActivitiesManager",
     .record = "ServiceOrderActivities.ServiceOrderActivities",
     .fullFailure = {"Copy Service Orders Activities - Full Copy",
                     " Copy of Service Orders from Orvan to Local DB failed"},
     .changedFailure = {"Copy Service Orders Activities- Only Changed",
                        " Copy of Service Orders Activities from Orvan to Local DB failed"},
     .key =
         [](const std::string& row) {
           return Getters{{"getServiceOrder", row}};
         },
     .dates = {"getPlannedStartTime", "getPlannedFinishTime", "getPlannedEarliestStartTime",
               "getPlannedLatestFinishTime", "getExecutionStartTime", "getExecutionFinishTime"},
     .localRows = "(orno, acln, dsca) values ('B', 7, 'old'), ('D', 7, 'old')",
     .columns = {"orno", "acln", "dsca"},
     .shown = [](auto& row, auto& value) { return Quoted(row) + ", 7, " + Quoted(value); }},
    {.code = "tssoc205",
     .manager = "ServiceOrderEngineers.ServiceOrderEngineersManager",
     .record = "ServiceOrderEngineers.ServiceOrderEngineers",
     .fullFailure = {"Copy Service Order Engineers", " Copy of Service Order Engineers from Orvan to Local DB failed"},
     .changedFailure = {"Copy Service Order Engineers - Only Changed",
                        " Copy of Service Order Engineers from Orvan to Local DB failed"},
     .key =
         [](const std::string& row) {
           return Getters{{"getServiceOrder", row}};
         },
     .localRows = "(orno, line, emno) values ('B', 7, 'old'), ('D', 7, 'old')",
     .columns = {"orno", "line", "emno"},
     .shown = [](auto& row, auto& value) { return Quoted(row) + ", 7, " + Quoted(value); }},
    {.code = "tsspc200",
     .manager = "PlannedActivities.PlannedActivitiesManager",
     .record = "PlannedActivities.PlannedActivities",
     .fullFailure = {"Copy Service Planned Activities",
                     " Copy of Service Planned Activities from Orvan to Local DB failed"},
     .changedFailure = {"Copy Service Planned Activities - Only Changed",
                        " Copy of Service Planned Activities from Orvan to Local DB failed"},
     .key =
         [](const std::string& row) {
           return Getters{{"getActivity", row}};
         },
     .dates = {"getEarliestStartTime", "getPlannedStartTime", "getPlannedFinishTime", "getLatestFinishTime"},
     .localRows = "(ccfg, crac, aseq, dsca) values ('7', 'B', 7, 'old'), ('7', 'D', 7, 'old')",
     .columns = {"ccfg", "crac", "aseq", "dsca"},
     .shown = [](auto& row, auto& value) { return "\"7\", " + Quoted(row) + ", 7, " + Quoted(value); }},
};

constexpr const char* kOldTime = "2026-11-19";
constexpr const char* kNewTime = "2026-11-20 14:05:09";
constexpr const char* kTimeHeader = "\"Date-Time :2026-11-20 : 14:05:09\"";

// What must be found after a run.
struct Outcome {
  std::vector<std::string> events;
  std::string inUse = "0";
  std::string lutm = kOldTime;
  std::vector<std::string> rows;
  std::vector<std::string> log;
  std::string raised = "nothing";
  std::string reported = "nothing";  // how the report begins
};

// A fault as the copy log and the reports show it.
struct Fault {
  std::int32_t number;
  std::string logRecord;
  std::string described;
};

// The run of one table in one mode, and what must come of it when the first call that failed stands in the call log.
class FaultyRun {
 public:
  FaultyRun(const CopiedTable& table, std::int16_t syncMethod)
      : table_(table), full_(syncMethod == kFullCopy), rig([this](Driver& sqlite) -> Driver& {
          driver = std::make_unique<FaultyDriver>(sqlite);
          return *driver;
        }) {
    rig.ControlRecord(table.code, syncMethod, kOldTime);
    rig.Sql(std::string("insert into ") + table.code + ' ' + table.localRows);
    rig.erp.ListsBy(
        table.manager,
        [this](ScriptedObject::Arguments bounds) {
          const Variant first = bounds.empty() ? Variant() : bounds[0].Value();
          if (full_) return std::vector<Getters>{Record("A"), Record("B")};
          return std::vector<Getters>{Record(first.ToText())};  // a re-reading
        },
        table.listing);
    rig.erp.Audits(table.record, {Inserted(Record("A")), Updated(Record("B")), Deleted(Record("D"))});
  }

  // Runs, and gives what was raised.
  std::string Raised() {
    try {
      rig.Run(table_.code);
    } catch (const Error& error) {
      return "error " + std::to_string(error.Number()) + ", " + error.Source();
    }
    return "nothing";
  }

  Outcome Found(std::string raised) {
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
    if (!rig.failures.chains.empty()) found.reported = rig.failures.chains[0];
    EXPECT_LE(rig.failures.chains.size(), 1u);
    return found;
  }

  Outcome Expected(const Fault& fault) const {
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
    if (counted) outcome.log.insert(outcome.log.end(), counts_.begin(), counts_.end());

    const bool copied = failed(writingTime) || failed(release) || failed("connection.Close");
    if (copied) {
      outcome.events = {started, Event("Complete") + (full_ ? ", 2, 0, 0" : ", 1, 1, 1"), "event done"};
      if (failed(writingTime)) return outcome;
      outcome.log.insert(outcome.log.end(), {kTimeHeader, fault.logRecord});
      if (!failed(release)) return outcome;
      const std::string text =
          std::string("Release of Data copy in Progress flag for table ") + table_.code + " Failed";
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
    outcome.reported = "error " + std::to_string(fault.number + (deleting ? 200 : 100)) + ", " + texts.source + ": " +
                       texts.description;
    return outcome;
  }

  std::string FirstFailure() const {
    for (const std::string& line : rig.calls.Lines()) {
      if (line.find(" -> error ") != std::string::npos) return line;
    }
    return "";
  }

 private:
  struct Guard {
    const char* recordset;
    const char* source;
    const char* prefix;
  };
  static constexpr Guard kGuards[] = {
      {"rs2.", "Data Copy In Progress", "Checking of whether Data Copy is in Progress for table "},
      {"rs3.", "Set Data Copy In Progress", "Setting Data Copy in Progress flag for table "},
      {"rs4.", "ReadSyncMethod", "Reading the synchronization Method for table "},
  };

  Getters Record(const std::string& row) {
    Getters getters = table_.key(row);
    for (const std::string& date : table_.dates) getters.insert({date, rig.erp.Date({126, 10, 20, 8, 0, 0})});
    getters.insert({kAnyOther, "7"});
    return getters;
  }

  std::string Event(const std::string& event) const {
    return "event " + event + " 2026-11-20 14:05:09, \"" + table_.code + '"';
  }

  // The rows as the calls that succeeded have left them: a full copy saves a row with the AddNew or Update after it, a
  // changed copy applies an entry with one Update or Execute.
  std::vector<std::string> AppliedRows() const {
    const auto row = [&](const char* name, const char* value) { return table_.shown(name, value); };
    const auto succeeded = [&](std::string_view call) {
      std::size_t count = 0;
      for (const std::string& line : rig.calls.StartingWith({call})) {
        if (line.find(" -> error ") == std::string::npos) ++count;
      }
      return count;
    };
    if (full_) {
      if (succeeded("connection.Execute") == 0) return {row("B", "old"), row("D", "old")};
      const std::vector<std::string> listed = {row("A", "7"), row("B", "7")};
      const std::size_t added = succeeded("rs1.AddNew");
      const std::size_t saved = added == 0 ? 0 : added - 1 + succeeded("rs1.Update");
      return {listed.begin(), listed.begin() + static_cast<std::ptrdiff_t>(saved)};
    }
    switch (succeeded("rs1.Update") + succeeded("connection.Execute")) {
      case 0:
        return {row("B", "old"), row("D", "old")};
      case 1:
        return {row("A", "7"), row("B", "old"), row("D", "old")};
      case 2:
        return {row("A", "7"), row("B", "7"), row("D", "old")};
      default:
        return {row("A", "7"), row("B", "7")};
    }
  }

  const CopiedTable& table_;
  const bool full_;
  const std::vector<std::string> counts_ = [this] {
    const std::string table = std::string("\"Table : ") + table_.code + " - ";
    std::vector<std::string> lines = {kTimeHeader, table + (full_ ? "2" : "1") + " records Inserted\""};
    if (!full_) lines.insert(lines.end(), {table + "1 records Updated\"", table + "1 records Deleted\""});
    return lines;
  }();

 public:
  std::unique_ptr<FaultyDriver> driver;
  CopyRig rig;
};

void Compare(const Outcome& found, const Outcome& expected) {
  EXPECT_THAT(found.events, ElementsAreArray(expected.events));
  EXPECT_EQ(found.inUse, expected.inUse);
  EXPECT_EQ(found.lutm, expected.lutm);
  EXPECT_THAT(found.rows, UnorderedElementsAreArray(expected.rows));
  EXPECT_THAT(found.log, ElementsAreArray(expected.log));
  EXPECT_EQ(found.raised, expected.raised);
  EXPECT_THAT(found.reported, StartsWith(expected.reported));
}

class Faults : public testing::TestWithParam<std::tuple<CopiedTable, std::int16_t>> {};

TEST_P(Faults, OfTheDatabaseDriverAtEveryOperationLeaveWhatTheyMust) {
  const auto& [table, syncMethod] = GetParam();
  std::int64_t operation = 1;
  for (;; ++operation) {
    FaultyRun run(table, syncMethod);
    run.driver->FailAt(operation);
    const std::string raised = run.Raised();
    if (!run.driver->HasFailed()) break;
    const std::string what = run.driver->Record()[static_cast<std::size_t>(operation) - 1];
    const std::string text = "Operation " + std::to_string(operation) + " was made to fail: " + what;
    SCOPED_TRACE(text + "\n" + run.FirstFailure());
    Compare(run.Found(raised), run.Expected({errors::kProviderUnspecified, "\"Faulty driver\",\"" + text + '"',
                                             "error -2147467259, Faulty driver: " + text}));
    if (HasFailure()) return;
  }
  EXPECT_GT(operation, 50);
}

TEST_P(Faults, OfTheErpAtEveryCallLeaveWhatTheyMust) {
  const auto& [table, syncMethod] = GetParam();
  std::int64_t call = 1;
  for (;; ++call) {
    FaultyRun run(table, syncMethod);
    run.rig.erp.calls.FailAt(call);
    const std::string raised = run.Raised();
    if (!run.rig.erp.calls.HasFailed()) break;
    const std::string failing = run.FirstFailure();
    const std::string text =
        "Call " + std::to_string(call) + " was made to fail: " + failing.substr(0, failing.find(" -> "));
    SCOPED_TRACE(text);
    Compare(run.Found(raised), run.Expected({7000, "\"Orvan\",\"" + text + '"', "error 7000, Orvan: " + text}));
    if (HasFailure()) return;
  }
  EXPECT_GT(call, 10);
}

// When the database is gone for good, the release fails as well: the flag stays as it is, and the release's error ends
// the run, unless the copy had ended well before.
class LostDatabase : public testing::TestWithParam<std::int16_t> {};

TEST_P(LostDatabase, LeavesTheFlagAndRaisesTheReleasesErrorUnlessTheCopyHadEnded) {
  const bool full = GetParam() == kFullCopy;
  for (std::int64_t operation = 1;; ++operation) {
    FaultyRun run(kTables[0], GetParam());
    run.driver->FailFrom(operation);
    const std::string raised = run.Raised();
    if (!run.driver->HasFailed()) break;
    SCOPED_TRACE(run.FirstFailure());
    const Outcome found = run.Found(raised);
    const auto& calls = run.rig.calls;

    const bool flagSet = calls.Count("rs3.in_use = 1") == 1 && calls.Count("rs3.Update") == 1;
    const bool released = calls.Count("rs6.in_use = 0") + calls.Count("rs7.in_use = 0") == 1 &&
                          calls.Count("rs6.Update") + calls.Count("rs7.Update") == (full ? 1u : 2u);
    EXPECT_EQ(found.inUse, flagSet && !released ? "1" : "0");
    // A full copy closes its record set after lutm is written, a changed copy is done by then.
    const bool copied = calls.StartingWith({"log \"Table : "}).size() > 0;
    if (copied) {
      EXPECT_EQ(found.raised, "nothing");
      EXPECT_EQ(found.events.size(), 3u);
      EXPECT_EQ(found.events.back(), "event done");
    } else {
      EXPECT_THAT(found.raised, testing::EndsWith(", ReleaseCopyInProgress"));
      EXPECT_LE(found.events.size(), 1u);
    }
    EXPECT_FALSE(found.log.empty());
    if (HasFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(InBothModes, LostDatabase, testing::Values(kFullCopy, kOnlyChanged),
                         [](const auto& instance) { return instance.param == kFullCopy ? "full" : "changed"; });

INSTANTIATE_TEST_SUITE_P(OfEveryTable, Faults,
                         testing::Combine(testing::ValuesIn(kTables), testing::Values(kFullCopy, kOnlyChanged)),
                         [](const auto& instance) {
                           return std::string(std::get<0>(instance.param).code) +
                                  (std::get<1>(instance.param) == kFullCopy ? "_full" : "_changed");
                         });

}  // namespace
}  // namespace qmx::test
