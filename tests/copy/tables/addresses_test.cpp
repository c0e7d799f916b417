#include "tests/copy/tables/table_copy.h"

namespace qmx::test::addresses {
namespace {

constexpr const char* kTable = "tccom130";
constexpr const char* kManager = "Addresses.AddressesManager";
constexpr const char* kRecord = "Addresses.Addresses";
const std::vector<std::string> kColumns = {"cadr", "nama", "namc", "hono", "Name", "pstc"};

Getters Address(const std::string& code, const std::string& suffix) {
  return {{"getAddressCode", code},          {"getName", "Miller" + suffix}, {"getAddress", "Main Street" + suffix},
          {"getHouseNumber", "12" + suffix}, {"getCity", "Ede" + suffix},    {"getZIPCodePostalCode", "67" + suffix}};
}

TEST(Addresses, AreCopiedInFullWithTheCityInTheColumnName) {
  CopyRig rig;
  rig.erp.Lists(kManager, {Address("AD1", "a")});
  rig.Run(kTable);
  EXPECT_THAT(rig.Rows(kTable, kColumns),
              ElementsAre("\"AD1\", \"Millera\", \"Main Streeta\", \"12a\", \"Edea\", \"67a\""));
  EXPECT_EQ(ColumnsWritten(rig.calls), "cadr nama namc hono Name pstc");
  EXPECT_EQ(MembersCalled(rig.calls, "listed1"),
            "getAddressCode getName getAddress getHouseNumber getCity getZIPCodePostalCode");
  EXPECT_THAT(ManagerCalls(rig.calls), ElementsAre("manager.initialize(\"Orvan, main\")",
                                                   "manager.List(\"\", \"ZZZZZZZZZZZZ\")", "manager.Close()"));
}

TEST(Addresses, AreCopiedByChange) {
  CopyRig rig;
  rig.Sql("insert into tccom130 (cadr, nama) values ('AD2', 'old'), ('AD3', 'old')");
  rig.erp.Lists(kManager, {});
  RunChanged(rig, kTable, kRecord,
             {Inserted(Address("AD1", "a")), Updated(Address("AD2", "b")), Deleted({{"getAddressCode", "AD3"}})});
  EXPECT_THAT(rig.Rows(kTable, kColumns),
              ElementsAre("\"AD1\", \"Millera\", \"Main Streeta\", \"12a\", \"Edea\", \"67a\"",
                          "\"AD2\", \"Millerb\", \"Main Streetb\", \"12b\", \"Edeb\", \"67b\""));
  EXPECT_THAT(Criteria(rig.calls), ElementsAre("\"cadr\" \"\" \"ZZZZZZZZZ\"", "cadr nama namc hono name pstc"));
  EXPECT_THAT(SqlTexts(rig.calls),
              ElementsAre("select * from tccom130 where cadr='AD1'", "select * from tccom130 where cadr='AD2'",
                          "DELETE FROM tccom130 where cadr='AD3'"));
}

TEST(Addresses, FailWithTheirTexts) {
  EXPECT_EQ(FailureOfFullCopy(kTable, kManager),
            "error 600, Copy Addresses:  Copy of Addresses from Orvan to Local DB failed");
  EXPECT_EQ(FailureOfChangedCopy(kTable, kManager),
            "error 600, Copy Addresses - Only Changed:  Copy of Addresses from Orvan to Local DB failed");
}

}  // namespace
}  // namespace qmx::test::addresses
