// Service centers, tsmdm100.
//
// The audit reader's object has no description, so a changed center is read again from the listing. If the listing does
// not have it, the description stays unchanged.
#include "copy/clsDataCopy.h"
#include "copy/erp_listings.h"

namespace qmx {
namespace {

constexpr const char* kManager = "ServiceCenters.ServiceCentersManager";

const Member kList = "List";
const Member kGetKey = "getServiceCentersCode";

const FieldMap kKeyField = {"cwoc", kGetKey};
const FieldMap kFullRecordField = {"dsca", "getdescription"};
const FieldMaps kFields = {
    {"wctp", "getServiceCenterType"}, {"cmwc", "getMainServiceCenter"}, {"cwar", "getWarehouse"},
    {"clrt", "getLaborRate"},         {"srtp", "getFieldOfSupport"},    {"srep", "getSalesRepresentative"},
};

const KeyCondition kKey = {{" where cwoc='", "getServiceCentersCode", "'"}};

const FullCopyPattern kFull = {
    .manager = kManager,
    .list = kList,
    .bounds = {"", "ZZZZZZZZZ"},
    .key = {"cwoc"},
    .failure = {"Copy Service Centers", " Copy of Service Centers from Orvan to Local DB failed"},
};

const ChangedCopyPattern kChanged = {
    .manager = kManager,
    .record = "ServiceCenters.ServiceCenters",
    .parameters = {{"cwoc", "", "ZZZZZZ"}},
    .outputFields = {"cwoc", "wctp", "cmwc", "cwar", "clrt", "srtp", "srep"},
    .selectKey = kKey,
    .deleteKey = kKey,
    .failure = {"Copy Service Centers- Only Changed", " Copy of Service Centers from Orvan to Local DB failed"},
};

}  // namespace

ErpListing ServiceCentersInErp() { return {"tsmdm100", kManager, kChanged.record, kFull.list, kFull.bounds}; }

void clsDataCopy::CopyServiceCenters(const std::string& tableCode, const std::string& busComponent,
                                     std::int16_t syncMethod) {
  if (syncMethod == kFullCopy) CopyServiceCentersFull(tableCode, busComponent);
  if (syncMethod == kOnlyChanged) CopyServiceCentersChanged(tableCode, busComponent);
}

void clsDataCopy::CopyServiceCentersFull(const std::string& tableCode, const std::string& busComponent) {
  CopyFull(kFull, tableCode, busComponent,
           [this](Recordset& row, const Object& record) { SetServiceCenterFields(row, record, true); });
}

void clsDataCopy::CopyServiceCentersChanged(const std::string& tableCode, const std::string& busComponent) {
  CopyChanged(kChanged, tableCode, busComponent, [this](const Change& change) {
    const Variant key = change.current.Call(kGetKey);
    const Object record = FirstRecord(List(change.manager, kList, {key, key}));
    SetServiceCenterFields(change.row, record ? record : change.current, bool(record));
  });
}

void clsDataCopy::SetServiceCenterFields(Recordset& row, const Object& record, bool fullRecord) {
  SetField(kKeyField, row, record);
  if (fullRecord) SetField(kFullRecordField, row, record);
  SetFields(kFields, row, record);
}

}  // namespace qmx
