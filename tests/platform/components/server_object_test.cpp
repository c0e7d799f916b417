#include <gmock/gmock.h>

#include "platform/components/installed_components.h"
#include "tests/platform/components/server_folder.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;

class ServerObjects : public testing::Test {
 protected:
  ServerObjects() { folder.Add("probe", TestServer("probe"), {"Test.Probe"}); }

  template <typename... Arguments>
  Error Failure(const Member& member, Arguments&&... arguments) {
    return Raised([&] { probe().Call(member, arguments...); });
  }

  const Object& probe() {
    if (!probe_) probe_ = components.CreateObject("Test.Probe");
    return probe_;
  }

  ServerFolder folder;
  FakeClock clock;
  InstalledComponents components{clock, {folder.Path()}};

 private:
  Object probe_;
};

TEST_F(ServerObjects, TakeAndGiveValuesOfEveryKind) {
  const Variant values[] = {Variant(),
                            Variant::Null(),
                            true,
                            false,
                            std::uint8_t{255},
                            std::int16_t{-32768},
                            std::int32_t{-2147483647 - 1},
                            2.125,
                            DateTime::FromDate(2026, 11, 20).PlusTime(14, 5, 9),
                            "",
                            "Grüße",
                            "a text that is much longer than what fits into a value itself",
                            Object()};
  for (const Variant& value : values) {
    EXPECT_EQ(probe().Call("echo", value), value) << "kind " << static_cast<int>(value.GetKind());
  }
  EXPECT_EQ(probe().Call("echo", Variant("kept")).ToText(), "kept");
}

TEST_F(ServerObjects, CannotReturnTextsThatAreNotUtf8OrHoldANul) {
  const Error notUtf8 = Failure("echo", "M\xFCller");
  EXPECT_EQ(notUtf8.Number(), 13);
  EXPECT_EQ(notUtf8.Source(), "Components");
  EXPECT_EQ(notUtf8.Description(), "Type mismatch: the text is no valid UTF-8 from byte 2 on.");
  EXPECT_EQ(notUtf8.Details(),
            (std::vector<Error::Detail>{{"member", "echo"}, {"progid", "Test.Probe"}, {"type", "probe type"}}));
  EXPECT_EQ(Failure("echo", std::string("with\0zero", 9)).Description(),
            "Type mismatch: the text holds a NUL character at byte 5.");
}

TEST_F(ServerObjects, CannotWriteSuchTextsIntoVariablesEither) {
  Variant variable = "before";
  EXPECT_EQ(Failure("assign", Ref(variable), "\xE4").Description(),
            "Type mismatch: the text is no valid UTF-8 from byte 1 on.");
  EXPECT_EQ(variable, Variant("before"));
}

TEST_F(ServerObjects, FailWithReplacementCharactersForInvalidUtf8) {
  const Error error = Failure("fail", 9,
                              "Br\xFC"
                              "cke",
                              std::string("M\xFCller\0", 7));
  EXPECT_EQ(error.Source(), "Br\uFFFDcke");
  EXPECT_EQ(error.Description(), "M\uFFFDller\uFFFD");
}

TEST_F(ServerObjects, SeeKindsAndReferences) {
  Variant variable = std::int16_t{3};
  EXPECT_EQ(probe().Call("kind", Variant()), Variant(0));
  EXPECT_EQ(probe().Call("kind", Variant::Null()), Variant(1));
  EXPECT_EQ(probe().Call("kind", true), Variant(2));
  EXPECT_EQ(probe().Call("kind", std::uint8_t{1}), Variant(3));
  EXPECT_EQ(probe().Call("kind", std::int16_t{1}), Variant(4));
  EXPECT_EQ(probe().Call("kind", 1), Variant(5));
  EXPECT_EQ(probe().Call("kind", 1.0), Variant(6));
  EXPECT_EQ(probe().Call("kind", DateTime()), Variant(7));
  EXPECT_EQ(probe().Call("kind", "text"), Variant(8));
  EXPECT_EQ(probe().Call("kind", Object()), Variant(9));
  EXPECT_EQ(probe().Call("kind", Ref(variable)), Variant(104));
}

TEST_F(ServerObjects, ThatGiveATextForAnObjectAreNamedWithMemberProgIdAndType) {
  const Error error = Raised([&] { ObjectGivenBy(probe(), "echo", probe().Call("echo", "text")); });
  EXPECT_THAT(DescribeChain(error), HasSubstr("Type mismatch: a text is not an object. [member: echo; progid: "
                                              "Test.Probe; type: "));
}

TEST_F(ServerObjects, GiveEmptyFromAMemberWithoutAResult) { EXPECT_TRUE(probe().Call("nothing").IsEmpty()); }

TEST_F(ServerObjects, GiveNoObjectThatCanBeTested) {
  const Variant none = probe().Call("none");
  ASSERT_TRUE(none.IfObject());
  EXPECT_FALSE(none.ToObject());
}

TEST_F(ServerObjects, TakeManyArguments) {
  EXPECT_EQ(probe().Call("count"), Variant(0));
  EXPECT_EQ(probe().Call("count", 1, 2, 3, 4, 5, 6, 7, 8), Variant(8));
  EXPECT_EQ(probe().Call("count", 1, 2, 3, 4, 5, 6, 7, 8, 9), Variant(9));
  EXPECT_EQ(probe().Call("count", 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12), Variant(12));
}

TEST_F(ServerObjects, WriteAVariableThatIsPassedByReference) {
  Variant variable = 1;
  probe().Call("assign", Ref(variable), "another text, longer than a small one");
  EXPECT_EQ(variable, Variant("another text, longer than a small one"));
  probe().Call("assign", Ref(variable), 7);
  EXPECT_EQ(variable, Variant(7));
  probe().Call("assignLast", 1.5, 2, 3, 4, 5, 6, 7, 8, 9, Ref(variable));
  EXPECT_EQ(variable, Variant(1.5));
}

TEST_F(ServerObjects, LeaveAVariableThatTheyDoNotWrite) {
  Variant text = "unchanged, and longer than a small text";
  Variant object = probe();
  probe().Call("count", Ref(text), Ref(object));
  EXPECT_EQ(text, Variant("unchanged, and longer than a small text"));
  EXPECT_EQ(object, Variant(probe()));
}

TEST_F(ServerObjects, WriteObjectsIntoVariablesWithoutLosingAReference) {
  Variant variable;
  probe().Call("assign", Ref(variable), probe().Call("make"));
  ASSERT_TRUE(variable.ToObject());
  EXPECT_EQ(probe().Call("living"), Variant(2));
  probe().Call("assign", Ref(variable), probe().Call("make"));
  EXPECT_EQ(probe().Call("living"), Variant(2));
  probe().Call("assign", Ref(variable), "no object any more");
  EXPECT_EQ(probe().Call("living"), Variant(1));
}

TEST_F(ServerObjects, AreReleasedIfAnotherValueOfTheirCallCannotBeTaken) {
  Variant text = "before", object;
  EXPECT_EQ(Failure("assignAndMake", Ref(text), Ref(object), "\xE4").Number(), 13);
  EXPECT_EQ(probe().Call("living"), Variant(1));
  EXPECT_EQ(text, Variant("before"));
  EXPECT_TRUE(object.IsEmpty());
}

TEST_F(ServerObjects, LeaveAVariableOfAFailedCall) {
  Variant variable = "before";
  EXPECT_EQ(Failure("fail", 9, "s", Ref(variable)).Description(), "before");
  EXPECT_EQ(variable, Variant("before"));
}

TEST_F(ServerObjects, AreReleasedWithTheirLastReference) {
  EXPECT_EQ(probe().Call("living"), Variant(1));
  {
    const Object other = probe().Call("make").ToObject();
    const std::vector<Object> copies(3, other);
    EXPECT_EQ(probe().Call("living"), Variant(2));
  }
  EXPECT_EQ(probe().Call("living"), Variant(1));
}

TEST_F(ServerObjects, ComeBackToTheirServerAsThePointersTheyWere) {
  EXPECT_EQ(probe().Call("isSelf", probe()), Variant(1));
  EXPECT_EQ(probe().Call("isSelf", probe().Call("self")), Variant(1));
  EXPECT_EQ(probe().Call("isSelf", probe().Call("make")), Variant(0));
}

TEST_F(ServerObjects, LookAMemberUpOncePerCallSite) {
  static const Member echo = "echo";
  static const Member resolutions = "resolutions";
  const std::int32_t before = probe().Call(resolutions).ToInt32();
  const Object other = probe().Call("make").ToObject();
  for (int i = 0; i < 100; ++i) {
    probe().Call(echo, i);
    other.Call(echo, i);
  }
  EXPECT_EQ(probe().Call(resolutions).ToInt32(), before + 2);  // "make" and "echo"
}

TEST_F(ServerObjects, KeepNumberSourceAndDescriptionOfAFailure) {
  const Error error = Failure("fail", -2147217900, "Orvan", "The company 590 is locked.");
  EXPECT_EQ(error.Number(), -2147217900);
  EXPECT_EQ(error.Source(), "Orvan");
  EXPECT_EQ(error.Description(), "The company 590 is locked.");
  EXPECT_EQ(error.Details(),
            (std::vector<Error::Detail>{{"member", "fail"}, {"progid", "Test.Probe"}, {"type", "probe type"}}));
}

TEST_F(ServerObjects, NameTheirTypeIfNoProgIdMadeThem) {
  const Object other = probe().Call("make").ToObject();
  const Error error = Raised([&] { other.Call("fail", 5, "", ""); });
  EXPECT_EQ(error.Source(), "probe type");
  EXPECT_EQ(error.Details(), (std::vector<Error::Detail>{{"member", "fail"}, {"type", "probe type"}}));
}

TEST_F(ServerObjects, FailWithTheirProgIdIfTheServerSaysNothing) {
  const Error error = Failure("failWithoutWords");
  EXPECT_EQ(error.Number(), 51);
  EXPECT_EQ(error.Source(), "Test.Probe");
  EXPECT_EQ(error.Description(), "The component failed without a description.");
}

TEST_F(ServerObjects, FailWithTheNumberOfAnUnknownMember) {
  const Error error = Failure("getNothing");
  EXPECT_EQ(error.Number(), 438);
  EXPECT_EQ(error.Description(), "No member getNothing.");
  EXPECT_EQ(error.Details()[0], (Error::Detail{"member", "getNothing"}));
}

TEST_F(ServerObjects, TurnAnEscapedExceptionIntoAnError) {
  const Error error = Failure("letAnExceptionOut");
  EXPECT_EQ(error.Number(), 51);
  EXPECT_THAT(error.Description(), HasSubstr("out it goes"));
  EXPECT_EQ(error.Details()[0], (Error::Detail{"member", "letAnExceptionOut"}));
}

TEST_F(ServerObjects, TurnAnUnknownStatusIntoAnError) {
  const Error error = Failure("oddStatus");
  EXPECT_EQ(error.Number(), 51);
  EXPECT_EQ(error.Description(), "The component returned status 7, which is neither QMX_OK nor QMX_FAILED.");
}

TEST_F(ServerObjects, CannotReturnInvalidValues) {
  EXPECT_EQ(Failure("broken", "kind").Number(), 13);
  EXPECT_THAT(Failure("broken", "kind").Description(), HasSubstr("unknown kind 42"));
  EXPECT_EQ(Failure("broken", "uint8").Number(), 6);
  EXPECT_EQ(Failure("broken", "int16").Number(), 6);
  EXPECT_THAT(Failure("broken", "int16").Description(), HasSubstr("70000"));
  EXPECT_EQ(Failure("broken", "date").Number(), 6);
  EXPECT_EQ(probe().Call("broken", "text"), Variant(""));
}

TEST_F(ServerObjects, AreRefusedObjectsThatCannotBeCalled) {
  EXPECT_THAT(Failure("broken", "no type").Description(), HasSubstr("it has no type"));
  EXPECT_THAT(Failure("broken", "no functions").Description(), HasSubstr("its type lacks a function"));
  EXPECT_THAT(Failure("broken", "too short").Description(), HasSubstr("its struct_size is too small"));
  EXPECT_EQ(Failure("broken", "no type").Number(), 51);
}

TEST_F(ServerObjects, KeepTheErrorBeingHandledAsTheCause) {
  const Error error = Raised([&] {
    try {
      throw Error(61, "Disk", "Full.");
    } catch (const Error&) {
      probe().Call("fail", 5, "Orvan", "Locked.");
    }
  });
  ASSERT_TRUE(error.Cause());
  EXPECT_EQ(error.Cause()->Number(), 61);
}

TEST_F(ServerObjects, AreNotCalledIfThereIsNone) {
  const Error error = Raised([&] { probe().Call("none").ToObject().Call("hasMoreElements"); });
  EXPECT_EQ(error.Number(), 91);
  EXPECT_EQ(error.Details()[0], (Error::Detail{"member", "hasMoreElements"}));
}

}  // namespace
}  // namespace qmx::test
