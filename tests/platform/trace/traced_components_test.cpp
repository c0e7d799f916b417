#include "platform/trace/traced_components.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <sstream>

#include "platform/trace/trace.h"
#include "tests/support/raised.h"
#include "tests/support/scripted_components.h"
#include "tests/support/second_process.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;

class TracedCalls : public testing::Test {
 protected:
  std::vector<std::string> Lines() {
    std::istringstream text(ReadFile(folder / "trace"));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    return lines;
  }

  TempFolder folder;
  CallLog log;
  ScriptedErp erp{log};
  Trace trace{folder / "trace"};
  TracedComponents components{erp, trace};
};

TEST_F(TracedCalls, StandInTheTraceInTheirOrder) {
  erp.Lists("Skills.SkillsManager", {{{"getSkill", "WLD"}}});
  const Object manager = components.CreateObject("Skills.SkillsManager");
  manager.Call("initialize", "OrvanSandbox, /data");
  const Object list = manager.Call("List", "", "ZZZZ").ToObject();
  EXPECT_TRUE(list.Call("hasMoreElements").ToBoolean());
  EXPECT_EQ(list.Call("nextElement").ToObject().Call("getSkill"), Variant("WLD"));

  EXPECT_THAT(
      Lines(),
      ElementsAre(
          R"({"kind":"component","op":"create","progid":"Skills.SkillsManager","object":1})",
          R"({"kind":"component","op":"call","object":1,"progid":"Skills.SkillsManager","member":"initialize","args":["OrvanSandbox, /data"],"result":{}})",
          R"({"kind":"component","op":"call","object":1,"progid":"Skills.SkillsManager","member":"List","args":["","ZZZZ"],"result":{"object":2}})",
          R"({"kind":"component","op":"call","object":2,"progid":"","member":"hasMoreElements","args":[],"result":true})",
          R"({"kind":"component","op":"call","object":2,"progid":"","member":"nextElement","args":[],"result":{"object":3}})",
          R"({"kind":"component","op":"call","object":3,"progid":"","member":"getSkill","args":[],"result":"WLD"})"));
}

TEST_F(TracedCalls, ShowObjectsByNumberAndPassThemOnAsThemselves) {
  const Object date = components.CreateObject("java:java.util.Date");
  const Object period = components.CreateObject("audit.period");
  period.Call("setFrom", date);
  period.Call("setTo", Object());
  EXPECT_EQ(log.Lines()[2], "period.setFrom(date1)");
  EXPECT_EQ(
      Lines()[2],
      R"({"kind":"component","op":"call","object":2,"progid":"audit.period","member":"setFrom","args":[{"object":1}],"result":{}})");
  EXPECT_EQ(
      Lines()[3],
      R"({"kind":"component","op":"call","object":2,"progid":"audit.period","member":"setTo","args":[{"object":null}],"result":{}})");
}

TEST_F(TracedCalls, ShowReferencesAsTheyWerePassedInAndWriteThemBack) {
  erp.Serves("Test.Counter", [&] {
    const auto counter = erp.Make("counter");
    counter->On("next", 2, [&](ScriptedObject::Arguments arguments) {
      EXPECT_TRUE(arguments[0].IsReference());
      EXPECT_FALSE(arguments[1].IsReference());
      arguments[0].Write(arguments[0].Value().ToInt32() + 1);
      return Variant();
    });
    counter->On("fill", 1, [&](ScriptedObject::Arguments arguments) {
      arguments[0].Write(Object(erp.Make("filled")));
      return Variant();
    });
    return Object(counter);
  });
  Variant number = 7;
  const Object counter = components.CreateObject("Test.Counter");
  counter.Call("next", Ref(number), "by value");
  EXPECT_EQ(number, Variant(8));
  EXPECT_EQ(
      Lines()[1],
      R"({"kind":"component","op":"call","object":1,"progid":"Test.Counter","member":"next","args":[{"ref":7},"by value"],"result":{}})");

  Variant object;
  counter.Call("fill", Ref(object));
  const Object first = object.ToObject();
  EXPECT_EQ(TracedObject::NumberOf(first), 2);
  EXPECT_TRUE(Lines()[2].find(R"("args":[{"ref":{}}])") != std::string::npos) << Lines()[2];
}

TEST_F(TracedCalls, PassOnWhatIsNoNumber) {
  erp.Serves("Test.Taker", [&] {
    const auto taker = erp.Make("taker");
    taker->Takes("take", 2);
    return Object(taker);
  });
  const double notANumber = std::numeric_limits<double>::quiet_NaN();
  Variant variable = notANumber;
  components.CreateObject("Test.Taker").Call("take", notANumber, Ref(variable));
  EXPECT_TRUE(std::isnan(variable.ToDouble()));
  EXPECT_EQ(
      Lines()[1],
      R"({"kind":"component","op":"call","object":1,"progid":"Test.Taker","member":"take","args":[null,{"ref":null}],"result":{}})");
}

TEST_F(TracedCalls, LeaveAnUnwrittenObjectInItsVariable) {
  erp.Serves("Test.Reader", [&] {
    const auto reader = erp.Make("reader");
    reader->Takes("read", 1);
    return Object(reader);
  });
  const Object reader = components.CreateObject("Test.Reader");
  Variant variable = reader;
  reader.Call("read", Ref(variable));
  EXPECT_EQ(variable, Variant(reader));
  EXPECT_EQ(log.Lines().back(), "reader.read(reader)");
}

TEST_F(TracedCalls, ThatFailShowTheErrorInPlaceOfTheResult) {
  erp.Serves("Test.Broken", [&] {
    const auto broken = erp.Make("broken");
    broken->On("read", 0, [](ScriptedObject::Arguments) -> Variant { throw Error(5, "Orvan", "Locked."); });
    return Object(broken);
  });
  const Error call = Raised([&] { components.CreateObject("Test.Broken").Call("read"); });
  EXPECT_EQ(call.Number(), 5);
  EXPECT_EQ(call.Description(), "Locked.");
  EXPECT_FALSE(call.Cause());
  const Error creation = Raised([&] { components.CreateObject("Test.Missing"); });
  EXPECT_EQ(creation.Number(), 429);
  EXPECT_EQ(creation.Details(), (std::vector<Error::Detail>{{"progid", "Test.Missing"}}));
  EXPECT_THAT(
      Lines(),
      ElementsAre(
          R"({"kind":"component","op":"create","progid":"Test.Broken","object":1})",
          R"({"kind":"component","op":"call","object":1,"progid":"Test.Broken","member":"read","args":[],"error":{"number":5,"source":"Orvan","description":"Locked."}})",
          R"({"kind":"component","op":"create","progid":"Test.Missing","error":{"number":429,"source":"ScriptedErp","description":"Cannot create object Test.Missing."}})"));
}

TEST_F(TracedCalls, ThatFailShowTheDetailsThatTheComponentGave) {
  erp.Serves("Test.Broken", [&] {
    const auto broken = erp.Make("broken");
    broken->On("read", 0, [](ScriptedObject::Arguments) -> Variant {
      throw Error(5, "Orvan", "Locked.").With("member", "read").With("details", "at a\nat b");
    });
    return Object(broken);
  });
  Raised([&] { components.CreateObject("Test.Broken").Call("read"); });
  EXPECT_EQ(
      Lines().back(),
      R"({"kind":"component","op":"call","object":1,"progid":"Test.Broken","member":"read","args":[],"error":{"number":5,"source":"Orvan","description":"Locked.","details":"at a\nat b"}})");
}

TEST_F(TracedCalls, ThatFailLeaveTheirVariablesAsTheyWere) {
  erp.Serves("Test.Broken", [&] {
    const auto broken = erp.Make("broken");
    broken->On("fill", 1, [](ScriptedObject::Arguments arguments) -> Variant {
      arguments[0].Write("half");
      throw Error(5, "Orvan", "Locked.");
    });
    return Object(broken);
  });
  Variant variable = "before";
  const Object broken = components.CreateObject("Test.Broken");
  Raised([&] { broken.Call("fill", Ref(variable)); });
  EXPECT_EQ(variable, Variant("before"));
}

// The first word is the file of the trace.
const SecondProcess::Work kEndsHalfway("ends halfway", [](const SecondProcess::Words& words) {
  CallLog log;
  ScriptedErp erp{log};
  Trace trace(words[0]);
  TracedComponents components{erp, trace};
  components.CreateObject("java:java.util.Date");
  std::_Exit(3);
});

TEST_F(TracedCalls, AreReadableUpToACrash) {
  EXPECT_EQ(SecondProcess("ends halfway", {folder / "trace"}).Wait().status, 3);
  EXPECT_THAT(Lines(), ElementsAre(R"({"kind":"component","op":"create","progid":"java:java.util.Date","object":1})"));
}

}  // namespace
}  // namespace qmx::test
