#include "platform/com/com_error.h"

#include <gtest/gtest.h>

#include "platform/com/bstr.h"
#include "platform/com/hresult.h"

namespace qmx::test {
namespace {

TEST(AComponentsException, GivesNumberSourceAndDescription) {
  Exception exception;
  exception.Receiver()->scode = static_cast<HRESULT>(0x800A0BCD);
  exception.Receiver()->bstrSource = NewBstr("Orvan");
  exception.Receiver()->bstrDescription = NewBstr("The record is locked.");
  const Error error = exception.ToError("A.Manager");
  EXPECT_EQ(error.Number(), 3021);
  EXPECT_EQ(error.Source(), "Orvan");
  EXPECT_EQ(error.Description(), "The record is locked.");
}

TEST(AComponentsException, MayHaveItsNumberAsACode) {
  Exception exception;
  exception.Receiver()->wCode = 1004;
  EXPECT_EQ(exception.ToError("").Number(), 1004);
}

TEST(AComponentsException, HasTheCodeRatherThanAResultBesideIt) {
  Exception exception;
  exception.Receiver()->wCode = 1004;
  exception.Receiver()->scode = E_ACCESSDENIED;
  EXPECT_EQ(exception.ToError("").Number(), 1004);
  EXPECT_EQ(exception.ToError("").Description(), "The component failed without a description.");
}

TEST(AComponentsException, MayHaveAResultAsItsNumber) {
  Exception exception;
  exception.Receiver()->scode = static_cast<HRESULT>(0x80040201);
  EXPECT_EQ(exception.ToError("").Number(), -2147220991);
}

TEST(AComponentsException, MayBeFilledInWhenItIsRead) {
  Exception exception;
  exception.Receiver()->pfnDeferredFillIn = [](EXCEPINFO* info) -> HRESULT {
    info->scode = static_cast<HRESULT>(0x800A0005);
    info->bstrSource = NewBstr("Late");
    info->bstrDescription = NewBstr("Filled in.");
    return S_OK;
  };
  const Error error = exception.ToError("A.Manager");
  EXPECT_EQ(error.Number(), 5);
  EXPECT_EQ(error.Source(), "Late");
  EXPECT_EQ(error.Description(), "Filled in.");
}

TEST(AComponentsException, IsFilledInOnce) {
  static int times;
  times = 0;
  Exception exception;
  exception.Receiver()->pfnDeferredFillIn = [](EXCEPINFO*) -> HRESULT {
    ++times;
    return S_OK;
  };
  exception.ToError("");
  exception.ToError("");
  EXPECT_EQ(times, 1);
}

TEST(AComponentsException, WithoutTextsGetsStandardOnes) {
  Exception withResult;
  withResult.Receiver()->scode = E_ACCESSDENIED;
  EXPECT_EQ(withResult.ToError("A.Manager").Source(), "A.Manager");
  EXPECT_EQ(withResult.ToError("A.Manager").Description(),
            "The component failed with " + DescribeHresult(E_ACCESSDENIED) + ".");
  Exception empty;
  EXPECT_EQ(empty.ToError("A.Manager").Number(), 51);
  EXPECT_EQ(empty.ToError("A.Manager").Description(), "The component failed without a description.");
}

TEST(AComponentsException, WithFlawsInItsTextsIsShown) {
  Exception exception;
  exception.Receiver()->bstrDescription = SysAllocStringLen(L"a\0b", 3);
  EXPECT_EQ(exception.ToError("").Description(),
            "a\xEF\xBF\xBD"
            "b");
}

TEST(AFailedResult, IsAnErrorWithTheResultAsADetail) {
  const Error error = ErrorOf({static_cast<HRESULT>(0x80010108), "List", 0, {}}, "A.Manager");
  EXPECT_EQ(error.Number(), -2147417848);
  EXPECT_EQ(error.Source(), "A.Manager");
  EXPECT_EQ(error.Description().find("The call of \"List\" failed with 0x80010108"), 0u) << error.Description();
  EXPECT_EQ(error.DetailOf("hresult").find("0x80010108"), 0u);
}

TEST(AFailedResult, OfAnUnknownMemberNamesIt) {
  const Error error = ErrorOf({DISP_E_UNKNOWNNAME, "Liste", 0, {}}, "A.Manager");
  EXPECT_EQ(error.Number(), 438);
  EXPECT_EQ(error.Description(), "The component has no member \"Liste\".");
}

TEST(AFailedResult, OfAWrongNumberOfArgumentsNamesIt) {
  const Error error = ErrorOf({DISP_E_BADPARAMCOUNT, "List", 3, {}}, "A.Manager");
  EXPECT_EQ(error.Number(), 450);
  EXPECT_EQ(error.Description(), "\"List\" does not take 3 arguments.");
  EXPECT_EQ(ErrorOf({DISP_E_BADPARAMCOUNT, "List", 1, {}}, "A.Manager").Description(),
            "\"List\" does not take 1 argument.");
}

TEST(AFailedResult, OfAWrongTypeNamesTheArgument) {
  const Error error = ErrorOf({DISP_E_TYPEMISMATCH, "List", 3, 2}, "A.Manager");
  EXPECT_EQ(error.Number(), 13);
  EXPECT_EQ(error.Description(), "Type mismatch: the component refuses the type of argument 2 of 3 of \"List\".");
  EXPECT_EQ(ErrorOf({DISP_E_TYPEMISMATCH, "List", 3, {}}, "A.Manager").Description(),
            "Type mismatch: the component refuses the type of an argument of \"List\".");
}

// What a component reads when the program has raised the error.
Error Seen(const Error& raised) {
  Exception seen;
  try {
    throw raised;
  } catch (...) {
    EXPECT_EQ(FailWithCurrentError(seen.Receiver()), DISP_E_EXCEPTION);
  }
  return seen.ToError("");
}

TEST(AnErrorOfTheProgram, ReachesAComponentAsItIs) {
  for (const std::int32_t number : {5, 3021, 65535, -2147217900}) {
    const Error seen = Seen(Error(number, "Values", "Wr\xC3\xB6ng."));
    EXPECT_EQ(seen.Number(), number);
    EXPECT_EQ(seen.Source(), "Values");
    EXPECT_EQ(seen.Description(), "Wr\xC3\xB6ng.");
  }
}

TEST(AnErrorOfTheProgram, WhoseNumberIsNoResultIsNamedInTheDescription) {
  const Error seen = Seen(Error(70000, "Values", "Wrong."));
  EXPECT_EQ(seen.Number(), E_FAIL);
  EXPECT_EQ(seen.Description(), "Wrong. (error 70000)");
}

TEST(AnErrorOfTheProgram, IsAResultWhereAComponentWantsNoException) {
  try {
    throw Error(13, "Values", "Wrong.");
  } catch (...) {
    EXPECT_EQ(FailWithCurrentError(nullptr), static_cast<HRESULT>(0x800A000D));
  }
}

}  // namespace
}  // namespace qmx::test
