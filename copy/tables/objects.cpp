// Service objects, tscfg200.
#include "copy/clsDataCopy.h"
#include "copy/erp_listings.h"

namespace qmx {
namespace {

constexpr const char* kManager = "ServiceObjects.ServiceObjectsManager";

constexpr const char* kLastObject = "ZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZ";  // fifty

const FieldMaps kFields = {
    {"ccfg", "getConfiguration"},  {"crob", "getServiceObject"}, {"oseq", "getObjectNumber"},
    {"dsca", "getdescription"},    {"cogr", "getObjectGroup"},   {"cusc", "getUsageClass"},
    {"manu", "getManufacturedBy"}, {"ccal", "getCalendar"},      {"cdel", "getLocationAddress"},
};

const KeyCondition kKey = {
    {" where ccfg='", "getConfiguration", "'"},
    {" and crob='", "getServiceObject", "'"},
    {" and oseq= ", "getObjectNumber", ""},
};

const FullCopyPattern kFull = {
    .manager = kManager,
    .list = "List",
    .bounds = {"", "ZZZZZZZZZ", "", kLastObject, std::int16_t{0}, std::int16_t{9999}},
    .key = {"ccfg", "crob", "oseq"},
    .failure = {"Copy Service Objects", " Copy of Service Objects from Orvan to Local DB failed"},
};

const ChangedCopyPattern kChanged = {
    .manager = kManager,
    .record = "ServiceObjects.ServiceObjects",
    .parameters = {{"ccfg", "", "ZZZZZZZZ"}, {"crob", "", kLastObject}, {"oseq", "0000", "9999"}},
    .outputFields = {"desc", "cogr", "cusc", "manu", "ccal", "cdel"},
    .selectKey = kKey,
    .deleteKey = kKey,
    .failure = {"Copy Service Objects - Only Change", " Copy of Service Objects from Orvan to Local DB failed"},
};

}  // namespace

ErpListing ObjectsInErp() { return {"tscfg200", kManager, kChanged.record, kFull.list, kFull.bounds}; }

void clsDataCopy::CopyObjects(const std::string& tableCode, const std::string& busComponent, std::int16_t syncMethod) {
  if (syncMethod == kFullCopy) CopyObjectsFull(tableCode, busComponent);
  if (syncMethod == kOnlyChanged) CopyObjectsChanged(tableCode, busComponent);
}

void clsDataCopy::CopyObjectsFull(const std::string& tableCode, const std::string& busComponent) {
  CopyFull(kFull, tableCode, busComponent, &clsDataCopy::SetObjectFields);
}

void clsDataCopy::CopyObjectsChanged(const std::string& tableCode, const std::string& busComponent) {
  CopyChanged(kChanged, tableCode, busComponent, &clsDataCopy::SetObjectFields);
}

void clsDataCopy::SetObjectFields(Recordset& row, const Object& record) { SetFields(kFields, row, record); }

}  // namespace qmx
