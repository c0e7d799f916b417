// Bad input from the ERP: every one ends in the copy's failure path, its texts unchanged, and the chain of causes names
// the table, the column or member, and the key.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/copy/service_type.h"
#include "tests/support/copy_rig.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kAreas = "tsmdm105";
constexpr const char* kAreasManager = "ServiceAreas.ServiceAreasManager";

Getters ServiceArea(const std::string& code, Variant distance) {
  return {{"getServiceArea", code}, {"getAverageTravelingDistance", distance}, {kAnyOther, "7"}};
}

// The chain of the one failure that a run reported.
std::string Chain(const CopyRig& rig) {
  return rig.failures.chains.size() == 1 ? rig.failures.chains[0]
                                         : std::to_string(rig.failures.chains.size()) + " failures";
}

// Service types are copied by change, and this is their audit trail.
void ByChange(CopyRig& rig, const std::vector<AuditEntry>& entries) {
  rig.ControlRecord("tsmdm030", 2, "2026-11-19");
  rig.erp.Lists(kServiceTypesManager, {});
  rig.erp.Audits(kServiceTypesRecord, entries);
}

TEST(BadInput, InAFullCopyMayHoldAQuoteInAKey) {
  CopyRig rig;
  rig.erp.Lists(kServiceTypesManager, {ServiceType("O'NEIL", "it's")});
  rig.Run("tsmdm030");
  EXPECT_THAT(rig.Rows("tsmdm030", {"cstp", "dsca"}), ElementsAre("\"O'NEIL\", \"it's\""));
}

TEST(BadInput, InAChangedCopyFailsOnAQuoteInAKey) {
  CopyRig rig;
  ByChange(rig, {Updated(ServiceType("O'NEIL"))});
  rig.Run("tsmdm030");
  EXPECT_THAT(
      Chain(rig),
      AllOf(StartsWith("error -2147217800, Copy Service Types - Only Changed:  Copy of Service Types from Orvan "
                       "to Local DB failed\n"),
            HasSubstr("table: tsmdm030"), HasSubstr("key: where cstp='O'NEIL'")));
}

TEST(BadInput, OfATextInANumberColumnFailsTheFullCopy) {
  CopyRig rig;
  rig.erp.Lists(kAreasManager, {ServiceArea("A1", 1.5), ServiceArea("A2", "far")});
  rig.Run(kAreas);
  EXPECT_THAT(Chain(rig),
              AllOf(StartsWith("error 113, Copy Service Areas:  Copy of Service Areas from Orvan to Local DB failed\n"),
                    HasSubstr("table: tsmdm105"), HasSubstr("column: dist"), HasSubstr("key: csar='A2'"),
                    HasSubstr("member: getAverageTravelingDistance")));
  EXPECT_THAT(rig.Rows(kAreas, {"csar", "dist"}), ElementsAre("\"A1\", 1.5"));
}

TEST(BadInput, OfATextInANumberColumnFailsTheChangedCopyAndKeepsTheRow) {
  CopyRig rig;
  rig.ControlRecord(kAreas, 2, "2026-11-19");
  rig.Sql("insert into tsmdm105 (csar, dsca, dist) values ('A1', 'kept', 1.5)");
  rig.erp.Lists(kAreasManager, {});
  rig.erp.Audits("ServiceAreas.ServiceAreas", {Updated(ServiceArea("A1", "far"))});
  rig.Run(kAreas);
  EXPECT_THAT(Chain(rig), AllOf(StartsWith("error 113, Copy Service Areas: "), HasSubstr("table: tsmdm105"),
                                HasSubstr("column: dist"), HasSubstr("A1")));
  EXPECT_THAT(rig.Rows(kAreas, {"csar", "dsca", "dist"}), ElementsAre("\"A1\", \"kept\", 1.5"));
  EXPECT_EQ(rig.Lutm(kAreas), "2026-11-19");
}

TEST(BadInput, OfANumberThatCannotBeRoundedNamesItsColumn) {
  CopyRig rig;
  rig.erp.Lists("ResponseTimes.ResponseTimesManager",
                {{{"getResponseTime", "R1"}, {"getReactionPeriod", "soon"}, {kAnyOther, "7"}}});
  rig.Run("tsclm020");
  EXPECT_THAT(Chain(rig), AllOf(HasSubstr("because of error 13"), HasSubstr("column: rctt"),
                                HasSubstr("table: tsclm020"), HasSubstr("key: crtc='R1'")));
}

TEST(BadInput, OfANullInsteadOfAValueNamesItsColumn) {
  for (const auto& [getter, number, column] :
       {std::tuple("getBlocked", "94", "blyn"), std::tuple("getOrderDate", "91", "ordt")}) {
    CopyRig rig;
    Getters order = {{"getOrderDate", rig.erp.Date({126, 10, 20, 8, 0, 0})}, {kAnyOther, "7"}};
    order.insert_or_assign(getter, Variant::Null());
    rig.erp.Lists("ServiceOrders.ServiceOrdersManager", {order}, "listServiceOrders");
    rig.Run("tssoc200");
    EXPECT_THAT(Chain(rig), AllOf(HasSubstr(std::string("because of error ") + number + ", "),
                                  HasSubstr(std::string("column: ") + column)));
  }
  CopyRig rig;
  rig.erp.Lists("ResponseTimes.ResponseTimesManager",
                {{{"getResponseTime", "R1"}, {"getReactionPeriod", Variant::Null()}, {kAnyOther, "7"}}});
  rig.Run("tsclm020");
  EXPECT_THAT(Chain(rig), AllOf(HasSubstr("because of error 94, "), HasSubstr("column: rctt")));
}

TEST(BadInput, OfATextThatTheDatabaseFindsTooLongFailsWhenTheRowIsSaved) {
  CopyRig rig;
  rig.Sql("drop table tsmdm030");
  rig.Sql(
      "create table tsmdm030 (cstp varchar(10) primary key, dsca varchar(5) check (length(dsca) <= 5), "
      "prod varchar(10), ract varchar(10))");
  rig.erp.Lists(kServiceTypesManager, {ServiceType("A", "short"), ServiceType("B", "too long"), ServiceType("C")});
  rig.Run("tsmdm030");
  // A server finds the text longer than its column; to SQLite it breaks a rule of the table.
  EXPECT_THAT(Chain(rig), AllOf(AnyOf(StartsWith("error -2147217800, Copy Service Types: "),
                                      StartsWith("error -2147217773, Copy Service Types: ")),
                                HasSubstr("table: tsmdm030"), HasSubstr("dsca"), HasSubstr("key: cstp='B'")));
  EXPECT_THAT(rig.Rows("tsmdm030", {"cstp"}), ElementsAre("\"A\""));
}

TEST(BadInput, OfAKeyThatIsListedTwiceFailsWhenTheSecondRowIsSaved) {
  CopyRig rig;
  rig.erp.Lists(kServiceTypesManager, {ServiceType("A", "first"), ServiceType("A", "second")});
  rig.Run("tsmdm030");
  EXPECT_THAT(Chain(rig), AllOf(StartsWith("error -2147217773, Copy Service Types: "), HasSubstr("table: tsmdm030"),
                                HasSubstr("key: cstp='A'")));
  EXPECT_THAT(rig.Rows("tsmdm030", {"cstp", "dsca"}), ElementsAre("\"A\", \"first\""));
}

TEST(BadInput, OfAnObjectWithoutTheGetterNamesTheMember) {
  CopyRig rig;
  Getters record = ServiceType("A");
  record.erase("getavailabilityType");
  rig.erp.Lists(kServiceTypesManager, {record});
  rig.Run("tsmdm030");
  EXPECT_THAT(Chain(rig), AllOf(StartsWith("error 538, Copy Service Types: "), HasSubstr("member: getavailabilityType"),
                                HasSubstr("column: ract"), HasSubstr("table: tsmdm030"), HasSubstr("key: cstp='A'")));
}

TEST(BadInput, OfARecordThatIsNoObjectFails) {
  CopyRig rig;
  rig.erp.Serves(kServiceTypesManager, [&] {
    const auto manager = rig.erp.Make("manager");
    const auto listing = rig.erp.Make("listing");
    listing->Gives("hasMoreElements", true).Gives("nextElement", Variant());
    manager->Takes("initialize", 1).Takes("Close", 0);
    manager->On("List", 2, [listing](auto) { return Variant(Object(listing)); });
    return Object(manager);
  });
  rig.Run("tsmdm030");
  EXPECT_THAT(Chain(rig), AllOf(StartsWith("error 191, Copy Service Types: "), HasSubstr("member: nextElement"),
                                HasSubstr("nextElement gave no object."), HasSubstr("table: tsmdm030"),
                                HasSubstr("key: of the listing's record 1")));
}

TEST(BadInput, OfAListingThatIsATextNamesMemberAndTable) {
  CopyRig rig;
  rig.erp.Serves(kServiceTypesManager, [&] {
    const auto manager = rig.erp.Make("manager");
    manager->Takes("initialize", 1).Takes("Close", 0);
    manager->On("List", 2, [](auto) { return Variant("A;B;C"); });
    return Object(manager);
  });
  rig.Run("tsmdm030");
  EXPECT_THAT(Chain(rig), AllOf(StartsWith("error 113, Copy Service Types: "),
                                HasSubstr("because of error 13, Values: Type mismatch: a text is not an object. "
                                          "[member: List; table: tsmdm030]")));
}

TEST(BadInput, OfATextInPlaceOfAYesOrNoOfAListingNamesTheMember) {
  CopyRig rig;
  rig.erp.Serves(kServiceTypesManager, [&] {
    const auto manager = rig.erp.Make("manager");
    const auto listing = rig.erp.Make("listing");
    listing->Gives("hasMoreElements", "yes");
    manager->Takes("initialize", 1).Takes("Close", 0);
    manager->On("List", 2, [listing](auto) { return Variant(Object(listing)); });
    return Object(manager);
  });
  rig.Run("tsmdm030");
  EXPECT_THAT(Chain(rig), HasSubstr("because of error 13, Values: Type mismatch: the text 'yes' is not a number. "
                                    "[member: hasMoreElements"));
}

TEST(BadInput, OfATextInPlaceOfAYesOrNoOfTheAuditNamesTheMember) {
  for (const char* member : {"isDeleted", "isUpdated", "isInserted"}) {
    CopyRig rig;
    ByChange(rig, {Inserted({{"getServiceType", "A"}})});
    rig.erp.Serves("audit.RecordStatus", [&] {
      const auto status = rig.erp.Make("status");
      for (const char* flag : {"isDeleted", "isUpdated", "isInserted"}) {
        const bool isText = std::string_view(flag) == member;
        status->On(flag, 1, [isText](auto) { return isText ? Variant("yes") : Variant(false); });
      }
      return Object(status);
    });
    rig.Run("tsmdm030");
    EXPECT_THAT(Chain(rig), HasSubstr("Type mismatch: the text 'yes' is not a number. [member: " + std::string(member) +
                                      "; table: tsmdm030; audit entry: 1"));
  }
}

TEST(BadInput, OfAnAuditEntryThatIsNoObjectShowsItsNumber) {
  CopyRig rig;
  ByChange(rig, {});
  rig.erp.Serves("audit.AuditReader", [&] {
    const auto reader = rig.erp.Make("reader");
    reader->Takes("initialize", 3).Gives("hasMoreElements", true).Gives("nextElement", Variant());
    return Object(reader);
  });
  rig.Run("tsmdm030");
  EXPECT_THAT(Chain(rig), HasSubstr("because of error 91, clsDataCopy: Object variable not set: nextElement gave no "
                                    "object. [member: nextElement; table: tsmdm030; audit entry: 1]"));
}

TEST(BadInput, OfAnAuditEntryWithoutItsObjectBlamesTheReader) {
  CopyRig rig;
  ByChange(rig, {});
  rig.erp.Serves("audit.AuditReader", [&] {
    const auto reader = rig.erp.Make("reader");
    const auto entry = rig.erp.Make("entry");
    entry->Gives("getTuple", 1);
    reader->Takes("initialize", 3).Gives("hasMoreElements", true).Gives("nextElement", Object(entry));
    reader->On("getCurrentObject", 1, [](auto) { return Variant(Object()); });
    return Object(reader);
  });
  rig.Run("tsmdm030");
  EXPECT_THAT(Chain(rig), HasSubstr("Object variable not set: getCurrentObject gave no object. [member: "
                                    "getCurrentObject; table: tsmdm030; audit entry: 1]"));
}

TEST(BadInput, OfAnAuditEntryWhoseKeyCannotBeReadShowsItsNumber) {
  CopyRig rig;
  ByChange(rig, {Inserted(ServiceType("A")), Inserted({{"getServiceType", Error(900, "Orvan", "No.")}})});
  rig.Run("tsmdm030");
  EXPECT_THAT(Chain(rig), HasSubstr("because of error 900, Orvan: No. [table: tsmdm030; audit entry: 2]"));
}

// Rows may be sent several at a time, so the refused row need not be that of the entry at hand.
TEST(BadInput, OfAnAuditEntryWhoseRowIsRefusedNamesTheKeyOfThatRowAlone) {
  CopyRig rig;
  ByChange(rig, {Inserted(ServiceType("A")), Inserted(ServiceType("B", "twice")), Inserted(ServiceType("C")),
                 Inserted(ServiceType("D"))});
  rig.Sql("create unique index one_description on tsmdm030 (dsca)");
  rig.Sql("insert into tsmdm030 (cstp, dsca) values ('X', 'twice')");
  rig.Run("tsmdm030");
  EXPECT_THAT(Chain(rig), AllOf(StartsWith("error -2147217773, Copy Service Types - Only Changed: "),
                                HasSubstr("table: tsmdm030; key: cstp='B'"), Not(HasSubstr("audit entry")),
                                Not(HasSubstr("key: where"))));
}

TEST(BadInput, OfAGetterThatRaisesFailsTheSecondReadingToo) {
  CopyRig rig;
  rig.ControlRecord("tsmdm140", 2, "2026-11-19");
  rig.erp.Lists("ServiceEmployees.ServiceEmployeesManager",
                {{{"getServiceEmployeeName", Error(900, "Orvan", "No right to read names.")}, {kAnyOther, "7"}}});
  rig.erp.Audits("ServiceEmployees.ServiceEmployees", {Updated({{kAnyOther, "7"}})});
  rig.Run("tsmdm140");
  EXPECT_THAT(Chain(rig),
              AllOf(StartsWith("error 1000, Copy Service Employees: "),
                    HasSubstr("because of error 900, Orvan: No right to read names. [column: dsca; member: "
                              "getServiceEmployeeName; table: tsmdm140; audit entry: 1; key: where emno='7']")));
}

TEST(BadInput, OfAnAuditReaderThatRaisesHalfwayKeepsWhatWasApplied) {
  CopyRig rig;
  ByChange(rig, {Inserted(ServiceType("A"))});
  rig.erp.auditFailure = Error(300, "Audit", "The trail is broken.");
  rig.Run("tsmdm030");
  EXPECT_THAT(Chain(rig),
              AllOf(StartsWith("error 400, Copy Service Types - Only Changed: "),
                    HasSubstr("because of error 300, Audit: The trail is broken. [table: tsmdm030; audit entry: 2]")));
  EXPECT_EQ(rig.Rows("tsmdm030", {"cstp"}).size(), 1u);
  EXPECT_EQ(rig.Lutm("tsmdm030"), "2026-11-19");
}

TEST(BadInput, OfALocalTableThatLacksAColumnNamesIt) {
  CopyRig rig;
  rig.Sql("alter table tsmdm030 drop column prod");
  rig.Sql("insert into tsmdm030 (cstp) values ('OLD')");
  rig.erp.Lists(kServiceTypesManager, {ServiceType("A")});
  rig.Run("tsmdm030");
  EXPECT_THAT(Chain(rig), AllOf(StartsWith("error 3365, Copy Service Types: "), HasSubstr("column: prod"),
                                HasSubstr("table: tsmdm030"), HasSubstr("member: getServiceProcedure")));
}

TEST(BadInput, OfALocalTableThatLacksItsKeyNamesItOnce) {
  CopyRig rig;
  rig.Sql("drop table tsmdm030");
  rig.Sql("create table tsmdm030 (dsca varchar(5), prod varchar(10), ract varchar(10))");
  rig.erp.Lists(kServiceTypesManager, {ServiceType("A")});
  rig.Run("tsmdm030");
  EXPECT_EQ(Chain(rig),
            "error 3365, Copy Service Types:  Copy of Service Types from Orvan to Local DB failed\n"
            "  because of error 3265, ADODB.Recordset: There is no column \"cstp\" in \"tsmdm030\". "
            "[column: cstp; member: getServiceType; table: tsmdm030; key: of the listing's record 1]");
}

TEST(BadInput, OfATableCodeWithAQuoteFailsWithoutTouchingOtherRecords) {
  CopyRig rig;
  rig.ControlRecord("tsmdm030", 1, "2026-11-19");
  EXPECT_THROW(rig.Run("' or 'x"), Error);
  EXPECT_THAT(rig.Rows("tstables", {"TableName", "in_use", "lutm"}), ElementsAre("\"tsmdm030\", 0, 2026-11-19"));
  EXPECT_THAT(rig.CopyLog("' or 'x"), HasSubstr("\"Data Copy In Progress\",\"Checking of whether Data Copy is in "
                                                "Progress for table ' or 'x Failed\""));
}

}  // namespace
}  // namespace qmx::test
