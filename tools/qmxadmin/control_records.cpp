#include "tools/qmxadmin/control_records.h"

namespace qmx {
namespace {

const Column kTableName = "TableName";
const Column kInUse = "in_use";
const Column kFreq = "freq";
const Column kReqd = "reqd";
const Column kSyme = "syme";
const Column kLutm = "lutm";

bool Is(const Variant& value, int number) { return !value.IsNull() && !value.IsEmpty() && value.ToDouble() == number; }

std::optional<DateTime> Moment(const Variant& value) {
  if (value.IsNull() || value.IsEmpty() || value.ToDateTime() <= DateTime()) return std::nullopt;
  return value.ToDateTime();
}

std::unique_ptr<Recordset> OpenRecords(LocalDatabase& local, const SqlText& query) {
  std::unique_ptr<Recordset> records = local.Layer().CreateRecordset("ADODB.Recordset");
  records->Open(query, local.Connection(), kCursorKeyset, kLockOptimistic, kCommandText);
  return records;
}

std::unique_ptr<Recordset> OpenRecord(LocalDatabase& local, const std::string& tableCode) {
  return OpenRecords(local, SqlText("select * from tstables where tablename = '").Value(tableCode).Append("'"));
}

}  // namespace

std::map<std::string, ControlRecord> ReadControlRecords(LocalDatabase& local) {
  std::map<std::string, ControlRecord> read;
  const auto records = OpenRecords(local, "select * from tstables");
  for (; !records->Eof(); records->MoveNext()) {
    read[records->Fields(kTableName).Value().ToText()] = {Is(records->Fields(kInUse).Value(), 1),
                                                          Is(records->Fields(kSyme).Value(), 2),
                                                          Moment(records->Fields(kLutm).Value())};
  }
  records->Close();
  return read;
}

void WriteSyncMethod(LocalDatabase& local, const std::string& tableCode, bool byChange) {
  const auto record = OpenRecord(local, tableCode);
  if (record->recordcount() == 0) {
    record->AddNew();
    record->Fields(kTableName) = tableCode;
    record->Fields(kInUse) = std::int16_t{0};
    record->Fields(kFreq) = std::int16_t{0};
    record->Fields(kReqd) = std::int16_t{1};
  }
  record->Fields(kSyme) = static_cast<std::int16_t>(byChange ? 2 : 1);
  record->Update();
  record->Close();
}

void WriteReleased(LocalDatabase& local, const std::string& tableCode) {
  const auto record = OpenRecord(local, tableCode);
  record->Fields(kInUse) = std::int16_t{0};
  record->Update();
  record->Close();
}

}  // namespace qmx
