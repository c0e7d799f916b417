// Records of the ERP that cannot be copied: the run ends with status 1, standard error names the table, the record and
// the problem, the logs have their texts, and rows that were copied before are kept.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/whole/copy_process.h"

namespace qmx::test::bad_records {
namespace {

using testing::AllOf;
using testing::HasSubstr;

class BadRecord : public testing::Test {
 protected:
  // Fills the local table with the ERP's records before the change, copies it by change or in full, and returns
  // standard error.
  std::string Copy(const std::string& table, int syncMethod, const std::string& change) {
    local_.Copy(table);
    local_.Sql("update tstables set lutm = '2001-01-01', syme = " + std::to_string(syncMethod));
    before_ = local_.RowsOf(table);
    company_.Change(DateTime::FromDate(2002, 1, 1), change);
    const Process copy = program_.Run(table);
    EXPECT_EQ(copy.status, 1);
    EXPECT_EQ(local_.Value("select in_use from tstables"), "0");
    EXPECT_EQ(local_.Value("select lutm from tstables"), "2001-01-01");
    log_ = program_.Log(table);
    return copy.err;
  }
  static constexpr int kFull = 1;
  static constexpr int kChanged = 2;

  FakeClock clock_{At(20, 14, 5, 9)};
  Company company_;
  LocalCopy local_{company_, clock_};
  CopyProcesses program_{company_, local_};
  Rows before_;
  std::string log_;
};

TEST_F(BadRecord, WhoseKeyHoldsAQuoteStopsTheChangedCopyAndReachesNoOtherRow) {
  EXPECT_THAT(Copy("tsmdm030", kChanged,
                   "insert into tsmdm030 (cstp) values ('A'' or ''a''=''a'); "
                   "delete from audit_tsmdm030; delete from tsmdm030 where cstp like 'A''%'"),
              AllOf(HasSubstr("Copy Service Types - Only Changed"), HasSubstr("because of error -2147217900"),
                    HasSubstr("DELETE FROM tsmdm030 where cstp='A' or 'a'='a'")));
  EXPECT_EQ(local_.RowsOf("tsmdm030"), before_);
}

TEST_F(BadRecord, WithTextInANumberColumnIsNamed) {
  EXPECT_THAT(Copy("tsmdm140", kFull, "update tsmdm140 set mopd = 'plenty' where emno = 'E00003'"),
              AllOf(HasSubstr("Copy Service Employees"), HasSubstr("because of error 13"), HasSubstr("table: tsmdm140"),
                    HasSubstr("key: emno='E00003'"), HasSubstr("column: mpod"), HasSubstr("plenty")));
  EXPECT_EQ(local_.Value("select count(*) from tsmdm140"), "2");  // E00001 and E00002
  EXPECT_THAT(log_,
              HasSubstr("\"Copy Service Employees\",\" Copy of Service Employees from Orvan to Local DB failed\""));
}

TEST_F(BadRecord, WhoseGetterRaisesIsNamedInAFullCopy) {
  EXPECT_THAT(Copy("tssoc200", kFull, "update tssoc200 set ordt = 'some day' where orno = 'SO0000002'"),
              AllOf(HasSubstr("Copy Service Orders"), HasSubstr("table: tssoc200"), HasSubstr("key: orno='SO0000002'"),
                    HasSubstr("member: getOrderDate"), HasSubstr("holds no date")));
  EXPECT_EQ(local_.Value("select max(orno) from tssoc200"), "SO0000001");
}

TEST_F(BadRecord, WhoseGetterRaisesIsNamedInAChangedCopyAndWhatCameBeforeStays) {
  EXPECT_THAT(Copy("tssoc200", kChanged,
                   "update tssoc200 set crit = 'NEW' where orno = 'SO0000001'; "
                   "update tssoc200 set ordt = 'some day' where orno = 'SO0000002'; "
                   "update tssoc200 set crit = 'NEW' where orno = 'SO0000003'"),
              AllOf(HasSubstr("Copy Service Orders - Only Changed"), HasSubstr("table: tssoc200"),
                    HasSubstr("orno='SO0000002'"), HasSubstr("member: getOrderDate")));
  EXPECT_EQ(local_.Values("select orno from tssoc200 where crit = 'NEW'"), std::set<std::string>{"SO0000001"});
  EXPECT_EQ(local_.RowsOf("tssoc200").at("SO0000002"), before_.at("SO0000002"));
  EXPECT_THAT(log_, HasSubstr("\"Copy Service Orders - Only Changed\","));
}

TEST_F(BadRecord, OfATableThatTheErpLacksIsReportedInTheErpsOwnWords) {
  EXPECT_THAT(Copy("tsmdm030", kFull, "drop table tsmdm030"),
              AllOf(HasSubstr("Copy Service Types"), HasSubstr("has no table tsmdm030")));
  EXPECT_EQ(local_.RowsOf("tsmdm030"), before_);
}

TEST_F(BadRecord, IsReportedIfTheErpHasNoAuditTrail) {
  EXPECT_THAT(Copy("tsmdm030", kChanged, "drop table audit_tsmdm030"),
              AllOf(HasSubstr("Copy Service Types - Only Changed"), HasSubstr("audit_tsmdm030")));
  EXPECT_EQ(local_.RowsOf("tsmdm030"), before_);
}

}  // namespace
}  // namespace qmx::test::bad_records
