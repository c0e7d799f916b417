// What a component's call can give in place of what it should.
#pragma once

#include <string>
#include <vector>

#include "tests/component_faults/erp_copy.h"

namespace qmx::test {

struct WrongAnswer {
  const char* name;  // "raises an error", "gives null"
  Variant (*give)(ScriptedErp& erp);
};

const std::vector<WrongAnswer>& WrongAnswers();

// What a copy left.
struct Found {
  std::vector<std::string> left;
  std::vector<std::string> reported;
  std::vector<std::string> calls;  // of the ERP, the database and the logs, in order
  bool hasStruck = false;

  friend bool operator==(const Found&, const Found&) = default;
};

Found FoundAfter(ErpCopy& copy);  // runs it

// A wrong answer at a call, counted from 1.
struct CopyFault {
  std::string call;
  int number;
  const WrongAnswer* answer;

  std::string Name() const;  // "call 2 of listed.getSkill gives null"
};

// Every call of the subject's copies with every wrong answer: the first call of each member, and the second one of
// those that are made several times.
std::vector<CopyFault> FaultsOf(const CopySubject& subject);

Found WithoutFault(const CopySubject& subject, const Way& way);
Found With(const CopyFault& fault, const CopySubject& subject, const Way& way);

}  // namespace qmx::test
