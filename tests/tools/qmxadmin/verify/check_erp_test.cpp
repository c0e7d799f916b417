// What qmxadmin check finds out by calling an ERP: records, audit trails, and components that end the process.
#include "tests/tools/qmxadmin/copying.h"
#include "tests/tools/qmxadmin/output_lines.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class CheckingAnErp : public Copying {
 protected:
  CheckingAnErp() : Copying(DriversUnderTest().front().make()) {}

  Process Check(const std::vector<std::string>& more) {
    std::vector<std::string> arguments = {"check", base_->ConnectionText(), "", "--component", component_};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return test::Run(admin_, arguments, environment_);
  }

  // Service types come from a component server that the test can make fail.
  void UseFailingServiceTypes() {
    std::filesystem::create_directory(folder_ / "components");
    std::string manifest = std::string("library = ") + CRASHING_ERP + "\n";
    for (const char* progId : {"ServiceTypes.ServiceTypesManager", "ServiceTypes.ServiceTypes"})
      manifest += std::string("progid = ") + progId + "\n";
    WriteFile(folder_ / "components/crashing.component", manifest);
    environment_["QMX_COMPONENTS"] = (folder_ / "components") + ":" + SANDBOX_COMPONENTS;
    // The sanitizers would report a crash in the place of its signal.
    environment_["ASAN_OPTIONS"] = "handle_abort=0";
  }
};

TEST_F(CheckingAnErp, ReadsOneRecordOfEveryTableAndItsAuditTrail) {
  ASSERT_EQ(Copy({"tsmdm140"}).status, 0);  // the ERP lists the calendars of the local employees
  environment_["TMPDIR"] = folder_.Path();
  const Process run = Check({"--records"});
  EXPECT_EQ(run.status, 0) << run.out << run.err;
  EXPECT_THAT(run.err, IsEmpty());
  EXPECT_EQ(Lines(run.out, "ok           record of "), 17U) << run.out;
  EXPECT_THAT(run.out, HasSubstr("ServiceTypesManager: answers and has records\n"
                                 "ok           record of tsmdm030: one record and the audit trail can be read\n"));
  EXPECT_EQ(Rows("tsmdm030"), 0);
  EXPECT_EQ(Rows("tstables"), 1);
}

TEST_F(CheckingAnErp, ReadsNoRecordUnlessItIsAskedTo) {
  const Process run = Check({});
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_THAT(run.out, Not(HasSubstr("record of")));
  environment_["QMX_COMPONENT"] = "";
  EXPECT_THAT(test::Run(admin_, {"check", base_->ConnectionText(), "", "--records"}, environment_).out,
              HasSubstr("\nnot checked  records: --component is not given, so no record was read\n"));
}

TEST_F(CheckingAnErp, NamesAGetterThatTheErpDoesNotHave) {
  UseFailingServiceTypes();
  environment_["QMX_TEST_UNKNOWN"] = "getServiceProcedure";
  EXPECT_EQ(Check({}).status, 0);
  const Process run = Check({"--records"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out,
              AllOf(HasSubstr("\nwrong        record of tsmdm030: error 438, "), HasSubstr("getServiceProcedure"),
                    HasSubstr(" Correct the ERP's component server. The copies would fail in the same way.\n"),
                    HasSubstr("\nok           record of tsmdm100: ")));
  EXPECT_EQ(Lines(run.out, "wrong"), 1U) << run.out;
}

TEST_F(CheckingAnErp, GoesOnAfterAComponentThatCrashes) {
  UseFailingServiceTypes();
  environment_["QMX_TEST_AT_LIST"] = "abort";
  const Process run = Check({});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(Lines(run.out, "wrong"), 1U) << run.out;
  EXPECT_THAT(run.out,
              HasSubstr("\nwrong        tsmdm030, ServiceTypes.ServiceTypesManager: signal 6 (Aborted) ended the "
                        "process during this check. Report it to the makers of the component server.\n"
                        "ok           tsmdm100, "));
  EXPECT_THAT(run.out, HasSubstr("\nok           QMXServer20.ClientRequests: can be created\n"));
}

TEST_F(CheckingAnErp, GoesOnAfterAComponentThatExits) {
  UseFailingServiceTypes();
  environment_["QMX_TEST_AT_LIST"] = "exit";
  const Process run = Check({"--json"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, AllOf(HasSubstr("something called exit with status "), HasSubstr("QMXServer20.ClientRequests")));
}

}  // namespace
}  // namespace qmx::test
