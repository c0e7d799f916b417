// Service employees, tsmdm140.
//
// The audit reader's object has no description, service center or calendar, so a changed employee is read again from
// the listing. If the listing does not have it, the three columns stay unchanged.
#include "copy/clsDataCopy.h"
#include "copy/erp_listings.h"

namespace qmx {
namespace {

constexpr const char* kManager = "ServiceEmployees.ServiceEmployeesManager";

const Member kList = "List";
const Member kGetKey = "getserviceemployee";

const FieldMap kKeyField = {"emno", kGetKey};
const FieldMaps kFullRecordFields = {
    {"dsca", "getServiceEmployeeName"},
    {"cwoc", "getServiceCenter"},
    {"ccal", "getCalendarCode"},
};
const FieldMaps kFields = {
    {"frmn", "getForeman"},    {"csar", "getServiceArea"},           {"ccar", "getServiceCar"},
    {"ouser", "getLoginCode"}, {"mpod", "getMaximumOvertimePerDay"},
};

const KeyCondition kKey = {{" where emno='", "getserviceemployee", "'"}};

const FullCopyPattern kFull = {
    .manager = kManager,
    .list = kList,
    .bounds = {"", "ZZZZZZZZZ", "", "ZZZZZZZZZ", "", "ZZZZZZZZZ"},
    .key = {"emno"},
    .failure = {"Copy Service Employees", " Copy of Service Employees from Orvan to Local DB failed"},
};

const ChangedCopyPattern kChanged = {
    .manager = kManager,
    .record = "ServiceEmployees.ServiceEmployees",
    .parameters = {{"emno", "", "ZZZZZZ"}},
    .outputFields = {"emno", "frmn", "csar", "ccar", "user", "mopd"},
    .selectKey = kKey,
    .deleteKey = kKey,
    .failure = {"Copy Service Employees", " Copy of Service Employees from Orvan to Local DB failed"},
};

}  // namespace

ErpListing ServiceEmployeesInErp() { return {"tsmdm140", kManager, kChanged.record, kFull.list, kFull.bounds}; }

void clsDataCopy::CopyServiceEmployees(const std::string& tableCode, const std::string& busComponent,
                                       std::int16_t syncMethod) {
  if (syncMethod == kFullCopy) CopyServiceEmployeesFull(tableCode, busComponent);
  if (syncMethod == kOnlyChanged) CopyServiceEmployeesChanged(tableCode, busComponent);
}

void clsDataCopy::CopyServiceEmployeesFull(const std::string& tableCode, const std::string& busComponent) {
  CopyFull(kFull, tableCode, busComponent,
           [this](Recordset& row, const Object& record) { SetServiceEmployeeFields(row, record, true); });
}

void clsDataCopy::CopyServiceEmployeesChanged(const std::string& tableCode, const std::string& busComponent) {
  CopyChanged(kChanged, tableCode, busComponent, [this](const Change& change) {
    const Variant key = change.current.Call(kGetKey);
    const Object record = FirstRecord(List(change.manager, kList, {key, key, "", "ZZZZZZZZZ", "", "ZZZZZZZZZ"}));
    SetServiceEmployeeFields(change.row, record ? record : change.current, bool(record));
  });
}

void clsDataCopy::SetServiceEmployeeFields(Recordset& row, const Object& record, bool fullRecord) {
  SetField(kKeyField, row, record);
  if (fullRecord) SetFields(kFullRecordFields, row, record);
  SetFields(kFields, row, record);
}

}  // namespace qmx
