#include "com/values.h"

#include <cmath>
#include <cstring>
#include <new>
#include <utility>

#include "binding/failure.h"
#include "com/objects.h"

namespace orvan {
namespace {

constexpr double kSecondsPerDay = 86400;

// COM counts days, and the fraction of a negative one forward too.
std::int64_t Seconds(DATE days) {
  const double whole = std::trunc(days);
  return static_cast<std::int64_t>(whole * kSecondsPerDay + std::nearbyint(std::fabs(days - whole) * kSecondsPerDay));
}

DATE Days(std::int64_t seconds) {
  const double whole = std::floor(static_cast<double>(seconds) / kSecondsPerDay);
  const double fraction = (static_cast<double>(seconds) - whole * kSecondsPerDay) / kSecondsPerDay;
  return whole < 0 ? whole - fraction : whole + fraction;
}

// The innermost variable of a reference; the value itself if it is none.
VARIANT& Innermost(VARIANT& value) { return value.vt == (VT_BYREF | VT_VARIANT) ? *value.pvarVal : value; }

bool IsSame(const qmx_value& one, const qmx_value& other) {
  return one.kind == other.kind && std::memcmp(&one.as, &other.as, sizeof one.as) == 0;
}

}  // namespace

std::string Utf8(const wchar_t* text, std::size_t length) {
  if (length == 0) return {};
  const int units = static_cast<int>(length);
  const int size = WideCharToMultiByte(CP_UTF8, 0, text, units, nullptr, 0, nullptr, nullptr);
  std::string converted(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, units, converted.data(), size, nullptr, nullptr);
  return converted;
}

std::string Utf8(const wchar_t* text) { return Utf8(text, std::wcslen(text)); }

std::wstring Wide(const char* text, std::size_t length) {
  if (length == 0) return {};
  const int bytes = static_cast<int>(length);
  const int size = MultiByteToWideChar(CP_UTF8, 0, text, bytes, nullptr, 0);
  std::wstring converted(static_cast<std::size_t>(size), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text, bytes, converted.data(), size);
  return converted;
}

BSTR NewBstr(const char* text, std::size_t length) {
  const std::wstring wide = Wide(text, length);
  const BSTR made = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
  if (!made) throw std::bad_alloc();
  return made;
}

ServersArgument::ServersArgument(VARIANT& given) : given_(given) {
  value_.struct_size = sizeof value_;
  VARIANT& variable = Innermost(given);
  if (given.vt & VT_BYREF) value_.flags = QMX_BY_REFERENCE;
  VARIANT content;
  VariantInit(&content);
  const HRESULT copied = VariantCopyInd(&content, &variable);
  if (FAILED(copied))
    throw Failure(QMX_E_TYPE_MISMATCH, "Sandbox", "An argument has a type that components do not take.");
  try {
    Fill(content);
  } catch (...) {
    VariantClear(&content);
    throw;
  }
  VariantClear(&content);
  before_ = value_;
}

void ServersArgument::Fill(const VARIANT& content) {
  switch (content.vt) {
    case VT_EMPTY:
      value_.kind = QMX_EMPTY;
      return;
    case VT_NULL:
      value_.kind = QMX_NULL;
      return;
    case VT_BOOL:
      value_.kind = QMX_BOOLEAN;
      value_.as.boolean = content.boolVal != VARIANT_FALSE;
      return;
    case VT_UI1:
      value_.kind = QMX_UINT8;
      value_.as.integer = content.bVal;
      return;
    case VT_I2:
      value_.kind = QMX_INT16;
      value_.as.integer = content.iVal;
      return;
    case VT_I4:
    case VT_INT:
      value_.kind = QMX_INT32;
      value_.as.integer = content.lVal;
      return;
    case VT_R4:
      value_.kind = QMX_DOUBLE;
      value_.as.number = content.fltVal;
      return;
    case VT_R8:
      value_.kind = QMX_DOUBLE;
      value_.as.number = content.dblVal;
      return;
    case VT_DATE:
      value_.kind = QMX_DATETIME;
      value_.as.seconds = Seconds(content.date);
      return;
    case VT_BSTR:
      text_ = Utf8(content.bstrVal, SysStringLen(content.bstrVal));
      value_.kind = QMX_TEXT;
      value_.as.text = {text_.data(), text_.size()};
      return;
    case VT_DISPATCH:
      value_.kind = QMX_OBJECT;
      value_.as.object = lent_ = ToServer(content.pdispVal);
      return;
    default:
      throw Failure(QMX_E_TYPE_MISMATCH, "Sandbox",
                    "An argument has the type " + std::to_string(content.vt) +
                        " of COM. Pass a number, a text, a date-time, a boolean or an object.");
  }
}

ServersArgument::~ServersArgument() {
  if (lent_) lent_->type->release(lent_);
}

void ServersArgument::WriteBack() {
  if ((value_.flags & QMX_BY_REFERENCE) == 0 || IsSame(value_, before_)) return;
  VARIANT written;
  VariantInit(&written);
  ToCom(value_, written);
  VARIANT& variable = Innermost(given_);
  if ((variable.vt & VT_BYREF) == 0) {  // a VARIANT of the caller
    std::swap(variable, written);
    VariantClear(&written);
    return;
  }
  const auto type = static_cast<VARTYPE>(variable.vt & ~VT_BYREF);
  const HRESULT changed = VariantChangeTypeEx(&written, &written, LOCALE_INVARIANT, 0, type);
  if (FAILED(changed)) {
    VariantClear(&written);
    throw Failure(QMX_E_TYPE_MISMATCH, "Sandbox", "A value does not fit into the variable that was passed for it.");
  }
  switch (type) {
    case VT_BOOL:
    case VT_I2:
      std::swap(*variable.piVal, written.iVal);
      break;
    case VT_UI1:
      std::swap(*variable.pbVal, written.bVal);
      break;
    case VT_I4:
    case VT_INT:
      std::swap(*variable.plVal, written.lVal);
      break;
    case VT_R4:
      std::swap(*variable.pfltVal, written.fltVal);
      break;
    default:  // eight bytes: numbers, date-times, texts and objects
      std::swap(*variable.pllVal, written.llVal);
      break;
  }
  VariantClear(&written);
}

void ToCom(const qmx_value& value, VARIANT& out) {
  switch (value.kind) {
    case QMX_EMPTY:
      out.vt = VT_EMPTY;
      return;
    case QMX_NULL:
      out.vt = VT_NULL;
      return;
    case QMX_BOOLEAN:
      out.boolVal = value.as.boolean ? VARIANT_TRUE : VARIANT_FALSE;
      out.vt = VT_BOOL;
      return;
    case QMX_UINT8:
      out.bVal = static_cast<BYTE>(value.as.integer);
      out.vt = VT_UI1;
      return;
    case QMX_INT16:
      out.iVal = static_cast<SHORT>(value.as.integer);
      out.vt = VT_I2;
      return;
    case QMX_INT32:
      out.lVal = value.as.integer;
      out.vt = VT_I4;
      return;
    case QMX_DOUBLE:
      out.dblVal = value.as.number;
      out.vt = VT_R8;
      return;
    case QMX_DATETIME:
      out.date = Days(value.as.seconds);
      out.vt = VT_DATE;
      return;
    case QMX_TEXT:
      out.bstrVal = NewBstr(value.as.text.data, value.as.text.length);
      out.vt = VT_BSTR;
      return;
    case QMX_OBJECT:
      out.pdispVal = FromServer(value.as.object);
      out.vt = VT_DISPATCH;
      return;
    default:
      throw Failure(QMX_E_TYPE_MISMATCH, "Sandbox", "The server gave a value of an unknown kind.");
  }
}

}  // namespace orvan
