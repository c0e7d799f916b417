// Availability types (tcccp001).
#include "copy/clsDataCopy.h"
#include "copy/erp_listings.h"

namespace qmx {
namespace {

constexpr const char* kManager = "AvailabilityType.AvailabilityTypeManager";
constexpr const char* kHighestType = "ZZZZZZ";

const FullCopyPattern kFull = {
    .manager = kManager,
    .list = "ListAllAvailable",
    .bounds = {"", kHighestType},
    .key = {"ract"},
    .failure = {"Copy Availability Types", " Copy of Availability Types from Orvan to Local DB failed"},
};

const KeyCondition kKey = {{" where ract='", "getavailabilityType", "'"}};

const ChangedCopyPattern kChanged = {
    .manager = kManager,
    .record = "AvailabilityType.AvailabilityType",
    .parameters = {{"ract", "", kHighestType}},
    .outputFields = {"dsca", "avlb", "ptmu", "hrsd"},
    .selectKey = kKey,
    .deleteKey = kKey,
    .failure = {"Copy Availability Type", " Copy of Availability Type from Orvan to Local DB failed"},
};

const FieldMaps kFields = {
    {"ract", "getavailabilityType"}, {"dsca", "getdescription"}, {"ptmu", "getplanTimeUnit"},
    {"hrsd", "getnoOfHoursPerDay"},  {"avlb", "getavailable"},
};

}  // namespace

ErpListing AvailabilityTypesInErp() { return {"tcccp001", kManager, kChanged.record, kFull.list, kFull.bounds}; }

void clsDataCopy::CopyAvailabilityTypes(const std::string& tableCode, const std::string& busComponent,
                                        std::int16_t syncMethod) {
  if (syncMethod == kFullCopy) CopyAvailabilityTypesFull(tableCode, busComponent);
  if (syncMethod == kOnlyChanged) CopyAvailabilityTypesChanged(tableCode, busComponent);
}

void clsDataCopy::CopyAvailabilityTypesFull(const std::string& tableCode, const std::string& busComponent) {
  CopyFull(kFull, tableCode, busComponent, &clsDataCopy::SetAvailabilityTypeFields);
}

void clsDataCopy::CopyAvailabilityTypesChanged(const std::string& tableCode, const std::string& busComponent) {
  CopyChanged(kChanged, tableCode, busComponent, &clsDataCopy::SetAvailabilityTypeFields);
}

void clsDataCopy::SetAvailabilityTypeFields(Recordset& row, const Object& record) { SetFields(kFields, row, record); }

}  // namespace qmx
