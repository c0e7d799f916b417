#include "platform/components/host_object.h"

#include <gmock/gmock.h>

#include "platform/components/installed_components.h"
#include "platform/running_call.h"
#include "tests/platform/components/server_folder.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

// An object of the program: keeps what it was asked, and answers by the member's name.
class Notes : public Dispatch {
 public:
  Variant Invoke(const Member& member, std::span<const Argument> arguments) override {
    const std::string name(member.Name());
    asked.push_back(name);
    if (name == "text") return "a text of the program, longer than a small one";
    if (name == "moment") return DateTime::FromDate(2026, 11, 20);
    if (name == "echo") return arguments[0].Value();
    if (name == "same") return Object(shared.lock());
    if (name == "write") {
      arguments[0].Write(arguments[1].Value());
      return {};
    }
    if (name == "memory") throw std::bad_alloc();
    if (name == "running") return RunningCall::Member();
    if (name == "onward") return arguments[0].Value().ToObject().Call("echo", "there and back");
    throw Error(438, "Notes", "No member " + name + ".");
  }
  std::vector<std::string> asked;
  std::weak_ptr<Dispatch> shared;
};

class HostObjects : public testing::Test {
 protected:
  HostObjects() {
    folder.Add("probe", TestServer("probe"), {"Test.Probe"});
    probe = components.CreateObject("Test.Probe");
    notes->shared = notes;
  }

  Error Failure(const std::string& member) {
    return Raised([&] { probe.Call("call", own, member); });
  }

  ServerFolder folder;
  FakeClock clock;
  InstalledComponents components{clock, {folder.Path()}};
  std::shared_ptr<Notes> notes = std::make_shared<Notes>();
  Object own{notes};
  Object probe;
};

TEST_F(HostObjects, AreCalledByAServer) {
  EXPECT_EQ(probe.Call("call", own, "text"), Variant("a text of the program, longer than a small one"));
  EXPECT_EQ(probe.Call("call", own, "moment"), Variant(DateTime::FromDate(2026, 11, 20)));
  EXPECT_EQ(probe.Call("call", own, "echo", "argument"), Variant("argument"));
  EXPECT_EQ(probe.Call("call", own, "echo", Variant::Null()), Variant::Null());
  EXPECT_EQ(notes->asked, (std::vector<std::string>{"text", "moment", "echo", "echo"}));
}

TEST_F(HostObjects, AreNotCalledByAnIdThatTheyDidNotGive) {
  const Error error = Raised([&] { probe.Call("callByUnknownId", own); });
  EXPECT_EQ(error.Number(), 438);
  EXPECT_EQ(error.Description(), "No member has the id 1000000.");
  EXPECT_EQ(notes->asked, std::vector<std::string>());
}

TEST_F(HostObjects, SeeTheCallOfTheServerThatCallsThem) {
  EXPECT_EQ(probe.Call("call", own, "running"), Variant("call"));
  EXPECT_STREQ(RunningCall::ProgId(), "Test.Probe");
  EXPECT_EQ(RunningCall::Member(), nullptr);
}

TEST_F(HostObjects, LeaveTheCallOfTheServerRunningWhenTheyHaveCalledOthers) {
  const RunningCall outer("Outer.Object", "outer");
  qmx_object* const exported = ExportHostObject(notes);
  std::int32_t id = 0;
  qmx_error error = EmptyAbiError();
  ASSERT_EQ(exported->type->resolve(exported, "onward", 6, &id, &error), QMX_OK);
  {
    const Argument toProbe[] = {Variant(probe)};
    AbiArguments arguments(toProbe);
    qmx_value result{};
    result.struct_size = sizeof result;
    ASSERT_EQ(exported->type->invoke(exported, id, arguments.Pointers(), 1, &result, &error), QMX_OK);
    EXPECT_EQ(FromAbi(result, Reference::Given), Variant("there and back"));
  }
  exported->type->release(exported);
  EXPECT_STREQ(RunningCall::ProgId(), "Outer.Object");
  EXPECT_STREQ(RunningCall::Member(), "outer");
}

TEST_F(HostObjects, ComeBackAsTheObjectsTheyWere) {
  EXPECT_EQ(probe.Call("echo", own).ToObject(), own);
  EXPECT_EQ(probe.Call("call", own, "same").ToObject(), own);
}

TEST_F(HostObjects, LiveAsLongAsAServerKeepsThem) {
  std::weak_ptr<Notes> watched = notes;
  probe.Call("keep", own);
  own = Object();
  notes.reset();
  EXPECT_FALSE(watched.expired());
  EXPECT_TRUE(probe.Call("kept").ToObject());
  probe.Call("keep", Object());
  EXPECT_TRUE(watched.expired());
}

TEST_F(HostObjects, AreReleasedAfterTheCallThatPassedThem) {
  std::weak_ptr<Notes> watched = notes;
  probe.Call("isSelf", own);
  probe.Call("echo", own);
  own = Object();
  notes.reset();
  EXPECT_TRUE(watched.expired());
}

TEST_F(HostObjects, ServeAnObjectOfTheServerBackToIt) {
  EXPECT_EQ(probe.Call("isSelf", probe.Call("call", own, "echo", probe)), Variant(1));
  EXPECT_EQ(probe.Call("living"), Variant(1));
}

TEST_F(HostObjects, WriteAVariableOfTheServer) {
  Variant variable = "before";
  probe.Call("call", own, "write", Ref(variable), "after, and longer than a small text");
  EXPECT_EQ(variable, Variant("after, and longer than a small text"));
}

TEST_F(HostObjects, WriteObjectsIntoVariablesOfTheServerWithoutLosingAReference) {
  Variant variable;
  probe.Call("call", own, "write", Ref(variable), probe.Call("make"));
  EXPECT_EQ(probe.Call("living"), Variant(2));
  probe.Call("call", own, "write", Ref(variable), Variant(variable));  // the same object once more
  EXPECT_EQ(probe.Call("living"), Variant(2));
  variable = Variant();
  EXPECT_EQ(probe.Call("living"), Variant(1));
}

TEST_F(HostObjects, KeepAVariableOfTheServerThatTheyDoNotWrite) {
  Variant variable = "before";
  probe.Call("call", own, "echo", Ref(variable));
  EXPECT_EQ(variable, Variant("before"));
}

TEST_F(HostObjects, FailTheServersCallWithTheirError) {
  const Error error = Failure("getNothing");
  EXPECT_EQ(error.Number(), 438);
  EXPECT_EQ(error.Source(), "Notes");
  EXPECT_EQ(error.Description(), "No member getNothing.");
}

TEST_F(HostObjects, LetNoExceptionReachTheServer) { EXPECT_EQ(Failure("memory").Number(), 7); }

TEST_F(HostObjects, AreMadeForAServerByItsHost) {
  const Object date = probe.Call("create", "JAVA:java.util.date").ToObject();
  EXPECT_EQ(date.Call("getYear"), Variant(126));
  const Object another = probe.Call("create", "Test.Probe").ToObject();
  EXPECT_EQ(another.Call("living"), Variant(2));
}

TEST_F(HostObjects, AreRefusedToAServerIfNobodyServesTheProgId) {
  const Error error = Raised([&] { probe.Call("create", "Test.Unknown"); });
  EXPECT_EQ(error.Number(), 429);
  EXPECT_THAT(error.Description(), testing::HasSubstr("\"Test.Unknown\""));
}

TEST_F(HostObjects, AreMadeByAHostThatOutlivesEarlierOnes) {
  auto earlier = std::make_unique<InstalledComponents>(clock, std::vector{folder.Path()});
  InstalledComponents later{clock, {folder.Path()}};
  earlier.reset();
  EXPECT_TRUE(probe.Call("create", "Test.Probe").ToObject());
}

TEST_F(HostObjects, AreMadeByTheLatestHostStillThere) {
  {
    ServerFolder empty;
    InstalledComponents later{clock, {empty.Path()}};
    EXPECT_THROW(probe.Call("create", "Test.Probe"), Error);
  }
  EXPECT_TRUE(probe.Call("create", "Test.Probe").ToObject());
}

}  // namespace
}  // namespace qmx::test
