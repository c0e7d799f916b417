#include "tools/qmxadmin/control_records.h"

#include <algorithm>

#include "platform/names.h"

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

std::map<std::string, ControlRecord> OfOneCase(LocalDatabase& local, std::map<std::string, ControlRecord> records) {
  const auto isFolded = [](const auto& record) { return FoldName(record.first) == record.first; };
  if (std::all_of(records.begin(), records.end(), isFolded) || !TableCodesIgnoreCase(local)) return records;
  std::map<std::string, ControlRecord> folded;
  for (const auto& [code, record] : records) folded.emplace(FoldName(code), record);
  return folded;
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
  return OfOneCase(local, std::move(read));
}

bool TableCodesIgnoreCase(LocalDatabase& local) {
  const auto found =
      OpenRecords(local,
                  "select count(*) from (select TableName from tstables where 1=0 union all select 'a') t "
                  "where TableName = 'A'");
  const bool ignores = found->Fields(std::size_t{0}).Value().ToInt32() == 1;
  found->Close();
  return ignores;
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
