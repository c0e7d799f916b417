// An ERP of a test as a component server has it: its objects are called over the C interface.
#pragma once

#include <qmx/component_server.h>

#include <functional>
#include <string>
#include <string_view>

#include "platform/components.h"
#include "tests/component_faults/planned_calls.h"

namespace qmx::test {

class ServedErp {
 public:
  // Gives the result of the call that goes wrong, in place of the usual one, or raises an error.
  using WrongAnswer = std::function<Variant()>;

  explicit ServedErp(Components& erp) : erp_(erp) {}

  PlannedCalls calls;
  WrongAnswer wrongAnswer;

  // Returns a new object, with a reference for the caller.
  qmx_object* Create(std::string_view progId);

  // The kind of an object of such an ERP, as calls name it; empty for another object.
  static std::string KindOf(const qmx_object& object);

 private:
  Components& erp_;
};

}  // namespace qmx::test
