#include "tests/bridges/java/java_components.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class JavaMembers : public JavaComponents {
 protected:
  std::string Missing(const Object& object, const char* name) {
    const Error error = Raised([&] { object.Call(std::string_view(name)); });
    EXPECT_EQ(error.Number(), 438);
    return error.Description();
  }
  std::vector<std::string> Elements(const char* name) {
    const Object several = members.Call(std::string_view(name)).ToObject();
    std::vector<std::string> all;
    while (several.Call("hasMoreElements").ToBoolean()) all.push_back(several.Call("nextElement").ToText());
    return all;
  }
  Object members = components.CreateObject("bridge.Members");
};

TEST_F(JavaMembers, OfTheClassItsParentsAndItsInterfacesAreCalled) {
  EXPECT_EQ(members.Call("getInherited"), Variant("inherited"));
  EXPECT_EQ(members.Call("getDefault"), Variant("default"));
  EXPECT_EQ(members.Call("getCovariant"), Variant("child"));
  EXPECT_EQ(members.Call("getStatic"), Variant("static"));
}

TEST_F(JavaMembers, AreFoundInAnyCase) {
  EXPECT_EQ(members.Call("GETINHERITED"), Variant("inherited"));
  members.Call("SETmixed", "a");
  EXPECT_EQ(members.Call("getmixed"), Variant("a"));
}

TEST_F(JavaMembers, ThatDifferInCaseAreFoundByTheirSpelling) {
  EXPECT_EQ(members.Call("getTwice"), Variant("getTwice"));
  EXPECT_EQ(members.Call("gettwice"), Variant("gettwice"));
  const Error error = Raised([&] { members.Call("GETTWICE"); });
  EXPECT_EQ(error.Number(), 13);
  EXPECT_THAT(error.Description(), HasSubstr("there are getTwice(), gettwice()."));
}

TEST_F(JavaMembers, OfAClassThatIsNotPublicAreCalledThroughItsPublicInterface) {
  const Object hidden = members.Call("getHidden").ToObject();
  EXPECT_EQ(hidden.Call("getOpen"), Variant("open"));
  EXPECT_THAT(Missing(hidden, "getShut"), HasSubstr("has no public method getShut."));
}

TEST_F(JavaMembers, ThatAreNotPublicOrNotThereAreMissing) {
  EXPECT_EQ(Missing(members, "getProtected"), "The class bridge.Members has no public method getProtected.");
  EXPECT_EQ(Missing(members, "getNothing"), "The class bridge.Members has no public method getNothing.");
}

TEST_F(JavaMembers, IncludeGetClass) {
  const Object type = members.Call("getClass").ToObject();
  EXPECT_EQ(type.Call("getName"), Variant("bridge.Members"));
}

TEST_F(JavaMembers, GiveTheirOwnObjectsBack) {
  const Object self = members.Call("getSelf").ToObject();
  EXPECT_EQ(members.Call("isSelf", self), Variant(true));
  EXPECT_EQ(members.Call("isSelf", components.CreateObject("bridge.Members")), Variant(false));
}

TEST_F(JavaMembers, OfAnEnumerationAreItsOwn) { EXPECT_THAT(Elements("enumeration"), ElementsAre("a", "b")); }

TEST_F(JavaMembers, OfIteratorsIterablesAndStreamsIncludeThoseOfAnEnumeration) {
  EXPECT_THAT(Elements("iterator"), ElementsAre("a", "b"));
  EXPECT_THAT(Elements("iterable"), ElementsAre("a", "b"));
  EXPECT_THAT(Elements("stream"), ElementsAre("a", "b"));
  EXPECT_EQ(members.Call("iterable").ToObject().Call("size"), Variant(2));
  EXPECT_EQ(members.Call("iterator").ToObject().Call("next"), Variant("a"));
}

TEST_F(JavaMembers, OfAStreamIncludeItsCloseWhenTheProgramLetsItGo) {
  {
    const Object stream = members.Call("openStream").ToObject();
    EXPECT_EQ(stream.Call("nextElement"), Variant("a"));
    EXPECT_EQ(members.Call("getClosed"), Variant(0));
  }
  EXPECT_EQ(members.Call("getClosed"), Variant(1));
  members.Call("openStream");  // never read
  EXPECT_EQ(members.Call("getClosed"), Variant(2));
}

TEST_F(JavaMembers, OfAStreamWhoseCloseFailsAreReportedOnStandardError) {
  EXPECT_THAT(Elements("stuckStream"), ElementsAre("a"));
  const std::string printed = testing::internal::GetCapturedStderr();
  testing::internal::CaptureStderr();
  EXPECT_EQ(printed,
            "Java: closing a java.util.stream.ReferencePipeline$Head failed: java.lang.IllegalStateException: does not "
            "close\n");
  EXPECT_EQ(members.Call("getInherited"), Variant("inherited"));
}

TEST_F(JavaMembers, OfAnIterableWithoutAnIteratorFail) {
  const Error error = Raised([&] { Elements("noIterator"); });
  EXPECT_EQ(error.Number(), 91);
  EXPECT_THAT(error.Description(), HasSubstr("gave no iterator."));
}

TEST_F(JavaMembers, OfAnEnumerationGiveEachElementItsOwnKind) {
  const Object mixture = members.Call("mixture").ToObject();
  EXPECT_EQ(mixture.Call("nextElement"), Variant(1));
  EXPECT_EQ(mixture.Call("nextElement"), Variant("two"));
  EXPECT_EQ(mixture.Call("nextElement"), Variant(Object()));
  EXPECT_EQ(mixture.Call("hasMoreElements"), Variant(false));
  EXPECT_THAT(Raised([&] { mixture.Call("nextElement"); }).Description(),
              HasSubstr("java.util.NoSuchElementException: no more"));
}

// They would not fit into the JVM's 64 MiB; and its check of JNI calls complains about local references that pile up.
TEST_F(JavaMembers, LeaveNoReferencesBehind) {
  for (int i = 0; i < 100000; ++i) ASSERT_EQ(members.Call("getBig").ToObject().Call("getSize"), Variant(1000));
  const Object list = members.Call("iterable").ToObject();
  for (int i = 0; i < 50000; ++i) ASSERT_EQ(members.Call("isSelf", list), Variant(false));
}

}  // namespace
}  // namespace qmx::test
