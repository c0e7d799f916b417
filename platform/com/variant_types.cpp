#include "platform/com/variant_types.h"

namespace qmx {
namespace {

struct Type {
  VARTYPE type;
  const char* name;
  std::size_t size;
};

constexpr Type kTypes[] = {
    {VT_EMPTY, "VT_EMPTY", 0},
    {VT_NULL, "VT_NULL", 0},
    {VT_I2, "VT_I2", sizeof(SHORT)},
    {VT_I4, "VT_I4", sizeof(LONG)},
    {VT_R4, "VT_R4", sizeof(FLOAT)},
    {VT_R8, "VT_R8", sizeof(DOUBLE)},
    {VT_CY, "VT_CY", sizeof(CY)},
    {VT_DATE, "VT_DATE", sizeof(DATE)},
    {VT_BSTR, "VT_BSTR", sizeof(BSTR)},
    {VT_DISPATCH, "VT_DISPATCH", sizeof(IDispatch*)},
    {VT_ERROR, "VT_ERROR", sizeof(SCODE)},
    {VT_BOOL, "VT_BOOL", sizeof(VARIANT_BOOL)},
    {VT_VARIANT, "VT_VARIANT", 0},
    {VT_UNKNOWN, "VT_UNKNOWN", sizeof(IUnknown*)},
    {VT_DECIMAL, "VT_DECIMAL", 0},
    {VT_I1, "VT_I1", sizeof(CHAR)},
    {VT_UI1, "VT_UI1", sizeof(BYTE)},
    {VT_UI2, "VT_UI2", sizeof(USHORT)},
    {VT_UI4, "VT_UI4", sizeof(ULONG)},
    {VT_I8, "VT_I8", sizeof(LONGLONG)},
    {VT_UI8, "VT_UI8", sizeof(ULONGLONG)},
    {VT_INT, "VT_INT", sizeof(INT)},
    {VT_UINT, "VT_UINT", sizeof(UINT)},
    {VT_RECORD, "VT_RECORD", 0},
};

const Type* Find(VARTYPE type) {
  for (const Type& known : kTypes) {
    if (known.type == type) return &known;
  }
  return nullptr;
}

}  // namespace

std::string TypeName(VARTYPE type) {
  std::string name;
  if (type & VT_BYREF) name += "VT_BYREF|";
  if (type & VT_ARRAY) name += "VT_ARRAY|";
  const auto plain = static_cast<VARTYPE>(type & ~(VT_BYREF | VT_ARRAY));
  const Type* const known = Find(plain);
  return name + (known ? known->name : std::to_string(plain));
}

std::size_t SizeOf(VARTYPE type) {
  const Type* const known = Find(type);
  return known ? known->size : 0;
}

}  // namespace qmx
