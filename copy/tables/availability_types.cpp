// Availability types (tcccp001).
#include "copy/clsDataCopy.h"

namespace qmx {
namespace {

constexpr const char* kManager = "AvailabilityType.AvailabilityTypeManager";
constexpr const char* kHighestType = "ZZZZZZ";

const FullCopy kFull = {
    .manager = kManager,
    .list = "ListAllAvailable",
    .bounds = {"", kHighestType},
    .key = {"ract"},
    .failure = {"Copy Availability Types", " Copy of Availability Types from Orvan to Local DB failed"},
};

const KeyCondition kKey = {{" where ract='", "getavailabilityType", "'"}};

const ChangedCopy kChanged = {
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

ErpListing clsDataCopy::AvailabilityTypesInErp() {
  return {"tcccp001", kManager, kChanged.record, kFull.list, kFull.bounds};
}

void clsDataCopy::CopyAvailabilityTypes(Text tableCode, Text busComponent, std::int16_t syncMethod) {
  if (syncMethod == kFullCopy) CopyAvailabilityTypesFull(tableCode, busComponent);
  if (syncMethod == kOnlyChanged) CopyAvailabilityTypesChanged(tableCode, busComponent);
}

void clsDataCopy::CopyAvailabilityTypesFull(Text tableCode, Text busComponent) {
  CopyFull(kFull, tableCode, busComponent,
           [this](Recordset& row, const Object& record) { SetAvailabilityTypeFields(row, record); });
}

void clsDataCopy::CopyAvailabilityTypesChanged(Text tableCode, Text busComponent) {
  CopyChanged(kChanged, tableCode, busComponent,
              [this](const Change& change) { SetAvailabilityTypeFields(change.row, change.current); });
}

void clsDataCopy::SetAvailabilityTypeFields(Recordset& row, const Object& record) { SetFields(kFields, row, record); }

}  // namespace qmx
