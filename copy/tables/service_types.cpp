// Service types, tsmdm030.
#include "copy/clsDataCopy.h"
#include "copy/erp_listings.h"

namespace qmx {
namespace {

constexpr const char* kManager = "ServiceTypes.ServiceTypesManager";

const FieldMaps kFields = {
    {"cstp", "getServiceType"},
    {"dsca", "getServiceTypeDescription"},
    {"prod", "getServiceProcedure"},
    {"ract", "getavailabilityType"},
};

const KeyCondition kKey = {{" where cstp='", "getServiceType", "'"}};

const FullCopyPattern kFull = {
    .manager = kManager,
    .list = "List",
    .bounds = {"", "ZZZ"},
    .key = {"cstp"},
    .failure = {"Copy Service Types", " Copy of Service Types from Orvan to Local DB failed"},
};

const ChangedCopyPattern kChanged = {
    .manager = kManager,
    .record = "ServiceTypes.ServiceTypes",
    .parameters = {{"cstp", "", "ZZZ"}},
    .outputFields = {"desc", "proc", "ract"},
    .selectKey = kKey,
    .deleteKey = kKey,
    .failure = {"Copy Service Types - Only Changed", " Copy of Service Types from Orvan to Local DB failed"},
};

}  // namespace

ErpListing ServiceTypesInErp() { return {"tsmdm030", kManager, kChanged.record, kFull.list, kFull.bounds}; }

void clsDataCopy::CopyServiceTypes(const std::string& tableCode, const std::string& busComponent,
                                   std::int16_t syncMethod) {
  if (syncMethod == kFullCopy) CopyServiceTypesFull(tableCode, busComponent);
  if (syncMethod == kOnlyChanged) CopyServiceTypesChanged(tableCode, busComponent);
}

void clsDataCopy::CopyServiceTypesFull(const std::string& tableCode, const std::string& busComponent) {
  CopyFull(kFull, tableCode, busComponent, &clsDataCopy::SetServiceTypeFields);
}

void clsDataCopy::CopyServiceTypesChanged(const std::string& tableCode, const std::string& busComponent) {
  CopyChanged(kChanged, tableCode, busComponent, &clsDataCopy::SetServiceTypeFields);
}

void clsDataCopy::SetServiceTypeFields(Recordset& row, const Object& record) { SetFields(kFields, row, record); }

}  // namespace qmx
