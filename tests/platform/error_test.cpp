// Errors: their causes, details that never replace inner ones, and the chain's lines.
#include "platform/error.h"

#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <stdexcept>

namespace qmx::test {
namespace {

TEST(Error, HasNoCauseIfNothingIsBeingHandled) {
  const Error error(13, "Values", "Type mismatch");
  EXPECT_EQ(error.Number(), 13);
  EXPECT_EQ(error.Source(), "Values");
  EXPECT_EQ(error.Description(), "Type mismatch");
  EXPECT_STREQ(error.what(), "Type mismatch");
  EXPECT_EQ(error.Cause(), nullptr);
}

TEST(Error, KeepsTheErrorBeingHandledAsItsCause) {
  try {
    try {
      try {
        throw Error(3265, "Recordset", "No column 'cstp'.").With("table", "tsmdm030");
      } catch (const Error& error) {
        throw Error(NumberPlus100(error.Number()), "Copy Service Types", " Copy failed");
      }
    } catch (const Error&) {
      throw Error(9, "Run", "Failed");
    }
  } catch (const Error& error) {
    ASSERT_NE(error.Cause(), nullptr);
    EXPECT_EQ(error.Cause()->Number(), 3365);
    ASSERT_NE(error.Cause()->Cause(), nullptr);
    EXPECT_EQ(error.Cause()->Cause()->Number(), 3265);
    EXPECT_EQ(error.Cause()->Cause()->Details(), (std::vector<Error::Detail>{{"table", "tsmdm030"}}));
    EXPECT_EQ(error.Cause()->Cause()->Cause(), nullptr);
  }
}

TEST(Error, MadeAfterAHandlerHasEndedHasNoCause) {
  try {
    throw Error(53, "Files", "Not found");
  } catch (const Error&) {
  }
  EXPECT_EQ(Error(1, "A", "b").Cause(), nullptr);
}

TEST(Error, CopiedInAHandlerDoesNotBecomeItsOwnCause) {
  try {
    throw Error(53, "Files", "Not found");
  } catch (const Error& error) {
    Error copy = error;
    copy.With("file", "x");
    EXPECT_EQ(copy.Cause(), nullptr);
  }
}

TEST(Error, KeepsTheCauseAliveAfterTheHandlerThatHeldIt) {
  std::unique_ptr<Error> kept;
  try {
    throw Error(53, "Files", "Not found");
  } catch (const Error&) {
    kept = std::make_unique<Error>(1, "A", "b");
  }
  ASSERT_NE(kept->Cause(), nullptr);
  EXPECT_EQ(kept->Cause()->Description(), "Not found");
}

TEST(Error, AddsFurtherCausesAfterItsOwnAndNoneTwice) {
  try {
    throw Error(53, "Files", "Not found");
  } catch (const Error& first) {
    Error error(1, "A", "b");
    Error other(70, "Files", "Denied");  // has the same cause
    other.With("path", "/x");
    EXPECT_EQ(DescribeChain(error.AddCauses(other).AddCauses(first)),
              "error 1, A: b\n"
              "  because of error 53, Files: Not found\n"
              "  because of error 70, Files: Denied [path: /x]");
  }
}

TEST(Error, WithoutACauseTakesTheOneThatIsAdded) {
  Error error(1, "A", "b");
  error.AddCauses(Error(2, "C", "d"));
  EXPECT_EQ(DescribeChain(error), "error 1, A: b\n  because of error 2, C: d");
}

TEST(Error, TakesAForeignExceptionAsItsCauseInItsOwnForm) {
  try {
    try {
      throw std::runtime_error("the wire is cut");
    } catch (const std::exception&) {
      throw Error(1, "A", "b");
    }
  } catch (const Error& error) {
    ASSERT_NE(error.Cause(), nullptr);
    EXPECT_EQ(error.Cause()->Number(), 51);
    EXPECT_EQ(error.Cause()->Description(), "the wire is cut");
    EXPECT_EQ(error.Cause()->Cause(), nullptr);
  }
}

TEST(Error, KeepsTheInnermostDetailOfAName) {
  Error error(3265, "Recordset", "No column.");
  error.With("table", "tsmdm030").With("column", "cstp").With("table", "tstables");
  EXPECT_EQ(error.Details(), (std::vector<Error::Detail>{{"table", "tsmdm030"}, {"column", "cstp"}}));
  EXPECT_EQ(error.DetailOf("column"), "cstp");
  EXPECT_EQ(error.DetailOf("key"), "");
}

Error ErrorFor(void (*raise)()) {
  try {
    raise();
  } catch (...) {
    return CurrentError();
  }
  return {0, "", ""};
}

TEST(CurrentError, IsTheErrorInFlightWithAllThatItCarries) {
  const Error error = ErrorFor([] { throw Error(70, "Files", "Denied").With("path", "/x"); });
  EXPECT_EQ(error.Number(), 70);
  EXPECT_EQ(error.Source(), "Files");
  EXPECT_EQ(error.Description(), "Denied");
  EXPECT_EQ(error.Details(), (std::vector<Error::Detail>{{"path", "/x"}}));
  EXPECT_EQ(error.Cause(), nullptr);
}

TEST(CurrentError, TurnsForeignExceptionsIntoErrors) {
  const Error memory = ErrorFor([] { throw std::bad_alloc(); });
  EXPECT_EQ(memory.Number(), 7);
  EXPECT_EQ(memory.Description(), "Out of memory.");

  const Error other = ErrorFor([] { throw std::out_of_range("index 7 of 5"); });
  EXPECT_EQ(other.Number(), 51);
  EXPECT_EQ(other.Description(), "index 7 of 5");

  const Error strange = ErrorFor([] { throw 42; });
  EXPECT_EQ(strange.Number(), 51);
  EXPECT_EQ(strange.Description(), "An exception of an unknown type was raised.");
}

TEST(CurrentError, OutsideAHandlerIsAnInternalError) { EXPECT_EQ(CurrentError().Number(), 51); }

TEST(NumberPlus100, AddsWithin32Bits) {
  EXPECT_EQ(NumberPlus100(13), 113);
  EXPECT_EQ(NumberPlus100(-2147217900), -2147217800);
  EXPECT_EQ(NumberPlus100(std::numeric_limits<std::int32_t>::min()), -2147483548);
  EXPECT_EQ(NumberPlus100(2147483547), 2147483647);
}

TEST(NumberPlus100, PastTheLargestNumberIsAnOverflow) {
  try {
    NumberPlus100(2147483548);
    FAIL() << "no error";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), 6);
  }
}

TEST(DescribeChain, GivesOneLineForAnErrorWithoutACause) {
  EXPECT_EQ(DescribeChain(Error(53, "Files", "File not found: C:\\x")), "error 53, Files: File not found: C:\\x");
}

TEST(DescribeChain, GivesOneLinePerErrorWithItsDetails) {
  try {
    try {
      throw Error(-2147217873, "SQLite", "UNIQUE constraint failed").With("table", "tsmdm030").With("key", "cstp=A");
    } catch (const Error& error) {
      throw Error(NumberPlus100(error.Number()), "Copy Service Types", " Copy failed");
    }
  } catch (const Error& error) {
    EXPECT_EQ(DescribeChain(error),
              "error -2147217773, Copy Service Types:  Copy failed\n"
              "  because of error -2147217873, SQLite: UNIQUE constraint failed [table: tsmdm030; key: cstp=A]");
  }
}

TEST(DescribeChain, HasNoLineEndInsideALine) {
  const Error error =
      Error(9999, "Start\n", "Expected 5\r\n Cannot start\t!\r\n").With("statement", "select *\nfrom t");
  EXPECT_EQ(DescribeChain(error), "error 9999, Start: Expected 5  Cannot start ! [statement: select * from t]");
}

}  // namespace
}  // namespace qmx::test
