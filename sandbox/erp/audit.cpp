#include "erp/audit.h"

#include <algorithm>

#include "erp/date.h"
#include "erp/manager.h"
#include "erp/schema.h"

namespace orvan {
namespace {

[[noreturn]] void OutOfOrder(const char* source, const std::string& sentence) {
  throw Failure(QMX_E_INVALID_CALL, source, sentence);
}

std::string EntriesSql(const Table& table, const std::vector<Ref<Parameter>>& parameters) {
  std::string sql =
      "SELECT change, " + ColumnList(table.key) + " FROM " + AuditTable(table) + " WHERE at BETWEEN ? AND ?";
  for (const auto& parameter : parameters) sql += " AND " + Quoted(parameter->FieldName()) + " BETWEEN ? AND ?";
  return sql + " ORDER BY entry";
}

std::string CurrentSql(const Table& table, const std::vector<std::size_t>& columns) {
  std::string sql = "SELECT 1";
  for (const std::size_t column : columns) sql += ", " + Quoted(table.columns[column].name);
  sql += " FROM " + std::string(table.code);
  const char* joint = " WHERE ";
  for (const std::string_view part : table.key) {
    sql += joint + Quoted(part) + " = ?";
    joint = " AND ";
  }
  return sql;
}

void RequireKeyColumns(const Table& table, const std::vector<Ref<Parameter>>& parameters) {
  for (const auto& parameter : parameters) {
    if (table.IsKey(parameter->FieldName())) continue;
    OutOfOrder(AuditReader::kName, "The audit parameter \"" + parameter->FieldName() + "\" is no key column of " +
                                       std::string(table.code) + ". Use " + ColumnList(table.key) + ".");
  }
}

std::vector<std::size_t> ColumnsOf(const Table& table, const std::vector<std::string>& fields) {
  std::vector<std::size_t> columns;
  for (const std::string& field : fields) {
    const std::size_t column = table.Find(field);
    if (column == table.columns.size())
      OutOfOrder(AuditReader::kName,
                 "The output field \"" + field + "\" is no column of " + std::string(table.code) + ". Check its name.");
    if (!table.IsKey(field)) columns.push_back(column);
  }
  return columns;
}

}  // namespace

ForeignObject Period::DateObject(Argument date, const char* member) {
  ForeignObject object(date.ObjectOrNothing());
  if (object) return object;
  throw Failure(QMX_E_TYPE_MISMATCH, kName,
                std::string(member) + " of audit.period takes a date object, but " + date.Shown() + " was passed.");
}

std::string Period::From() const {
  if (!from_) OutOfOrder(kName, "The audit period has no beginning. Call setFrom with a date object.");
  return ReadDate(from_).Text();
}

std::string Period::To() const {
  if (!to_) OutOfOrder(kName, "The audit period has no end. Call setTo with a date object.");
  return ReadDate(to_).Text();
}

const Period& Criteria::AuditPeriod() const {
  if (!period_) OutOfOrder(kName, "The audit criteria have no period. Call setPeriod first.");
  return *period_;
}

void Criteria::AddParameter(Arguments parameter, Result) {
  Parameter& added = ObjectOf<Parameter>(parameter[0], "parameter");
  const auto same = [&](const Ref<Parameter>& kept) { return &*kept == &added; };
  if (std::none_of(parameters_.begin(), parameters_.end(), same)) parameters_.emplace_back(added);
}

void AuditReader::Initialize(Arguments managerRecordAndCriteria, Result) {
  const Manager& manager = Manager::Of(managerRecordAndCriteria[0]);
  const Table& table = manager.ManagedTable();
  Record::Of(table, managerRecordAndCriteria[1], "record object");
  const Criteria& criteria = ObjectOf<Criteria>(managerRecordAndCriteria[2], "criteria");
  RequireKeyColumns(table, criteria.Parameters());

  std::vector<std::size_t> columns = ColumnsOf(table, criteria.OutputFields());
  Statement entries(manager.File(), EntriesSql(table, criteria.Parameters()));
  int next = 1;
  entries.Bind(next++, criteria.AuditPeriod().From());
  entries.Bind(next++, criteria.AuditPeriod().To());
  for (const auto& parameter : criteria.Parameters()) {
    BindBound(entries, next++, table.At(parameter->FieldName()), parameter->From());
    BindBound(entries, next++, table.At(parameter->FieldName()), parameter->To());
  }
  Statement current(manager.File(), CurrentSql(table, columns));
  const bool onRow = entries.Step();
  query_.emplace(Query{table, std::move(entries), std::move(current), std::move(columns), onRow});
}

AuditReader::Query& AuditReader::Running() {
  if (!query_) OutOfOrder(kName, "The audit reader was not started. Call initialize first.");
  return *query_;
}

void AuditReader::HasMoreElements(Arguments, Result result) { result.SetBoolean(Running().onRow); }

void AuditReader::NextElement(Arguments, Result result) {
  Query& query = Running();
  if (!query.onRow) OutOfOrder(kName, "There is no further audit entry. Ask hasMoreElements first.");
  Ref<Record> key(new Record(query.table));
  for (std::size_t i = 0; i < query.table.key.size(); ++i)
    key->Fill(query.table.Find(query.table.key[i]), query.entries.At(static_cast<int>(i) + 1));
  const auto change = static_cast<AuditEntry::Change>(query.entries.Text(0).front());
  query.onRow = query.entries.Step();
  ReturnNew<AuditEntry>(result, change, std::move(key));
}

void AuditReader::GetCurrentObject(Arguments tuple, Result result) {
  Query& query = Running();
  const Record& key = Record::Of(query.table, tuple[0], "tuple");
  Ref<Record> record(new Record(query.table));
  record->FillKey(key);
  key.BindKey(query.current);
  if (query.current.Step()) {
    for (std::size_t i = 0; i < query.outputColumns.size(); ++i)
      record->Fill(query.outputColumns[i], query.current.At(static_cast<int>(i) + 1));
  }
  query.current.Reset();
  Return(result, record);
}

}  // namespace orvan
