// The arguments of a component's call to an object of the program.
#pragma once

#include <oaidl.h>

#include <vector>

#include "platform/components.h"

namespace qmx {

class ComponentCall {
 public:
  // Raises the errors of FromVariant.
  explicit ComponentCall(const DISPPARAMS& parameters);

  // In the order in which they were written. Those that the component passed as references are references.
  std::span<const Argument> Arguments() const { return arguments_; }

  // Stores the variables that the callee changed where the component's references point, as their types. If one cannot
  // be converted, raises 13 or 6 and stores none.
  void WriteBack();

 private:
  const DISPPARAMS& parameters_;
  std::vector<Variant> before_;
  std::vector<Variant> variables_;
  std::vector<Argument> arguments_;
};

}  // namespace qmx
