#include "tests/whole/local_copy.h"

#include <algorithm>
#include <stdexcept>

#include "calendar/clsCalender.h"
#include "platform/trace/trace.h"
#include "schema/dialect.h"
#include "schema/local_tables.h"
#include "tests/support/decorated_drivers.h"

namespace qmx::test {
namespace {

const LocalTable& TableOf(const std::string& name) {
  const auto found = std::ranges::find(LocalTables(), name, &LocalTable::name);
  if (found == LocalTables().end()) throw std::runtime_error("no local table " + name);
  return *found;
}

std::string Text(const Variant& value) { return value.IsNull() ? "null" : value.ToText(); }

// The events at the end of a run.
class Outcome : public DataCopyEvents {
 public:
  void DataCopyStarted(Variant, Variant) override {}
  void DataCopyError(Variant, Variant, Variant, Variant) override { end = "failed"; }
  void DataCopyComplete(Variant, Variant, Variant icount, Variant ucount, Variant dcount) override {
    end = "complete";
    counts = {icount.ToText(), ucount.ToText(), dcount.ToText()};
  }
  void DataCopyAlreadyInProgress(Variant, Variant) override { end = "already in progress"; }
  void DataCopydone() override {}

  std::string end = "without an end";
  std::vector<std::string> counts;
};

}  // namespace

const std::vector<std::string>& CopiedTables() {
  static const std::vector<std::string> tables = {
      "tsmdm030", "tsmdm100", "tsmdm105", "tsmdm130", "tsmdm135", "tsmdm140", "tsclm020", "tsclm024", "tccom130",
      "tcccp001", "tcccp030", "tscfg220", "tscfg200", "tssoc200", "tssoc205", "tssoc210", "tsspc200"};
  return tables;
}

LocalCopy::LocalCopy(const Company& company, FakeClock& clock, const std::string& componentFolder)
    : company_(company), clock_(clock), components_(clock, {componentFolder}) {
  const auto connection = database_.CreateConnection("ADODB.Connection");
  connection->Open(ConnectionText() + ";Mode=Create", "", "");
  for (const LocalTable& table : LocalTables()) connection->Execute(SqliteDialect().CreateTable(table));
  connection->Close();
}

void LocalCopy::Copy(const std::string& table, LocalDrivers::Decorate belowBatches) {
  LocalDrivers drivers(OnlyFor(ConnectionText(), std::move(belowBatches)));
  Database database(drivers.All());
  modDeclarations declarations;
  declarations.copiesWhole = isWhole_;
  RecordingFailures failures;
  Components& components = traced_ ? static_cast<Components&>(*traced_) : components_;
  Platform platform{clock_, files_, eventLog_, components, database, failures};
  Outcome outcome;
  clsDataCopy(platform, declarations, outcome)
      .StartDataCopy(ConnectionText(), "", table, "C:\\log", company_.Component());
  counts_ = outcome.counts;
  if (outcome.end == "complete") return;
  throw std::runtime_error("The copy of " + table + " ended " + outcome.end + ": " +
                           (failures.chains.empty() ? "" : failures.chains.front()));
}

void LocalCopy::CopyAll() {
  for (const std::string& table : CopiedTables()) Copy(table);
}

void LocalCopy::ByChange() { Sql("update tstables set syme = 2"); }

void LocalCopy::Expand() {
  const auto connection = database_.CreateConnection("ADODB.Connection");
  connection->Open(ConnectionText(), "", "");
  const auto records = database_.CreateRecordset("ADODB.Recordset");
  clsCalender calender(database_);
  calender.DBConnection = connection.get();
  calender.DBRecordSet = records.get();
  calender.Startprocess();
  connection->Close();
}

void LocalCopy::TraceTo(const std::string& file) {
  trace_ = std::make_unique<Trace>(file);
  traced_ = std::make_unique<TracedComponents>(components_, *trace_);
}

void LocalCopy::Sql(const std::string& statement) {
  const auto connection = database_.CreateConnection("ADODB.Connection");
  connection->Open(ConnectionText(), "", "");
  connection->Execute(statement);
  connection->Close();
}

void LocalCopy::OnRows(const std::string& query, const std::function<void(Recordset&)>& work) {
  const auto connection = database_.CreateConnection("ADODB.Connection");
  connection->Open(ConnectionText(), "", "");
  const auto rows = database_.CreateRecordset("ADODB.Recordset");
  rows->Open(query, *connection, kCursorKeyset, kLockOptimistic, kCommandText);
  for (; !rows->Eof(); rows->MoveNext()) work(*rows);
}

std::string LocalCopy::Value(const std::string& query) {
  std::string value = "no row";
  OnRows(query, [&](Recordset& row) { value = Text(row.Fields(std::size_t{0}).Value()); });
  return value;
}

std::set<std::string> LocalCopy::Values(const std::string& query) {
  std::set<std::string> values;
  OnRows(query, [&](Recordset& row) { values.insert(Text(row.Fields(std::size_t{0}).Value())); });
  return values;
}

Rows LocalCopy::RowsOf(const std::string& table, const std::string& condition) {
  const LocalTable& description = TableOf(table);
  Rows rows;
  OnRows("select * from " + table + " where " + condition, [&](Recordset& record) {
    Row row;
    for (std::size_t i = 0; i < description.columns.size(); ++i)
      row[description.columns[i].name] = Text(record.Fields(i).Value());
    std::string key;
    for (const std::string& column : description.key) key += (key.empty() ? "" : "/") + row.at(column);
    rows[key] = std::move(row);
  });
  return rows;
}

std::vector<std::string> Differences(const std::string& table, const Rows& rows, const Rows& expected) {
  std::vector<std::string> differences;
  for (const auto& [key, row] : rows) {
    const auto found = expected.find(key);
    if (found == expected.end()) {
      differences.push_back(table + " " + key + ": must not be here");
      continue;
    }
    for (const auto& [column, value] : row) {
      const std::string& right = found->second.at(column);
      if (value != right)
        differences.push_back(table + " " + key + ": " + column + " is " + value + " and not " + right);
    }
  }
  for (const auto& [key, row] : expected)
    if (!rows.contains(key)) differences.push_back(table + " " + key + ": is missing");
  return differences;
}

}  // namespace qmx::test
