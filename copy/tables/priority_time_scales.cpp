// Priority time scales, tsclm024.
#include "copy/clsDataCopy.h"
#include "copy/erp_listings.h"

namespace qmx {
namespace {

constexpr const char* kManager = "PriorityTimeScale.PriorityTimeScaleManager";

const FieldMaps kFields = {
    {"sltt", "getSolutionTimeInMinutes", Conversion::TwoDecimals},
    {"dsca", "getdescription"},
};

const KeyCondition kKey = {{" where sltt=", "getSolutionTimeInMinutes", ""}};

const FullCopyPattern kFull = {
    .manager = kManager,
    .list = "List",
    .bounds = {0.0, 99999.9999},
    .key = {"sltt"},
    .failure = {"Copy Priority Time Scales", " Copy of Priority Time Scales from Orvan to Local DB failed"},
};

const ChangedCopyPattern kChanged = {
    .manager = kManager,
    .record = "PriorityTimeScale.PriorityTimeScale",
    .parameters = {{"sltt", "000.00", "999.99"}},
    .outputFields = {"sltt", "desc"},
    .selectKey = kKey,
    .deleteKey = kKey,
    .failure = {"Copy Service Priority Time Scales - Only Changed",
                " Copy of Service Priority Time Scales from Orvan to Local DB failed"},
};

}  // namespace

ErpListing PriorityTimeScalesInErp() { return {"tsclm024", kManager, kChanged.record, kFull.list, kFull.bounds}; }

void clsDataCopy::CopyPriorityTimeScales(const std::string& tableCode, const std::string& busComponent,
                                         std::int16_t syncMethod) {
  if (syncMethod == kFullCopy) CopyPriorityTimeScalesFull(tableCode, busComponent);
  if (syncMethod == kOnlyChanged) CopyPriorityTimeScalesChanged(tableCode, busComponent);
}

void clsDataCopy::CopyPriorityTimeScalesFull(const std::string& tableCode, const std::string& busComponent) {
  CopyFull(kFull, tableCode, busComponent, &clsDataCopy::SetPriorityTimeScaleFields);
}

void clsDataCopy::CopyPriorityTimeScalesChanged(const std::string& tableCode, const std::string& busComponent) {
  CopyChanged(kChanged, tableCode, busComponent, &clsDataCopy::SetPriorityTimeScaleFields);
}

void clsDataCopy::SetPriorityTimeScaleFields(Recordset& row, const Object& record) { SetFields(kFields, row, record); }

}  // namespace qmx
