// Commands that only read the local database, as a user who may not write it.
#include "tests/support/as_nobody.h"
#include "tests/tools/qmxadmin/copying.h"

namespace qmx::test {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

class ReadingCommands : public Copying {
 protected:
  ReadingCommands() : Copying(DriversUnderTest().front().make()) {
    Sql("insert into tscalender (ccal, sttm, entm) values ('N1', '2026-11-20 08:00:00', '2026-11-20 12:00:00')");
    EXPECT_EQ(Copy({"tsmdm030"}).status, 0);
    Sql("pragma journal_mode = delete");
    const std::string text = base_->ConnectionText();
    file_ = text.substr(text.rfind('=') + 1);
    MakeReadOnly(file_);
    MakeReadOnly(file_.parent_path());
    const fs::path erp = component_.substr(component_.find('/'));
    for (const fs::path& path : {erp, erp.parent_path(), folder_.Path(), fs::path(folder_ / "logs")})
      fs::permissions(path, fs::perms::all);
  }
  ~ReadingCommands() override { fs::permissions(file_.parent_path(), fs::perms::owner_all); }

  Process AsNobodyOf(std::vector<std::string> command) {
    command.insert(command.begin() + 1, {base_->ConnectionText(), ""});
    return RunAsNobody(QMX_ADMIN, command, environment_);
  }

  fs::path file_;
};

TEST_F(ReadingCommands, NeedNoRightToWrite) {
  const std::vector<std::vector<std::string>> commands = {
      {"status"}, {"calendar", "N1", "--from", "2026-11-20"}, {"verify", "tsmdm030", "--component", component_}};
  for (const std::vector<std::string>& command : commands) {
    const Process run = AsNobodyOf(command);
    EXPECT_EQ(run.status, 0) << command[0] << ": " << run.err;
    EXPECT_THAT(run.err, IsEmpty());
  }
  EXPECT_THAT(AsNobodyOf({"status"}).out, HasSubstr("tsmdm030"));
}

TEST_F(ReadingCommands, AndCheckReportsThatTheCopiesCannotWrite) {
  const Process run = AsNobodyOf({"check"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, AllOf(HasSubstr("ok           connection: SQLite\n"),
                             HasSubstr("\nwrong        table tsmdm030: insert is refused: attempt to write a readonly "
                                       "database. Grant the missing privileges to the user.\n")));
}

TEST_F(ReadingCommands, LeaveTheOthersToFailBeforeTheyBegin) {
  for (const std::vector<std::string>& command : std::vector<std::vector<std::string>>{
           {"method", "tsmdm030", "changed"},
           {"expand"},
           {"release", "tsmdm030", "--yes"},
           {"copy", "tsmdm030", "--logs", folder_ / "logs", "--component", component_}}) {
    const Process run = AsNobodyOf(command);
    EXPECT_EQ(run.status, 2) << command[0];
    EXPECT_THAT(run.err, HasSubstr("cannot be written: permission is missing on the file."));
    EXPECT_THAT(run.out, IsEmpty());
  }
}

}  // namespace
}  // namespace qmx::test
