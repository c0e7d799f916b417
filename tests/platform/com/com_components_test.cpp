#include "platform/com/com_components.h"

#include <gmock/gmock.h>

#include <future>
#include <thread>

#include "platform/com/objects.h"
#include "platform/components.h"
#include "platform/error.h"
#include "platform/running_call.h"
#include "tests/platform/com/registered_class.h"
#include "tests/platform/com/stub_component.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using testing::StartsWith;

ComPtr<IUnknown> AnsweringComponent() {
  auto component = StubComponent::Make([](const StubComponent::Call& call) {
    call.result->vt = VT_I4;
    call.result->lVal = 42;
    return S_OK;
  });
  return ComPtr<IUnknown>::Owning(component.Detach());
}

class ComComponentsOfThisMachine : public testing::Test {
 protected:
  std::shared_ptr<ComApartment> apartment = ComApartment::Enter();
  ComComponents components;
};

TEST_F(ComComponentsOfThisMachine, AreCreatedByTheirProgIds) {
  const RegisteredClass served("QmxTest.Answering", AnsweringComponent);
  const FurtherComponents::Answer answer = components.Create("qmxtest.ANSWERING");
  EXPECT_TRUE(answer.isRegistered);
  EXPECT_EQ(answer.refusal, "");
  EXPECT_EQ(answer.object.Call("ask"), Variant(42));
}

TEST_F(ComComponentsOfThisMachine, AreKnownByTheirProgIdsWhileTheyAreCreated) {
  std::string running;
  const RegisteredClass served("QmxTest.Answering", [&] {
    running = std::string(RunningCall::ProgId()) + ": " + RunningCall::Member();
    return AnsweringComponent();
  });
  components.Create("QmxTest.Answering");
  EXPECT_EQ(running, "QmxTest.Answering: the creation");
  EXPECT_EQ(RunningCall::Member(), nullptr);
}

TEST_F(ComComponentsOfThisMachine, HaveProgIdsOfAnyLettersAndLength) {
  const std::string names[] = {
      "Gr\xC3\xB6\xC3\x9F"
      "e.\xD0\x96",
      "\xE6\x97\xA5\xE8\xAA\x8C.\xF0\x9F\x98\x80", "Name with blanks.Manager", "QmxTest." + std::string(240, 'x'),
      "QmxTest.%1!,;=\"'"};
  for (const std::string& name : names) {
    const RegisteredClass served(name, AnsweringComponent);
    const FurtherComponents::Answer answer = components.Create(name);
    ASSERT_TRUE(answer.object) << answer.refusal;
    EXPECT_EQ(answer.object.Call("ask"), Variant(42));
    EXPECT_EQ(Raised([&] { answer.object.Call("none"); }).DetailOf("progid"), name);
  }
}

TEST_F(ComComponentsOfThisMachine, AreNotFoundUnderNamesThatTheRegistryCannotHold) {
  const RegisteredClass served("QmxTest.Answering", AnsweringComponent);
  const std::string names[] = {"",   std::string(100000, 'x'),  std::string("QmxTest.Answering\0", 18), "\xFF", ":",
                               "::", "QmxTest.Answering\\CLSID"};
  for (const std::string& name : names) {
    const FurtherComponents::Answer answer = components.Create(name);
    EXPECT_FALSE(answer.object);
    EXPECT_FALSE(answer.isRegistered);
    EXPECT_THAT(answer.refusal, StartsWith("COM: nothing is registered under this name"));
  }
}

TEST_F(ComComponentsOfThisMachine, NameTheirProgIdInErrors) {
  const RegisteredClass served("QmxTest.Answering", AnsweringComponent);
  const Object object = components.Create("QmxTest.Answering").object;
  EXPECT_EQ(Raised([&] { object.Call("none"); }).DetailOf("progid"), "QmxTest.Answering");
}

TEST_F(ComComponentsOfThisMachine, AreCreatedByMonikersOfTheirPrefix) {
  std::string parsed;
  const RegisteredPrefix prefix("qmxtest", [&](const std::string& name) {
    parsed = name;
    return AnsweringComponent();
  });
  const FurtherComponents::Answer answer = components.Create("qmxtest:java.util.Date");
  EXPECT_EQ(answer.refusal, "");
  ASSERT_TRUE(answer.object);
  EXPECT_EQ(answer.object.Call("ask"), Variant(42));
  EXPECT_EQ(parsed, "qmxtest:java.util.Date");
}

// The built-in date is asked for thousands of times in a run, and each search reads the registry several times.
TEST_F(ComComponentsOfThisMachine, AreSearchedForOnceUnderANameThatIsNotRegistered) {
  const FurtherComponents::Answer before = components.Create("QmxTest.Late");
  EXPECT_THAT(before.refusal, StartsWith("COM: nothing is registered under this name"));
  const RegisteredClass served("QmxTest.Late", AnsweringComponent);
  for (const char* name : {"QmxTest.Late", "qmxtest.LATE"}) {
    const FurtherComponents::Answer again = components.Create(name);
    EXPECT_FALSE(again.object);
    EXPECT_FALSE(again.isRegistered);
    EXPECT_EQ(again.refusal, before.refusal);
  }
  ComComponents ofAnotherRun;
  EXPECT_TRUE(ofAnotherRun.Create("QmxTest.Late").object);
}

TEST_F(ComComponentsOfThisMachine, AreTriedAgainIfTheirCreationFailed) {
  {
    const RegisteredClass failing("QmxTest.Answering", AnsweringComponent, E_FAIL);
    EXPECT_FALSE(components.Create("QmxTest.Answering").object);
  }
  const RegisteredClass served("QmxTest.Answering", AnsweringComponent);
  EXPECT_TRUE(components.Create("QmxTest.Answering").object);
}

TEST_F(ComComponentsOfThisMachine, AreFoundWithoutBeingCreated) {
  const RegisteredClass served("QmxTest.Answering", []() -> ComPtr<IUnknown> {
    ADD_FAILURE() << "It was created.";
    return {};
  });
  const RegisteredClass prefix("qmxtest", AnsweringComponent);
  for (const char* name : {"qmxtest.ANSWERING", "qmxtest:java.util.Date"}) {
    const FurtherComponents::Registration found = components.Find(name);
    EXPECT_TRUE(found.isRegistered) << name;
    EXPECT_EQ(found.problem, "");
  }
  EXPECT_FALSE(components.Find("QmxTest.Nothing").isRegistered);
  EXPECT_FALSE(components.Find("qmxnone:java.util.Date").isRegistered);
}

TEST_F(ComComponentsOfThisMachine, AreFoundWithTheReasonWhyTheirServerCannotBeUsed) {
  const RegisteredLibrary missing("QmxTest.Answering", "C:\\none\\orvan.dll");
  const FurtherComponents::Registration found = components.Find("QmxTest.Answering");
  EXPECT_TRUE(found.isRegistered);
  EXPECT_THAT(found.problem, StartsWith("COM: its library C:\\none\\orvan.dll is missing: 0x"));
  EXPECT_EQ(found.problem, components.Create("QmxTest.Answering").refusal);
}

TEST_F(ComComponentsOfThisMachine, ThatAreDisconnectedAreErrorsWithTheResult) {
  OtherApartment server(AnsweringComponent());
  const Object object = ObjectFrom(server.Unmarshal().Get(), "QmxTest.Remote");
  EXPECT_EQ(object.Call("ask"), Variant(42));
  server.Disconnect();
  const Error error = Raised([&] { object.Call("ask"); });
  // Windows says that the object is disconnected, Wine that it no longer has the interface.
  EXPECT_THAT(error.DetailOf("hresult"), testing::AnyOf(StartsWith("0x80010108"), StartsWith("0x800706B5")));
  EXPECT_LT(error.Number(), 0);
  EXPECT_EQ(error.DetailOf("member"), "ask");
  EXPECT_EQ(error.DetailOf("progid"), "QmxTest.Remote");
}

TEST(AnApartment, IsLeftAfterTheLastObject) {
  auto released = std::async(std::launch::async, [] {
    Object object;
    {
      const std::shared_ptr<ComApartment> apartment = ComApartment::Enter();
      const RegisteredClass served("QmxTest.Answering", AnsweringComponent);
      ComComponents components;
      object = components.Create("QmxTest.Answering").object;
    }
    const Variant answer = object.Call("ask");  // the apartment is still there
    object = Object();
    // Nothing is left of it: another kind can be entered.
    const HRESULT entered = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    if (SUCCEEDED(entered)) CoUninitialize();
    return answer == Variant(42) && entered == S_OK;
  });
  EXPECT_TRUE(released.get());
}

}  // namespace
}  // namespace qmx::test
