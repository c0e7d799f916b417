#include "tests/copy/tables/table_copy.h"

namespace qmx::test::skills_by_employee {
namespace {

constexpr const char* kTable = "tsmdm135";
constexpr const char* kManager = "SkillsByEmployee.SkillsByEmployeeManager";
constexpr const char* kRecord = "SkillsByEmployee.SkillsByEmployee";

Getters Key(const std::string& employee, const std::string& skill, const std::string& group) {
  return {{"getserviceemployee", employee}, {"getSkill", skill}, {"getObjectGroup", group}};
}

Getters SkillByEmployee(const std::string& employee, const std::string& skill, const std::string& group,
                        double factor) {
  Getters getters = Key(employee, skill, group);
  getters.insert({"getSkillFactor", factor});
  return getters;
}

TEST(SkillsByEmployee, CallComponentsAndDatabaseInThisOrder) {
  CopyRig rig;
  rig.Sql("insert into tsmdm135 (emno, skll, cogr, afct) values ('E1', 'WELD', 'G1', 0.5)");
  rig.erp.Lists(kManager, {});
  RunChanged(rig, kTable, kRecord,
             {Updated(SkillByEmployee("E1", "WELD", "G1", 0.25)), Deleted(Key("E1", "WELD", "G2"))});
  EXPECT_THAT(
      rig.calls.StartingWith({"create", "manager", "recordClass", "parameter", "criteria", "period", "reader", "entry",
                              "status", "current", "rs1", "connection.Exec"}),
      ElementsAre("create SkillsByEmployee.SkillsByEmployeeManager", "create SkillsByEmployee.SkillsByEmployee",
                  "create audit.auditCriteria", "create audit.period", "create audit.Parameter",
                  "create audit.Parameter", "create audit.Parameter", "create audit.AuditReader",
                  "create audit.RecordStatus", "manager.initialize(\"Orvan, main\")", "recordClass.getClass()",
                  "create java:java.util.Date", "create java:java.util.Date",  //
                  "period.setFrom(date1)", "period.setTo(date2)", "criteria.setPeriod(period)",
                  "parameter1.setFieldName(\"emno\")", "parameter1.setFrom(\"\")", "parameter1.setTo(\"ZZZZZZ\")",
                  "criteria.addParameter(parameter1)",  //
                  "parameter2.setFieldName(\"skll\")", "parameter2.setFrom(\"\")", "parameter2.setTo(\"ZZZZ\")",
                  "criteria.addParameter(parameter2)",  //
                  "parameter3.setFieldName(\"cogr\")", "parameter3.setFrom(\"\")", "parameter3.setTo(\"ZZZZZZ\")",
                  "criteria.addParameter(parameter3)",  //
                  "criteria.addOutputField(\"emno\")", "criteria.addOutputField(\"skll\")",
                  "criteria.addOutputField(\"cogr\")", "criteria.addOutputField(\"afct\")",
                  "reader.initialize(manager, recordClass, criteria)",  //
                  "reader.hasMoreElements()", "reader.nextElement()", "entry1.getTuple()",
                  "reader.getCurrentObject(tuple1)", "status.isDeleted(entry1)", "status.isUpdated(entry1)",
                  "status.isInserted(entry1)",  //
                  "current1.getserviceemployee()", "current1.getSkill()", "current1.getObjectGroup()",
                  "rs1.Open \"select * from tsmdm135 where emno='E1' and   skll='WELD' and   cogr='G1'\" 1 3 1",
                  "current1.getserviceemployee()", "rs1.emno = \"E1\"", "current1.getSkill()", "rs1.skll = \"WELD\"",
                  "current1.getObjectGroup()", "rs1.cogr = \"G1\"", "current1.getSkillFactor()", "rs1.afct = 0.25",
                  "rs1.Update", "rs1.Close",  //
                  "reader.hasMoreElements()", "reader.nextElement()", "entry2.getTuple()",
                  "reader.getCurrentObject(tuple2)", "status.isDeleted(entry2)",  //
                  "current2.getserviceemployee()", "current2.getSkill()", "current2.getObjectGroup()",
                  "connection.Execute DELETE FROM tsmdm135 where emno='E1' and   skll='WELD' and   cogr='G2'",
                  "reader.hasMoreElements()"));
}

}  // namespace
}  // namespace qmx::test::skills_by_employee
