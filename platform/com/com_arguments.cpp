#include "platform/com/com_arguments.h"

#include <algorithm>
#include <utility>

#include "platform/error.h"

namespace qmx {
namespace {

bool HasType(const VARIANT& value) { return value.vt != VT_EMPTY && value.vt != VT_NULL; }

bool IsPassedAsItsType(const VARIANT& value, ComArguments::References references) {
  if (references == ComArguments::References::OwnTypes) return HasType(value);
  switch (value.vt) {
    case VT_BOOL:
    case VT_UI1:
    case VT_I2:
    case VT_I4:
    case VT_R8:
      return true;
    default:
      return false;
  }
}

VARIANT ReferenceTo(VARIANT& variable, bool isOfItsType) {
  VARIANT reference;
  VariantInit(&reference);
  if (isOfItsType) {
    reference.vt = static_cast<VARTYPE>(VT_BYREF | variable.vt);
    reference.byref = &variable.llVal;
  } else {
    reference.vt = VT_BYREF | VT_VARIANT;
    reference.pvarVal = &variable;
  }
  return reference;
}

// Names the argument in the error that `take` raises.
template <typename Body>
auto ForArgument(std::size_t index, Body&& take) {
  try {
    return take();
  } catch (Error& error) {
    error.With("argument", std::to_string(index + 1));
    throw;
  }
}

}  // namespace

static_assert(sizeof(OwnedVariant) == sizeof(VARIANT));  // COM reads an array of VARIANT

ComArguments::ComArguments(std::span<const Argument> arguments, References references)
    : arguments_(arguments), variables_(arguments.size()), passed_(arguments.size()) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    VARIANT& passed = *passed_[arguments.size() - 1 - i].Get();
    VARIANT& value = arguments[i].IsReference() ? *variables_[i].Get() : passed;
    ForArgument(i, [&] { ToVariant(arguments[i].Value(), value); });
    if (!arguments[i].IsReference()) continue;
    const bool isOfItsType = IsPassedAsItsType(value, references);
    haveOtherTypes_ = haveOtherTypes_ || (!isOfItsType && HasType(value));
    passed = ReferenceTo(value, isOfItsType);
  }
  parameters_.rgvarg = passed_.empty() ? nullptr : passed_.front().Get();
  parameters_.cArgs = static_cast<UINT>(passed_.size());
}

Variant ComArguments::Take(const VARIANT& result) {
  std::vector<std::pair<const Argument*, Variant>> written;
  for (std::size_t i = 0; i < arguments_.size(); ++i) {
    if (!arguments_[i].IsReference()) continue;
    written.emplace_back(&arguments_[i], ForArgument(i, [&] { return FromVariant(variables_[i].Value()); }));
  }
  Variant returned = FromVariant(result);
  for (auto& [variable, value] : written) variable->Write(std::move(value));
  return returned;
}

}  // namespace qmx
