#include "tools/qmxadmin/control_records.h"

#include <algorithm>

#include "platform/control_record.h"
#include "platform/names.h"

namespace qmx {

using namespace control_record;

namespace {

bool Is(const Variant& value, int number) { return !value.IsNull() && !value.IsEmpty() && value.ToDouble() == number; }

std::optional<DateTime> Moment(const Variant& value) {
  if (value.IsNull() || value.IsEmpty() || value.ToDateTime() <= DateTime()) return std::nullopt;
  return value.ToDateTime();
}

std::unique_ptr<Recordset> SelectRecord(LocalDatabase& local, const std::string& tableCode) {
  return local.Select(SqlText("select * from tstables where tablename = '").Value(tableCode).Append("'"));
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
  const auto records = local.Select("select * from tstables");
  for (; !records->Eof(); records->MoveNext()) {
    read[records->Fields(kTableName).Value().ToText()] = {Is(records->Fields(kInUse).Value(), kInProgress),
                                                          Is(records->Fields(kSyme).Value(), kOnlyChanged),
                                                          Moment(records->Fields(kLutm).Value())};
  }
  records->Close();
  return OfOneCase(local, std::move(read));
}

bool TableCodesIgnoreCase(LocalDatabase& local) {
  return local.SelectNumber(
             "select count(*) from (select TableName from tstables where 1=0 union all select 'a') t "
             "where TableName = 'A'") == 1;
}

void WriteSyncMethod(LocalDatabase& local, const std::string& tableCode, bool byChange) {
  const auto record = SelectRecord(local, tableCode);
  if (record->recordcount() == 0) {
    record->AddNew();
    record->Fields(kTableName) = tableCode;
    record->Fields(kInUse) = kFree;
    record->Fields(kFreq) = kNewFreq;
    record->Fields(kReqd) = kNewReqd;
  }
  record->Fields(kSyme) = byChange ? kOnlyChanged : kFullCopy;
  record->Update();
  record->Close();
}

void WriteReleased(LocalDatabase& local, const std::string& tableCode) {
  const auto record = SelectRecord(local, tableCode);
  record->Fields(kInUse) = kFree;
  record->Update();
  record->Close();
}

}  // namespace qmx
