// Copies by change from an ERP in Java whose audit classes fail.
#include "tests/bridges/java/failing_erp.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;

constexpr const char* kLutm = "2001-02-03 04:05:06";

class AFailingAuditInJava : public FailingErpInJava, public testing::WithParamInterface<const char*> {
 protected:
  AFailingAuditInJava() {
    Sql(std::string("insert into tstables (TableName, in_use, syme, lutm) values ('tsmdm030', 0, 2, '") + kLutm + "')");
  }
  std::string Flag() { return Sql("select in_use from tstables"); }
  std::string Lutm() { return Sql("select lutm from tstables"); }
  std::string Rows() { return Sql("select coalesce(group_concat(cstp), 'none') from tsmdm030"); }
};

TEST_F(AFailingAuditInJava, WhichFailsNowhereIsCopied) {
  const Process copied = Copy("");
  EXPECT_EQ(copied.status, 0) << copied.err;
  EXPECT_EQ(Rows(), "T1,T2");
  EXPECT_GT(Lutm(), kLutm);
}

TEST_P(AFailingAuditInJava, FailsTheCopyReleasesItsTableAndLeavesTheLastUpdateTime) {
  const Process failed = Copy(GetParam());
  EXPECT_EQ(failed.status, 1) << failed.err;
  EXPECT_THAT(failed.err, HasSubstr(std::string("java.lang.IllegalStateException: fails in ") + GetParam()));
  EXPECT_THAT(failed.err, HasSubstr("Copy Service Types - Only Changed"));
  EXPECT_EQ(Flag(), "0");
  EXPECT_EQ(Lutm(), kLutm);
}

INSTANTIATE_TEST_SUITE_P(InEachPlace, AFailingAuditInJava,
                         testing::Values("constructor", "constructor of the record", "constructor of auditCriteria",
                                         "constructor of period", "constructor of Parameter",
                                         "constructor of AuditReader", "constructor of RecordStatus", "initialize",
                                         "setFrom of period", "setTo of period", "setPeriod", "setFieldName",
                                         "setFrom of Parameter", "setTo of Parameter", "addParameter", "addOutputField",
                                         "initialize of AuditReader", "nextElement of AuditReader", "getTuple",
                                         "getCurrentObject", "isDeleted", "isUpdated", "isInserted", "getter"));

// What was applied before stays, and is applied again by the next copy.
TEST_F(AFailingAuditInJava, AfterItsFirstEntryKeepsThatOne) {
  const Process failed = Copy("second hasMoreElements of AuditReader");
  EXPECT_EQ(failed.status, 1) << failed.err;
  EXPECT_EQ(Rows(), "T1");
  EXPECT_EQ(Flag(), "0");
  EXPECT_EQ(Lutm(), kLutm);
  EXPECT_EQ(Copy("").status, 0);
  EXPECT_EQ(Rows(), "T1,T2");
}

}  // namespace
}  // namespace qmx::test
