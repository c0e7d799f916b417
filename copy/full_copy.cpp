// The steps of a full copy: empty the local table, then add every record that the ERP lists.
//
// Rows are saved one by one, without a transaction: a failure undoes neither the deletion nor the rows before it. Only
// a copy in whole mode takes them back (whole_copy.cpp).
#include "copy/clean_up.h"
#include "copy/clsDataCopy.h"
#include "platform/error.h"
#include "platform/join.h"
#include "platform/value_text.h"

namespace qmx {
namespace {

const Member kHasMoreElements = "hasMoreElements";
const Member kNextElement = "nextElement";

std::string PlaceInListing(std::int32_t recordsBefore) {
  return "of the listing's record " + std::to_string(std::int64_t{recordsBefore} + 1);
}

// Describes a record in the report of a failure: by the key columns that were filled before it, or by its place in the
// listing if the key could not be read.
std::string DescribeRecord(Recordset& row, const std::vector<Column>& key, std::int32_t recordsBefore) {
  std::string text;
  try {
    for (const Column& column : key) {
      const Variant value = row.Fields(column).Value();
      if (value.IsEmpty() || value.IsNull()) break;  // not assigned yet
      AppendItem(text, ", ", std::string(column.Name()) + "=" + ValueText(value));
    }
  } catch (const Error&) {  // the local table lacks the key's column, which is the failure to report
  }
  return text.empty() ? PlaceInListing(recordsBefore) : text;
}

}  // namespace

void clsDataCopy::CopyFull(const FullCopyPattern& table, const std::string& tableCode, const std::string& busComponent,
                           const Mapper& setFields) {
  Object manager, enumeration;
  InsertCount = 0;
  try {
    manager = platform_.components.CreateObject(table.manager);
    manager.Call("initialize", busComponent);
    enumeration = List(manager, table.list, table.bounds, tableCode);
    RunTimeStamp = Now();
    if (enumeration) {
      WriteRows(tableCode, [&] {
        // An empty listing keeps the local rows: an ERP that lists nothing is probably not well.
        if (BooleanGivenBy(enumeration, kHasMoreElements, enumeration.Call(kHasMoreElements)))
          DeleteAllRecords(tableCode);
        OpenTable(tableCode);
        RunTimeStamp = Now();
        AddRecords(enumeration, table.key, tableCode, setFields);
        LocalRecordSet->Update();
        WriteLastUpdateTime(tableCode, RunTimeStamp);
        LocalRecordSet->Close();
      });
      WriteCountLog(tableCode, InsertCount, 0, 0);
    }
    manager.Call("Close");
  } catch (...) {
    FailFullCopy(manager, table.failure);
  }
}

void clsDataCopy::DeleteAllRecords(const std::string& tableCode) {
  try {
    const SqlText statement("DELETE FROM " + tableCode + " WHERE 1=1");
    LocalConnection->CommandTimeout(kDeleteTimeout);
    LocalConnection->Execute(statement);
  } catch (...) {
    throw Error(NumberPlus100(CurrentError().Number()), "Delete All Records",
                "Deleting records from " + tableCode + " failed");
  }
}

void clsDataCopy::OpenTable(const std::string& tableCode) {
  LocalRecordSet->Open(tableCode, *LocalConnection, kCursorKeyset, kLockOptimistic, kCommandTable);
}

// Each AddNew saves the row before it. The caller saves the last one.
void clsDataCopy::AddRecords(const Object& enumeration, const std::vector<Column>& key, const std::string& tableCode,
                             const Mapper& setFields) {
  while (BooleanGivenBy(enumeration, kHasMoreElements, enumeration.Call(kHasMoreElements))) {
    Object record;
    try {
      record = RequiredObject(enumeration, kNextElement, enumeration.Call(kNextElement));
    } catch (Error& error) {
      error.With("table", tableCode).With("key", PlaceInListing(InsertCount));
      throw;
    }
    LocalRecordSet->AddNew();
    try {
      setFields(*LocalRecordSet, record);
    } catch (Error& error) {
      error.With("table", tableCode).With("key", DescribeRecord(*LocalRecordSet, key, InsertCount));
      throw;
    }
    Increment(InsertCount);
  }
}

void clsDataCopy::FailFullCopy(const Object& manager, const FailureTexts& failure) {
  const std::int32_t trapped = CurrentError().Number();
  CleanUp cleanUp;
  cleanUp.Take([&] {
    if (LocalRecordSet->State() == kStateClosed) return;
    LocalRecordSet->CancelUpdate();  // Close would save the half-filled row
    LocalRecordSet->Close();         // raises the error of a waiting row
  });
  cleanUp.Take([&] {
    if (manager) manager.Call("Close");
  });
  cleanUp.Raise(Error(NumberPlus100(trapped), failure.source, failure.description));
}

}  // namespace qmx
