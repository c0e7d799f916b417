// The statement that adds rows, by itself.
#include "platform/batches/insert.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "platform/batches/driver.h"
#include "platform/connection_text.h"
#include "platform/execution.h"
#include "platform/sqlite/driver.h"
#include "tests/support/fake_steady_clock.h"
#include "tests/support/faulty_driver.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

class AnInsert : public testing::Test {
 protected:
  AnInsert() {
    Execution(*session_->Prepare("create table people (code integer not null primary key, floor smallint)")).Run();
  }

  std::unique_ptr<DriverStatement> Insert() {
    const ColumnDescription code{.name = "code", .type = Variant::Kind::Int32};
    const ColumnDescription floor{.name = "floor", .type = Variant::Kind::Int16};
    return session_->PrepareInsert({.table = "people",
                                    .columns = {code, floor},
                                    .into = "insert into people (code,floor)",
                                    .describe = [](Error&, std::span<const Variant>) {}});
  }

  static std::int64_t Added(DriverStatement& insert, std::int32_t code, bool mayWait) {
    const Variant row[] = {code, std::int16_t{1}};
    Execution execution(insert);
    EXPECT_EQ(insert.BindRow(row), 2);
    if (mayWait) insert.MayWait();
    return execution.Run();
  }

  std::int64_t Rows() {
    const auto count = session_->Prepare("select count(*) from people");
    count->Step();
    return count->Value(0).ToInt32();
  }

  TempFolder folder_{TempFolder::Place::InMemory};
  SqliteDriver sqlite_;
  FaultyDriver below_{sqlite_};
  FakeSteadyClock clock_;
  BatchingDriver batching_{below_, clock_};
  std::unique_ptr<DriverSession> session_ =
      batching_.Open(ConnectionText("Provider=SQLite;Mode=Create;Data Source=" + folder_ / "local.db"));
};

TEST_F(AnInsert, AffectsOneRowWhetherItWaitsOrNot) {
  const auto insert = Insert();
  EXPECT_EQ(Added(*insert, 1, true), 1);  // the first one does not wait
  EXPECT_EQ(Added(*insert, 2, true), 1);
  EXPECT_EQ(Added(*insert, 3, false), 1);
  EXPECT_EQ(Rows(), 3);
}

TEST_F(AnInsert, SendsTwoRowsThatWaitTogether) {
  const auto insert = Insert();
  for (const std::int32_t code : {1, 2, 3}) Added(*insert, code, true);
  EXPECT_EQ(Rows(), 3);
  EXPECT_EQ(below_.CountOf("Add"), 1);
}

TEST_F(AnInsert, LeavesNoSavepointInATransactionOfTheProgram) {
  session_->Begin();
  const auto insert = Insert();
  for (const std::int32_t code : {1, 2, 3}) Added(*insert, code, true);
  EXPECT_EQ(Rows(), 3);
  const Error error = Raised([&] { Execution(*session_->Prepare("release savepoint qmx")).Run(); });
  EXPECT_THAT(error.Description(), testing::HasSubstr("no such savepoint"));
  session_->Rollback();
  EXPECT_EQ(Rows(), 0);
}

TEST_F(AnInsert, LeavesOutWhatIsEmpty) {
  const auto insert = Insert();
  const Variant row[] = {Variant(), std::int32_t{1}, Variant(), Variant::Null(), Variant()};
  EXPECT_EQ(insert->BindRow(row), 2);
  EXPECT_EQ(Execution(*insert).Run(), 1);
  EXPECT_EQ(Rows(), 1);
}

TEST_F(AnInsert, RefusesMoreValuesThanItHasColumns) {
  const auto insert = Insert();
  const Variant row[] = {std::int32_t{1}, std::int16_t{1}, std::int16_t{1}};
  EXPECT_THROW(insert->BindRow(row), std::out_of_range);
  EXPECT_THROW(insert->Bind(2, row[2]), std::out_of_range);
}

}  // namespace
}  // namespace qmx::test
