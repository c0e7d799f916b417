// The steps of a changed copy: apply the entries of the ERP's audit reader since the last update, in their order.
//
// The local rows decide whether an entry inserts or updates, not the ERP's flag. The new lutm is the end of the audited
// period, not the end of the copy, so that the next copy reads what the ERP changes meanwhile.

#include "copy/clsDataCopy.h"
#include "platform/error.h"
#include "platform/failure_report.h"

namespace qmx {
namespace {

const Member kHasMoreElements = "hasMoreElements";
const Member kNextElement = "nextElement";
const Member kGetTuple = "getTuple";
const Member kGetCurrentObject = "getCurrentObject";
const Member kIsDeleted = "isDeleted";
const Member kIsUpdated = "isUpdated";
const Member kIsInserted = "isInserted";

// Makes a statement on the one local row that has the current object's key.
void PutStatementOnKey(SqlText& text, const std::string& statement, const KeyCondition& key, const Object& current) {
  text.Restart(statement);
  for (const KeyPart& part : key) {
    const Variant value = current.Call(part.getter);
    text.Append(part.before);
    part.isMoment ? text.Moment(value) : text.Value(value);
    text.Append(part.after);
  }
}

}  // namespace

void clsDataCopy::CopyChanged(const ChangedCopyPattern& table, const std::string& tableCode,
                              const std::string& busComponent, const ChangeMapper& setFields) {
  Audit audit;
  InsertCount = UpdateCount = DeleteCount = 0;
  try {
    CreateAudit(audit, table.manager, table.record, table.parameters.size());
    audit.manager.Call("initialize", busComponent);
    audit.recordClass = audit.record.Call("getClass");
    SetAuditPeriod(audit, tableCode);
    for (std::size_t i = 0; i < table.parameters.size(); ++i) {
      const AuditParameter& key = table.parameters[i];
      SetAuditParameter(audit.parameters[i], key.field, key.from, key.to);
      audit.criteria.Call("addParameter", audit.parameters[i]);
    }
    for (const char* field : table.outputFields) audit.criteria.Call("addOutputField", field);
    audit.reader.Call("initialize", audit.manager, audit.record, audit.criteria);
    WriteRows(tableCode, [&] {
      ApplyAuditEntries(audit, table.selectKey, table.deleteKey, tableCode, setFields);
      FinishPeriod(audit, tableCode);
    });
    WriteCountLog(tableCode, InsertCount, UpdateCount, DeleteCount);
  } catch (...) {
    FailChangedCopy(table.failure);
  }
}

void clsDataCopy::CreateAudit(Audit& audit, const char* manager, const char* record, std::size_t parameters) {
  Components& components = platform_.components;
  audit.manager = components.CreateObject(manager);
  audit.record = components.CreateObject(record);
  audit.criteria = components.CreateObject("audit.auditCriteria");
  audit.period = components.CreateObject("audit.period");
  while (audit.parameters.size() < parameters) audit.parameters.push_back(components.CreateObject("audit.Parameter"));
  audit.reader = components.CreateObject("audit.AuditReader");
  audit.status = components.CreateObject("audit.RecordStatus");
}

void clsDataCopy::SetAuditPeriod(Audit& audit, const std::string& tableCode) {
  audit.from = LastUpdateAsDateObject(tableCode);
  audit.to = NowAsDateObject();
  RunTimeStamp = Now();
  audit.period.Call("setFrom", audit.from);
  audit.period.Call("setTo", audit.to);
  audit.criteria.Call("setPeriod", audit.period);
  ReportReversedPeriod(tableCode);
}

void clsDataCopy::ReportReversedPeriod(const std::string& tableCode) {
  if (LastUpdateTime <= RunTimeStamp) return;
  platform_.failures.Report(
      Error(errors::kInvalidCall, "Changed copy",
            "The last update time of " + tableCode + ", " + LastUpdateTime.ToText() + ", lies after the clock's " +
                RunTimeStamp.ToText() +
                ", so the ERP is asked for a period that ends before it begins. Check the clock, then copy the table "
                "in full: changes may be missing."));
}

void clsDataCopy::SetAuditParameter(const Object& parameter, const char* field, const Variant& from,
                                    const Variant& to) {
  parameter.Call("setFieldName", field);
  parameter.Call("setFrom", from);
  parameter.Call("setTo", to);
}

void clsDataCopy::ApplyAuditEntries(const Audit& audit, const KeyCondition& selectKey, const KeyCondition& deleteKey,
                                    const std::string& tableCode, const ChangeMapper& setFields) {
  const std::string select = "select * from " + tableCode;
  const std::string remove = "DELETE FROM " + tableCode;
  SqlText statement("");      // on the row of the entry at hand
  std::size_t keyBegins = 0;  // in that statement's text, for the report of a failure; 0 before it is whole
  std::int64_t number = 0;    // of that entry, from 1; 0 after the last
  const auto apply = [&] {
    for (;;) {
      keyBegins = 0;
      ++number;
      if (!BooleanGivenBy(audit.reader, kHasMoreElements, audit.reader.Call(kHasMoreElements))) break;
      const Variant entry = RequiredObject(audit.reader, kNextElement, audit.reader.Call(kNextElement));
      const Variant tuple = entry.ToObject().Call(kGetTuple);
      const Object current =
          RequiredObject(audit.reader, kGetCurrentObject, audit.reader.Call(kGetCurrentObject, tuple));

      if (BooleanGivenBy(audit.status, kIsDeleted, audit.status.Call(kIsDeleted, entry))) {
        PutStatementOnKey(statement, remove, deleteKey, current);
        keyBegins = remove.size() + 1;
        LocalConnection->Execute(statement);
        Increment(DeleteCount);
        continue;
      }
      const bool updated = BooleanGivenBy(audit.status, kIsUpdated, audit.status.Call(kIsUpdated, entry));
      const bool inserted = BooleanGivenBy(audit.status, kIsInserted, audit.status.Call(kIsInserted, entry));
      if (!updated && !inserted) continue;

      PutStatementOnKey(statement, select, selectKey, current);
      keyBegins = select.size() + 1;
      LocalRecordSet->Open(statement, *LocalConnection, kCursorKeyset, kLockOptimistic, kCommandText);
      const bool isNew = LocalRecordSet->BOF();
      Increment(isNew ? InsertCount : UpdateCount);
      if (isNew) LocalRecordSet->AddNew();
      setFields({*LocalRecordSet, current, audit.manager, isNew});
      LocalRecordSet->Update();
      LocalRecordSet->Close();
    }
    number = 0;
  };
  try {
    OpenedConnection().Together(apply);
  } catch (Error& error) {
    error.With("table", tableCode);
    // An error that names its key already may be of an entry before this one: rows are sent several at a time.
    if (number > 0 && error.DetailOf("key").empty()) {
      error.With("audit entry", std::to_string(number));
      if (keyBegins > 0) error.With("key", statement.Text().substr(keyBegins));
    }
    throw;
  }
}

void clsDataCopy::FinishPeriod(const Audit& audit, const std::string& tableCode) {
  if (!DateObjectToDate(audit.to)) return;
  RunTimeStamp = ConvertedDate.ToDateTime();
  WriteLastUpdateTime(tableCode, RunTimeStamp);
}

void clsDataCopy::FailChangedCopy(const FailureTexts& failure) {
  WriteErrorLog();
  FailPlus100(failure);
}

}  // namespace qmx
