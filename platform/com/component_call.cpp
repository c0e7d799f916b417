#include "platform/com/component_call.h"

#include <cstring>
#include <deque>
#include <utility>

#include "platform/com/hresult.h"
#include "platform/com/variant_types.h"
#include "platform/com/variant_values.h"
#include "platform/error.h"

namespace qmx {
namespace {

// The place of an argument, counted from 0, in the component's list, whose last argument comes first.
VARIANT& Given(const DISPPARAMS& parameters, std::size_t index) {
  return parameters.rgvarg[parameters.cArgs - 1 - index];
}

// The reference that a chain of references ends in.
const VARIANT& Last(const VARIANT& reference) {
  const bool refersToReference = reference.vt == (VT_BYREF | VT_VARIANT) && (reference.pvarVal->vt & VT_BYREF) != 0;
  return refersToReference ? *reference.pvarVal : reference;
}

// A value that waits to be stored where a reference points.
class Prepared {
 public:
  Prepared(const VARIANT& reference, const Variant& value) : reference_(reference) {
    ToVariant(value, *value_.Get());
    const auto type = static_cast<VARTYPE>(reference.vt & ~VT_BYREF);
    if (type == VT_VARIANT) return;
    // In the user's locale "12.5" would be no number, or another one, where decimals have a comma.
    const HRESULT result = VariantChangeTypeEx(value_.Get(), value_.Get(), LOCALE_INVARIANT, VARIANT_ALPHABOOL, type);
    if (SUCCEEDED(result)) return;
    throw Error(NumberOf(result), "COM",
                "The value for a variable of type " + TypeName(type) +
                    " does not fit into it: " + DescribeHresult(result) + ".");
  }

  void Store() {
    const auto type = static_cast<VARTYPE>(reference_.vt & ~VT_BYREF);
    if (type == VT_VARIANT) {
      std::swap(*reference_.pvarVal, *value_.Get());
    } else if (type == VT_DECIMAL) {
      const WORD reserved = reference_.pdecVal->wReserved;
      *reference_.pdecVal = value_.Value().decVal;
      reference_.pdecVal->wReserved = reserved;
    } else {
      // Exchanged, so that the old text or object is released with this.
      const std::size_t size = SizeOf(type);
      LONGLONG old = 0;
      std::memcpy(&old, reference_.byref, size);
      std::memcpy(reference_.byref, &value_.Value().llVal, size);
      std::memcpy(&value_.Get()->llVal, &old, size);
    }
  }

 private:
  const VARIANT& reference_;
  OwnedVariant value_;
};

}  // namespace

ComponentCall::ComponentCall(const DISPPARAMS& parameters) : parameters_(parameters) {
  for (std::size_t i = 0; i < parameters.cArgs; ++i) before_.push_back(FromVariant(Given(parameters, i)));
  variables_ = before_;
  for (std::size_t i = 0; i < before_.size(); ++i) {
    const bool isReference = (Given(parameters, i).vt & VT_BYREF) != 0;
    arguments_.push_back(isReference ? Ref(variables_[i]) : Argument(before_[i]));
  }
}

void ComponentCall::WriteBack() {
  std::deque<Prepared> written;
  for (std::size_t i = 0; i < before_.size(); ++i) {
    if (arguments_[i].IsReference() && variables_[i] != before_[i]) {
      written.emplace_back(Last(Given(parameters_, i)), variables_[i]);
    }
  }
  for (Prepared& value : written) value.Store();
}

}  // namespace qmx
