#include "platform/com/hresult.h"

#include <cstdio>

#include "platform/com/bstr.h"
#include "platform/error.h"

namespace qmx {
namespace {

// The facility of the classic numbers.
constexpr std::uint32_t kClassic = 0x800A0000;
constexpr std::uint32_t kUpperHalf = 0xFFFF0000;

}  // namespace

std::string Hexadecimal(HRESULT result) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(result));
  return text;
}

std::string SystemMessage(HRESULT result) {
  wchar_t text[512];
  const DWORD flags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK;
  DWORD length =
      FormatMessageW(flags, nullptr, static_cast<DWORD>(result), 0, text, static_cast<DWORD>(std::size(text)), nullptr);
  const std::wstring_view blanksAndStop = L" .\r\n";
  while (length > 0 && blanksAndStop.find(text[length - 1]) != std::wstring_view::npos) --length;
  return Utf8WithReplacements({text, length});
}

std::string DescribeHresult(HRESULT result) {
  const std::string message = SystemMessage(result);
  return message.empty() ? Hexadecimal(result) : Hexadecimal(result) + " (" + message + ")";
}

std::int32_t NumberOf(HRESULT result) {
  const auto bits = static_cast<std::uint32_t>(result);
  if ((bits & kUpperHalf) == kClassic) return static_cast<std::int32_t>(bits & ~kUpperHalf);
  switch (result) {
    case DISP_E_MEMBERNOTFOUND:
    case DISP_E_UNKNOWNNAME:
      return errors::kNoSuchMember;
    case DISP_E_BADPARAMCOUNT:
    case DISP_E_PARAMNOTOPTIONAL:
      return errors::kWrongArgumentCount;
    case DISP_E_TYPEMISMATCH:
    case DISP_E_BADVARTYPE:
      return errors::kTypeMismatch;
    case DISP_E_OVERFLOW:
      return errors::kOverflow;
    case E_OUTOFMEMORY:
      return errors::kOutOfMemory;
    default:
      return result;
  }
}

HRESULT ResultOf(std::int32_t number) {
  if (number < 0) return number;
  if (number == 0 || number > 0xFFFF) return E_FAIL;
  return static_cast<HRESULT>(kClassic | static_cast<std::uint32_t>(number));
}

}  // namespace qmx
