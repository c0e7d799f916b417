#include "tests/copy/tables/table_copy.h"

namespace qmx::test::service_orders {
namespace {

using testing::HasSubstr;

constexpr const char* kTable = "tssoc200";
constexpr const char* kManager = "ServiceOrders.ServiceOrdersManager";
constexpr const char* kRecord = "ServiceOrders.ServiceOrders";
constexpr const char* kListing = "listServiceOrders";
const std::vector<std::string> kColumns = {"orno", "ccfg", "ofbp", "stna", "lcad", "cprj", "ordt", "osta",
                                           "cwoc", "csar", "emno", "blyn", "ityn", "crit", "ordu", "tvdu",
                                           "pstm", "pftm", "estm", "lftm", "otim", "appo", "rsrp", "tstm",
                                           "astm", "aftm", "csco", "csqu", "stbp", "emer", "minu", "ract"};

// What the audit reader gives of an order: everything but the sold-to partner's name. The dates are one per hour of
// 20 November 2026, in the order of the columns; the travel start is no date.
Getters AuditedOrder(CopyRig& rig, const std::string& number, const std::string& partner, std::int16_t yes = 1) {
  const auto hour = [&](int hour) { return rig.erp.Date({126, 10, 20, hour, 0, 0}); };
  return {{"getServiceOrder", number},
          {"getConfiguration", "CF1"},
          {"getSoldToBusinessPartner", partner},
          {"getLocationAddress", "AD1"},
          {"getProject", "PR1"},
          {"getOrderDate", hour(1)},
          {"getOrderStatus", std::int16_t{3}},
          {"getServiceCenter", "C1"},
          {"getServiceArea", "A1"},
          {"getServiceEngineer", "E1"},
          {"getBlocked", yes},
          {"getInterrupted", std::int16_t{2}},
          {"getInterruptionReason", "IR"},
          {"getOrderDuration", 1.5},
          {"getTravelDuration", 0.25},
          {"getPlannedStartTime", hour(2)},
          {"getPlannedFinishTime", hour(3)},
          {"getPlannedEarliestStartTime", hour(4)},
          {"getPlannedLatestFinishTime", hour(5)},
          {"getOvertime", std::int16_t{0}},
          {"getAppointment", yes},
          {"getRescheduleWithDetailSRP", std::int16_t{7}},
          {"getActualTravelStartTime", rig.erp.Date({0, 0, 1, 0, 0, 0})},
          {"getExecutionStartTime", hour(6)},
          {"getExecutionFinishTime", hour(7)},
          {"getServiceContract", "CO1"},
          {"getServiceOrderQuotation", "QU1"},
          {"getShipToBusinessPartner", "SH1"},
          {"getEmergencyOrder", yes},
          {"getPageFrequency", std::int16_t{15}},
          {"getDispatchTime", hour(8)}};
}

Getters Order(CopyRig& rig, const std::string& number, const std::string& partner, const std::string& name) {
  Getters getters = AuditedOrder(rig, number, partner);
  getters.insert({"getSoldToBusinessPartnerName", name});
  return getters;
}

constexpr const char* kRestOfTheRow =
    "\"AD1\", \"PR1\", 2026-11-20 01:00:00, \"3\", \"C1\", \"A1\", \"E1\", 1, 0, \"IR\", 1.5, 0.25, 2026-11-20 "
    "02:00:00, "
    "2026-11-20 03:00:00, 2026-11-20 04:00:00, 2026-11-20 05:00:00, 0, 1, 0, null, 2026-11-20 06:00:00, "
    "2026-11-20 07:00:00, \"CO1\", \"QU1\", \"SH1\", 1, 15.0, 2026-11-20 08:00:00";

TEST(ServiceOrders, AreCopiedInFullWithTheNameOfTheSoldToPartner) {
  CopyRig rig;
  rig.erp.Lists(kManager, {Order(rig, "SO1", "BP1", "Bakery")}, kListing);
  rig.Run(kTable);
  EXPECT_THAT(rig.Rows(kTable, kColumns),
              ElementsAre(std::string("\"SO1\", \"CF1\", \"BP1\", \"Bakery\", ") + kRestOfTheRow));
  EXPECT_EQ(ColumnsWritten(rig.calls),
            "orno ccfg ofbp stna lcad cprj ordt osta cwoc csar emno blyn ityn crit ordu tvdu pstm pftm estm lftm otim "
            "appo rsrp tstm astm aftm csco csqu stbp emer minu ract");
  EXPECT_EQ(MembersCalled(rig.calls, "listed1"),
            "getServiceOrder getConfiguration getSoldToBusinessPartner getSoldToBusinessPartnerName "
            "getLocationAddress getProject getOrderDate getOrderStatus getServiceCenter getServiceArea "
            "getServiceEngineer getBlocked getInterrupted getInterruptionReason getOrderDuration getTravelDuration "
            "getPlannedStartTime getPlannedFinishTime getPlannedEarliestStartTime getPlannedLatestFinishTime "
            "getOvertime getAppointment getRescheduleWithDetailSRP getActualTravelStartTime getExecutionStartTime "
            "getExecutionFinishTime getServiceContract getServiceOrderQuotation getShipToBusinessPartner "
            "getEmergencyOrder getPageFrequency getDispatchTime");
  EXPECT_THAT(ManagerCalls(rig.calls),
              ElementsAre("manager.initialize(\"Orvan, main\")", "manager.listServiceOrders(\"\", \"ZZZZZZZZZ\")",
                          "manager.Close()"));
}

TEST(ServiceOrders, AreCopiedByChange) {
  CopyRig rig;
  rig.Sql("insert into tssoc200 (orno, ofbp, stna) values ('SO2', 'BP2', 'kept'), ('SO3', 'BP3', 'gone')");
  rig.erp.ListsBy(
      kManager,
      [&](ScriptedObject::Arguments bounds) {
        return std::vector<Getters>{Order(rig, bounds[0].Value().ToText(), "BP1", "Bakery")};
      },
      kListing);
  RunChanged(rig, kTable, kRecord,
             {Inserted(AuditedOrder(rig, "SO1", "BP1")), Updated(AuditedOrder(rig, "SO2", "BP2")),
              Deleted({{"getServiceOrder", "SO3"}})});
  EXPECT_THAT(rig.Rows(kTable, kColumns),
              ElementsAre(std::string("\"SO1\", \"CF1\", \"BP1\", \"Bakery\", ") + kRestOfTheRow,
                          std::string("\"SO2\", \"CF1\", \"BP2\", \"kept\", ") + kRestOfTheRow));
  EXPECT_THAT(Criteria(rig.calls),
              ElementsAre("\"orno\" \"\" \"ZZZZZZZZZ\"",
                          "ofbp ccfg cprj ordt osta cwoc csar emno blyn emer ityn crit ordu tvdu pstm pftm estm lftm "
                          "otim appo rsrp ract tstm astm aftm csco csqu stbp lcad"));
  EXPECT_THAT(SqlTexts(rig.calls),
              ElementsAre("select * from tssoc200 where orno='SO1'", "select * from tssoc200 where orno='SO2'",
                          "DELETE FROM tssoc200 WHERE orno='SO3'"));
}

Getters OrderWithBooleans(CopyRig& rig) {
  Getters order = Order(rig, "SO1", "BP1", "Bakery");
  order.insert_or_assign("getBlocked", true);
  order.insert_or_assign("getInterrupted", false);
  order.insert_or_assign("getAppointment", true);
  return order;
}

TEST(ServiceOrders, TakeABooleanForTheErpsYesOrNo) {
  CopyRig full;
  full.erp.Lists(kManager, {OrderWithBooleans(full)}, kListing);
  full.Run(kTable);
  EXPECT_THAT(full.Rows(kTable, {"blyn", "ityn", "appo"}), ElementsAre("1, 0, 1"));

  CopyRig changed;
  changed.erp.Lists(kManager, {OrderWithBooleans(changed)}, kListing);
  RunChanged(changed, kTable, kRecord, {Inserted(OrderWithBooleans(changed))});
  EXPECT_THAT(changed.Rows(kTable, {"blyn", "ityn", "appo"}), ElementsAre("1, 0, 1"));
}

// The stored name and how often the listing was read, after one order of partner "NEW" came by change.
struct NameAfter {
  std::string stna;
  std::size_t readings;
};

NameAfter NameAfterChange(const std::string& localRow, bool listed) {
  CopyRig rig;
  if (!localRow.empty()) rig.Sql("insert into tssoc200 (orno, ofbp, stna) values (" + localRow + ")");
  std::vector<Getters> listing;
  if (listed) listing.push_back(Order(rig, "SO1", "NEW", "Listed name"));
  rig.erp.Lists(kManager, listing, kListing);
  RunChanged(rig, kTable, kRecord, {Updated(AuditedOrder(rig, "SO1", "NEW"))});
  return {rig.Rows(kTable, {"stna"}).at(0), rig.calls.Count("manager.listServiceOrders(\"SO1\", \"SO1\")")};
}

TEST(ServiceOrders, TakeTheNameFromTheListingWhenTheyAreNewOrTheirPartnerHasChanged) {
  const NameAfter isNew = NameAfterChange("", true);
  EXPECT_EQ(isNew.stna, "\"Listed name\"");
  EXPECT_EQ(isNew.readings, 1u);

  const NameAfter changed = NameAfterChange("'SO1', 'OLD', 'Old name'", true);
  EXPECT_EQ(changed.stna, "\"Listed name\"");
  EXPECT_EQ(changed.readings, 1u);

  const NameAfter hadNone = NameAfterChange("'SO1', null, null", true);
  EXPECT_EQ(hadNone.stna, "\"Listed name\"");
  EXPECT_EQ(hadNone.readings, 1u);
}

TEST(ServiceOrders, KeepTheirNameWhenThePartnerIsTheSame) {
  const NameAfter same = NameAfterChange("'SO1', 'NEW', 'Old name'", true);
  EXPECT_EQ(same.stna, "\"Old name\"");
  EXPECT_EQ(same.readings, 0u);
}

TEST(ServiceOrders, KeepTheirNameOrHaveNoneWhenTheListingFindsNothing) {
  EXPECT_EQ(NameAfterChange("", false).stna, "null");
  EXPECT_EQ(NameAfterChange("'SO1', 'OLD', 'Old name'", false).stna, "\"Old name\"");
}

TEST(ServiceOrders, ArePutInOrderOfCallsForANewOrder) {
  CopyRig rig;
  rig.erp.Lists(kManager, {Order(rig, "SO1", "BP1", "Bakery")}, kListing);
  RunChanged(rig, kTable, kRecord, {Inserted(AuditedOrder(rig, "SO1", "BP1"))});
  EXPECT_THAT(
      rig.calls.StartingWith({"current1", "manager.", "listing", "rs1.Open", "rs1.AddNew", "rs1.orno", "rs1.stna",
                              "rs1.Update", "rs1.Close"}),
      ElementsAre("manager.initialize(\"Orvan, main\")", "current1.getServiceOrder()",
                  "rs1.Open \"select * from tssoc200 where orno='SO1'\" 1 3 1", "rs1.AddNew",
                  "current1.getServiceOrder()", "current1.getServiceOrder()",
                  "manager.listServiceOrders(\"SO1\", \"SO1\")", "listing.hasMoreElements()", "listing.nextElement()",
                  "rs1.orno = \"SO1\"", "rs1.stna = \"Bakery\"", "rs1.Update", "rs1.Close"));
}

TEST(ServiceOrders, StoreEveryCodeButYesAsZero) {
  for (const int code : {0, 2, 3, -1, 256}) {
    CopyRig rig;
    Getters order = AuditedOrder(rig, "SO1", "BP1", static_cast<std::int16_t>(code));
    order.insert({"getSoldToBusinessPartnerName", "Bakery"});
    rig.erp.Lists(kManager, {order}, kListing);
    rig.Run(kTable);
    EXPECT_THAT(rig.Rows(kTable, {"blyn", "appo", "emer"}), ElementsAre("0, 0, 0")) << code;
  }
}

TEST(ServiceOrders, FailOnADateThatIsNoObject) {
  CopyRig rig;
  Getters order = Order(rig, "SO1", "BP1", "Bakery");
  order.insert_or_assign("getOrderDate", Variant::Null());
  rig.erp.Lists(kManager, {order}, kListing);
  rig.Run(kTable);
  ASSERT_EQ(rig.failures.chains.size(), 1u);
  EXPECT_THAT(rig.failures.chains[0], HasSubstr("because of error 91"));
  EXPECT_THAT(rig.failures.chains[0], HasSubstr("column: ordt"));
  EXPECT_THAT(rig.failures.chains[0], HasSubstr("key: orno='SO1'"));
}

TEST(ServiceOrders, FailWithTheirTexts) {
  EXPECT_EQ(FailureOfFullCopy(kTable, kManager),
            "error 600, Copy Service Orders:  Copy of Service Orders from Orvan to Local DB failed");
  EXPECT_EQ(FailureOfChangedCopy(kTable, kManager),
            "error 600, Copy Service Orders - Only Changed:  Copy of Service Orders from Orvan to Local DB failed");
}

}  // namespace
}  // namespace qmx::test::service_orders
