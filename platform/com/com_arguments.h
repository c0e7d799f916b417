// The arguments of one call to a component.
//
// The caller's variable of a number or a boolean is passed as a reference of its type. Variables of other kinds are
// passed as references to a VARIANT, in which the component may store a value of any type. Some components have
// parameters of a type, which refuse a reference to a VARIANT (VB6's "ByRef name As String"). They get references of
// the variables' types, into which a component can store values of these types only.
#pragma once

#include <oaidl.h>

#include <span>
#include <vector>

#include "platform/com/variant_values.h"
#include "platform/components.h"

namespace qmx {

class ComArguments {
 public:
  enum class References { AnyType, OwnTypes };

  explicit ComArguments(std::span<const Argument> arguments, References references = References::AnyType);
  ComArguments(const ComArguments&) = delete;
  ComArguments& operator=(const ComArguments&) = delete;

  DISPPARAMS& Parameters() { return parameters_; }  // last argument first, as COM wants them

  // Whether References::OwnTypes passes something else. An empty variable has no type of its own, nor has Null.
  bool HaveOtherTypes() const { return haveOtherTypes_; }

  // Returns the result of a call that succeeded, and writes what it wrote into the variables that were passed by
  // reference. If one of these values cannot be taken, raises its error and changes no variable.
  Variant Take(const VARIANT& result);

 private:
  std::span<const Argument> arguments_;
  std::vector<OwnedVariant> variables_;  // those that references refer to, by the place of the argument
  std::vector<OwnedVariant> passed_;     // last argument first; owned, because some components replace them
  DISPPARAMS parameters_{};
  bool haveOtherTypes_ = false;
};

}  // namespace qmx
