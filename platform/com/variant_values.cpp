#include "platform/com/variant_values.h"

#include <cstring>
#include <limits>
#include <string>
#include <utility>

#include "platform/com/bstr.h"
#include "platform/com/com_ptr.h"
#include "platform/com/exact_decimal.h"
#include "platform/com/hresult.h"
#include "platform/com/objects.h"
#include "platform/com/ole_date.h"
#include "platform/com/variant_types.h"
#include "platform/error.h"

namespace qmx {
namespace {

constexpr std::int64_t kLargestExact = std::int64_t{1} << std::numeric_limits<double>::digits;

[[noreturn]] void Refuse(const std::string& what) {
  throw Error(errors::kTypeMismatch, "COM", "Type mismatch: the component gave " + what + ".");
}

Variant FromWhole(std::int64_t value) {
  if (std::in_range<std::int32_t>(value)) return static_cast<std::int32_t>(value);
  if (value >= -kLargestExact && value <= kLargestExact) return static_cast<double>(value);
  return std::to_string(value);
}

Variant FromWhole(std::uint64_t value) {
  if (std::in_range<std::int64_t>(value)) return FromWhole(static_cast<std::int64_t>(value));
  return std::to_string(value);
}

Variant FromUnknown(IUnknown* unknown) {
  if (!unknown) return Object();
  ComPtr<IDispatch> dispatch;
  const HRESULT result = unknown->QueryInterface(IID_IDispatch, dispatch.UntypedReceiver());
  if (dispatch) return ObjectFrom(dispatch.Get());
  Refuse("an object without IDispatch, which cannot be called by name: " +
         DescribeHresult(FAILED(result) ? result : E_NOINTERFACE));
}

Variant FromErrorValue(SCODE code) {
  if (code == DISP_E_PARAMNOTFOUND) return {};
  Refuse("the error value " + DescribeHresult(code));
}

Variant FromReference(const VARIANT& reference) {
  const auto type = static_cast<VARTYPE>(reference.vt & ~VT_BYREF);
  if (!reference.byref) Refuse("a null reference of type " + TypeName(reference.vt));
  if (type == VT_DECIMAL) return DecimalText(*reference.pdecVal);
  if (type == VT_VARIANT) {
    if (reference.pvarVal->vt == (VT_BYREF | VT_VARIANT)) Refuse("a reference to a reference");
    return FromVariant(*reference.pvarVal);
  }
  const std::size_t size = SizeOf(type);
  if (size == 0) Refuse("a value of the unknown type " + TypeName(reference.vt));
  VARIANT value;  // borrows a text or an object
  VariantInit(&value);
  value.vt = type;
  std::memcpy(&value.llVal, reference.byref, size);
  return FromVariant(value);
}

}  // namespace

Variant FromVariant(const VARIANT& value) {
  switch (value.vt) {
    case VT_I4:
    case VT_INT:
      return static_cast<std::int32_t>(value.lVal);
    case VT_BSTR:
      return Utf8(View(value.bstrVal));
    case VT_DISPATCH:
      return ObjectFrom(value.pdispVal);
    case VT_BOOL:
      return value.boolVal != VARIANT_FALSE;
    case VT_EMPTY:
      return {};
    case VT_NULL:
      return Variant::Null();
    case VT_DATE:
      return FromOleDate(value.date);
    case VT_R8:
      return value.dblVal;
    case VT_R4:
      return static_cast<double>(value.fltVal);
    case VT_I1:
      return static_cast<std::int16_t>(static_cast<signed char>(value.cVal));
    case VT_UI1:
      return static_cast<std::uint8_t>(value.bVal);
    case VT_I2:
      return static_cast<std::int16_t>(value.iVal);
    case VT_UI2:
      return static_cast<std::int32_t>(value.uiVal);
    case VT_UI4:
    case VT_UINT:
      return FromWhole(std::int64_t{value.ulVal});
    case VT_I8:
      return FromWhole(std::int64_t{value.llVal});
    case VT_UI8:
      return FromWhole(std::uint64_t{value.ullVal});
    case VT_DECIMAL:
      return DecimalText(value.decVal);
    case VT_CY:
      return CurrencyText(value.cyVal);
    case VT_UNKNOWN:
      return FromUnknown(value.punkVal);
    case VT_ERROR:
      return FromErrorValue(value.scode);
    default:
      break;
  }
  if (value.vt & VT_ARRAY) Refuse("an array (" + TypeName(value.vt) + "). Only single values can be taken");
  if (value.vt & VT_BYREF) return FromReference(value);
  Refuse("a value of the unknown type " + TypeName(value.vt));
}

void ToVariant(const Variant& value, VARIANT& out) {
  switch (value.GetKind()) {
    case Variant::Kind::Empty:
      out.vt = VT_EMPTY;
      break;
    case Variant::Kind::Null:
      out.vt = VT_NULL;
      break;
    case Variant::Kind::Boolean:
      out.boolVal = value.ToBoolean() ? VARIANT_TRUE : VARIANT_FALSE;
      out.vt = VT_BOOL;
      break;
    case Variant::Kind::UInt8:
      out.bVal = value.ToUInt8();
      out.vt = VT_UI1;
      break;
    case Variant::Kind::Int16:
      out.iVal = value.ToInt16();
      out.vt = VT_I2;
      break;
    case Variant::Kind::Int32:
      out.lVal = value.ToInt32();
      out.vt = VT_I4;
      break;
    case Variant::Kind::Double:
      out.dblVal = value.ToDouble();
      out.vt = VT_R8;
      break;
    case Variant::Kind::DateTime:
      out.date = ToOleDate(value.ToDateTime());
      out.vt = VT_DATE;
      break;
    case Variant::Kind::Text:
      out.bstrVal = NewBstr(*value.IfText());
      out.vt = VT_BSTR;
      break;
    case Variant::Kind::Object:
      out.pdispVal = DispatchOf(*value.IfObject()).Detach();
      out.vt = VT_DISPATCH;
      break;
  }
}

}  // namespace qmx
