// The statement that adds rows, by itself.
#include "platform/batches/insert.h"

#include <gmock/gmock.h>

#include <stdexcept>

#include "tests/platform/batches/batching_session.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using AnInsert = BatchingSession;

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

// Alone, each of them would take as long.
TEST_F(AnInsert, NamesTheFirstOfTheRowsThatTookTooLongAndSendsNoneOfThemAgain) {
  const auto insert = Insert();
  below_.before = [](const std::string& operation) {
    if (operation == "Add") throw Error(errors::kTimeout, "Test", "It takes too long.");
  };
  AddAndLetWait(*insert, {1, 2, 3});
  const Error error = Raised([&] { Rows(); });
  EXPECT_EQ(error.Number(), errors::kTimeout);
  EXPECT_EQ(error.DetailOf("key"), "2");
  below_.before = nullptr;
  EXPECT_EQ(Rows(), 1);
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
