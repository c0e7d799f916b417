// The state of a session's transaction, also after it became unknown.
#include "platform/transaction_state.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/retryable.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

TransactionState Lost() {
  TransactionState state;
  state.Opened();
  try {
    throw Error(errors::kProviderUnspecified, "ODBC", "The line is cut.").With("SQLSTATE", "08S01");
  } catch (const Error&) {
    state.Lose();
  }
  return state;
}

TEST(ATransactionState, ThatIsUnknownDoesNotAskToTryAgain) {
  TransactionState state;
  try {
    throw Error(errors::kProviderUnspecified, "ODBC", "The node is not ready.").With("native code", "1047");
  } catch (const Error&) {
    state.Lose();
  }
  const Error error = Raised([&] { state.RequireKnown(); });
  EXPECT_THAT(error.Description(), HasSubstr("The node is not ready."));
  EXPECT_FALSE(AsksToTryAgain(error));
}

TEST(ATransactionState, IsNoneThenOpenThenNone) {
  TransactionState state;
  EXPECT_FALSE(state.IsOpen());
  state.Opened();
  EXPECT_TRUE(state.IsOpen());
  state.RequireKnown();
  state.Ended();
  EXPECT_FALSE(state.IsOpen());
  state.RequireNone("A transaction cannot begin");
}

TEST(ATransactionState, ThatIsOpenRefusesWhatNeedsNone) {
  TransactionState state;
  state.Opened();
  const Error error = Raised([&] { state.RequireNone("A transaction cannot begin"); });
  EXPECT_EQ(error.Number(), 3219);
  EXPECT_EQ(error.Description(), "A transaction cannot begin while a transaction is open.");
}

TEST(ATransactionState, ThatIsUnknownRaisesWhatLedToIt) {
  const TransactionState state = Lost();
  EXPECT_FALSE(state.IsOpen());
  const Error error = Raised([&] { state.RequireKnown(); });
  EXPECT_EQ(error.Number(), -2147467259);
  EXPECT_EQ(error.Source(), "ODBC");
  EXPECT_EQ(error.Description(),
            "It is not known whether the last rows were saved, so nothing more is written over this connection: The "
            "line is cut.");
  EXPECT_THAT(DescribeChain(error), HasSubstr("SQLSTATE: 08S01"));
  EXPECT_EQ(Raised([&] { state.RequireNone("A transaction cannot begin"); }).Description(), error.Description());
}

TEST(ATransactionState, ThatIsUnknownStaysSo) {
  TransactionState state = Lost();
  state.Opened();
  EXPECT_FALSE(state.IsOpen());
  state.Ended();
  try {
    throw Error(errors::kTimeout, "ODBC", "Too late.");
  } catch (const Error&) {
    state.Lose();
  }
  EXPECT_THAT(Raised([&] { state.RequireKnown(); }).Description(), HasSubstr("The line is cut."));
}

TEST(ATransactionState, ThatIsLostForWantOfMemoryIsError7) {
  TransactionState state;
  try {
    throw std::bad_alloc();
  } catch (const std::bad_alloc&) {
    state.Lose();
  }
  const Error error = Raised([&] { state.RequireKnown(); });
  EXPECT_EQ(error.Number(), 7);
  EXPECT_THAT(error.Description(), StartsWith("It is not known whether the last rows were saved"));
}

}  // namespace
}  // namespace qmx::test
