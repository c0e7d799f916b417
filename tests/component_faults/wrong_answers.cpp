#include "tests/component_faults/wrong_answers.h"

namespace qmx::test {
Found FoundAfter(ErpCopy& copy) {
  copy.Run();
  return {copy.Left(), copy.Reported(), copy.Rig().calls.Lines(), copy.Erp().calls.HasStruck()};
}

const std::vector<WrongAnswer>& WrongAnswers() {
  static const std::vector<WrongAnswer> answers = {
      {"raises an error",
       [](ScriptedErp&) -> Variant { throw Error(7000, "Orvan", "The ERP's session has ended: log in again."); }},
      {"gives a text", [](ScriptedErp&) -> Variant { return "Z\xC3\xBCrich 7"; }},
      {"gives a number", [](ScriptedErp&) -> Variant { return 123456; }},
      {"gives null", [](ScriptedErp&) { return Variant::Null(); }},
      {"gives nothing", [](ScriptedErp&) { return Variant(); }},
      {"gives an object", [](ScriptedErp& erp) -> Variant { return Object(erp.Make("other")); }},
      {"gives no object", [](ScriptedErp&) -> Variant { return Object(); }},
  };
  return answers;
}

std::string CopyFault::Name() const {
  return (number == 1 ? "" : "call " + std::to_string(number) + " of ") + call + ' ' + answer->name;
}

std::vector<CopyFault> FaultsOf(const CopySubject& subject) {
  ErpCopy usual(subject, Ways().front());
  usual.Run();
  const PlannedCalls& calls = usual.Erp().calls;
  std::vector<CopyFault> faults;
  for (const std::string& call : calls.Made()) {
    for (const WrongAnswer& answer : WrongAnswers()) faults.push_back({call, 1, &answer});
    if (calls.Count(call) > 1) faults.push_back({call, 2, &WrongAnswers().front()});
  }
  return faults;
}

Found WithoutFault(const CopySubject& subject, const Way& way) {
  ErpCopy copy(subject, way);
  return FoundAfter(copy);
}

Found With(const CopyFault& fault, const CopySubject& subject, const Way& way) {
  ErpCopy copy(subject, way);
  copy.Erp().calls.Strike(fault.call, fault.number);
  copy.Erp().wrongAnswer = [&] { return fault.answer->give(copy.Rig().erp); };
  return FoundAfter(copy);
}

}  // namespace qmx::test
