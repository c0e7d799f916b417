// Response times, tsclm020.
#include "copy/clsDataCopy.h"
#include "copy/erp_listings.h"

namespace qmx {
namespace {

constexpr const char* kManager = "ResponseTimes.ResponseTimesManager";

const FieldMaps kFields = {
    {"crtc", "getResponseTime"},
    {"dsca", "getResponseTimeDescription"},
    {"ccal", "getCalendar"},
    {"rctt", "getReactionPeriod", Conversion::TwoDecimals},
    {"enst", "getSolutionStartPeriod", Conversion::TwoDecimals},
    {"sltn", "getSolutionFinishPeriod", Conversion::TwoDecimals},
};

const KeyCondition kKey = {{" where crtc='", "getResponseTime", "'"}};

const FullCopyPattern kFull = {
    .manager = kManager,
    .list = "List",
    .bounds = {"", "ZZZZZZZZZ"},
    .key = {"crtc"},
    .failure = {"Copy Response Times", " Copy of Response Times from Orvan to Local DB failed"},
};

const ChangedCopyPattern kChanged = {
    .manager = kManager,
    .record = "ResponseTimes.ResponseTimes",
    .parameters = {{"crtc", "", "ZZZ"}},
    .outputFields = {"crtc", "desc", "ccal", "rctt", "enst", "sltn"},
    .selectKey = kKey,
    .deleteKey = kKey,
    .failure = {"Copy Service Response Times - Only Changed",
                " Copy of Service Response Times from Orvan to Local DB failed"},
};

}  // namespace

ErpListing ResponseTimesInErp() { return {"tsclm020", kManager, kChanged.record, kFull.list, kFull.bounds}; }

void clsDataCopy::CopyResponseTimes(const std::string& tableCode, const std::string& busComponent,
                                    std::int16_t syncMethod) {
  if (syncMethod == kFullCopy) CopyResponseTimesFull(tableCode, busComponent);
  if (syncMethod == kOnlyChanged) CopyResponseTimesChanged(tableCode, busComponent);
}

void clsDataCopy::CopyResponseTimesFull(const std::string& tableCode, const std::string& busComponent) {
  CopyFull(kFull, tableCode, busComponent, &clsDataCopy::SetResponseTimeFields);
}

void clsDataCopy::CopyResponseTimesChanged(const std::string& tableCode, const std::string& busComponent) {
  CopyChanged(kChanged, tableCode, busComponent, &clsDataCopy::SetResponseTimeFields);
}

void clsDataCopy::SetResponseTimeFields(Recordset& row, const Object& record) { SetFields(kFields, row, record); }

}  // namespace qmx
