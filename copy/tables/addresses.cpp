// Addresses, tccom130.
#include "copy/clsDataCopy.h"
#include "copy/erp_listings.h"

namespace qmx {
namespace {

constexpr const char* kManager = "Addresses.AddressesManager";

const FieldMaps kFields = {
    {"cadr", "getAddressCode"}, {"nama", "getName"}, {"namc", "getAddress"},
    {"hono", "getHouseNumber"}, {"Name", "getCity"}, {"pstc", "getZIPCodePostalCode"},
};

const KeyCondition kKey = {{" where cadr='", "getAddressCode", "'"}};

const FullCopyPattern kFull = {
    .manager = kManager,
    .list = "List",
    .bounds = {"", "ZZZZZZZZZZZZ"},
    .key = {"cadr"},
    .failure = {"Copy Addresses", " Copy of Addresses from Orvan to Local DB failed"},
};

const ChangedCopyPattern kChanged = {
    .manager = kManager,
    .record = "Addresses.Addresses",
    .parameters = {{"cadr", "", "ZZZZZZZZZ"}},
    .outputFields = {"cadr", "nama", "namc", "hono", "name", "pstc"},
    .selectKey = kKey,
    .deleteKey = kKey,
    .failure = {"Copy Addresses - Only Changed", " Copy of Addresses from Orvan to Local DB failed"},
};

}  // namespace

ErpListing AddressesInErp() { return {"tccom130", kManager, kChanged.record, kFull.list, kFull.bounds}; }

void clsDataCopy::CopyAddresses(const std::string& tableCode, const std::string& busComponent,
                                std::int16_t syncMethod) {
  if (syncMethod == kFullCopy) CopyAddressesFull(tableCode, busComponent);
  if (syncMethod == kOnlyChanged) CopyAddressesChanged(tableCode, busComponent);
}

void clsDataCopy::CopyAddressesFull(const std::string& tableCode, const std::string& busComponent) {
  CopyFull(kFull, tableCode, busComponent, &clsDataCopy::SetAddressFields);
}

void clsDataCopy::CopyAddressesChanged(const std::string& tableCode, const std::string& busComponent) {
  CopyChanged(kChanged, tableCode, busComponent, &clsDataCopy::SetAddressFields);
}

void clsDataCopy::SetAddressFields(Recordset& row, const Object& record) { SetFields(kFields, row, record); }

}  // namespace qmx
