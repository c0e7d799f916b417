// The scheduling server changes the variables that the program passes by reference, or leaves them alone.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/component_faults/wrong_answers.h"

namespace qmx::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class References : public testing::TestWithParam<Way> {
 protected:
  using Write = std::function<void(ScriptedObject::Arguments arguments)>;

  // A copy of the service types, of whose members of the scheduling server `member` writes into its arguments.
  void Copy(const std::string& progId, const std::string& member, std::size_t arguments, Write write) {
    ScriptedErp& erp = copy_.Rig().erp;
    const std::string name = progId == "QMXServer20.ClientRequests" ? "requests" : "messages";
    erp.Serves(progId, [=, &erp] {
      const auto object = erp.Make(name);
      object->Takes("writeToMessageBox", 2).Takes("WriteToAlertBox", 2).Takes("UpdateStatusByTalbe", 3);
      object->On(member, arguments, [write](ScriptedObject::Arguments given) {
        write(given);
        return Variant();
      });
      return Object(object);
    });
    found_ = FoundAfter(copy_);
  }

  void UpdateStatus(Write write) { Copy("QMXServer20.ClientRequests", "UpdateStatusByTalbe", 3, std::move(write)); }

  std::vector<std::string> Calls(const char* prefix) { return copy_.Rig().calls.StartingWith({prefix}); }

  ErpCopy copy_{SubjectNamed("tsmdm030 in full"), GetParam()};
  Found found_;
};

TEST_P(References, ThatAreLeftAloneKeepTheirValues) {
  UpdateStatus([](ScriptedObject::Arguments) {});
  EXPECT_THAT(Calls("requests."), ElementsAre("requests.UpdateStatusByTalbe(17, \"tsmdm030\", 10)",
                                              "requests.UpdateStatusByTalbe(17, \"tsmdm030\", 40)"));
  EXPECT_THAT(found_.reported, IsEmpty());
}

TEST_P(References, ToTheRequestNumberChangeItForTheNextCall) {
  UpdateStatus([](ScriptedObject::Arguments given) { given[0].Write(-2147483647); });
  EXPECT_THAT(Calls("requests."), ElementsAre("requests.UpdateStatusByTalbe(17, \"tsmdm030\", 10)",
                                              "requests.UpdateStatusByTalbe(-2147483647, \"tsmdm030\", 40)"));
}

TEST_P(References, ToTheTableNameDoNotOutliveTheCall) {
  const Variant values[] = {"tsmdm100", 5, Variant::Null(), Variant(), Object(), DateTime::FromDate(2026, 1, 1)};
  int next = 0;
  UpdateStatus([&](ScriptedObject::Arguments given) { given[1].Write(values[next++]); });
  EXPECT_THAT(Calls("requests."), ElementsAre("requests.UpdateStatusByTalbe(17, \"tsmdm030\", 10)",
                                              "requests.UpdateStatusByTalbe(17, \"tsmdm030\", 40)"));
  EXPECT_THAT(found_.left, Contains("exit status 0"));
}

TEST_P(References, ToTheRequestNumberTakeATextThatIsANumber) {
  UpdateStatus([](ScriptedObject::Arguments given) { given[0].Write("18"); });
  EXPECT_THAT(Calls("requests.").back(), HasSubstr("(18, "));
  EXPECT_THAT(found_.left, Contains("exit status 0"));
}

// The program finds this out over the C interface, the component's side over COM, where the variable has a type.
TEST_P(References, ToTheRequestNumberRefuseWhatIsNoNumber) {
  int calls = 0;
  UpdateStatus([&](ScriptedObject::Arguments given) {
    if (++calls == 1) given[0].Write("eighteen");
  });
  ASSERT_EQ(found_.reported.size(), 1u);
  EXPECT_THAT(found_.reported[0], testing::StartsWith("error 13, "));
  EXPECT_THAT(found_.reported[0], HasSubstr("member: UpdateStatusByTalbe; progid: QMXServer20.ClientRequests"));
  EXPECT_THAT(found_.left, Contains("exit status 1"));
  EXPECT_THAT(found_.left, Contains("in use 0, last update time 2026-11-19"));
}

TEST_P(References, ToTheTimeOfAMessageAreTakenInAnyType) {
  copy_.Erp().calls.Strike("manager.List", 1);
  copy_.Erp().wrongAnswer = []() -> Variant { throw Error(7000, "Orvan", "It was made to fail."); };
  Copy("QMXServer20.clsMessHandler", "writeToMessageBox", 2,
       [](ScriptedObject::Arguments given) { given[0].Write("later"); });
  EXPECT_THAT(Calls("messages.WriteToAlertBox"),
              ElementsAre(testing::StartsWith("messages.WriteToAlertBox(\"later\", ")));
  EXPECT_THAT(found_.left, Contains("exit status 1"));
}

TEST_P(References, ToTheTimeOfAMessageMayBecomeAnObjectOfTheServer) {
  copy_.Erp().calls.Strike("manager.List", 1);
  copy_.Erp().wrongAnswer = []() -> Variant { throw Error(7000, "Orvan", "It was made to fail."); };
  Copy("QMXServer20.clsMessHandler", "writeToMessageBox", 2,
       [this](ScriptedObject::Arguments given) { given[0].Write(Object(copy_.Rig().erp.Make("moment"))); });
  EXPECT_THAT(Calls("messages.WriteToAlertBox"), ElementsAre(testing::StartsWith("messages.WriteToAlertBox(moment, ")));
}

INSTANTIATE_TEST_SUITE_P(InEachWay, References, testing::ValuesIn(Ways()), [](const auto& instance) {
  std::string name = instance.param.name;
  std::ranges::replace(name, ' ', '_');
  return name;
});

}  // namespace
}  // namespace qmx::test
