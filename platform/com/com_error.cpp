#include "platform/com/com_error.h"

#include "platform/com/bstr.h"
#include "platform/com/hresult.h"

namespace qmx {
namespace {

std::string Described(const FailedCall& call, std::int32_t number) {
  const std::string member = "\"" + call.member + "\"";
  switch (number) {
    case errors::kNoSuchMember:
      return "The component has no member " + member + ".";
    case errors::kWrongArgumentCount:
      return member + " does not take " + std::to_string(call.argumentCount) +
             (call.argumentCount == 1 ? " argument." : " arguments.");
    case errors::kTypeMismatch:
      if (!call.argument) return "Type mismatch: the component refuses the type of an argument of " + member + ".";
      return "Type mismatch: the component refuses the type of argument " + std::to_string(*call.argument) + " of " +
             std::to_string(call.argumentCount) + " of " + member + ".";
    default:
      return "The call of " + member + " failed with " + DescribeHresult(call.result) + ".";
  }
}

void Fill(EXCEPINFO& info, HRESULT result, std::string_view source, std::string_view description) {
  info = EXCEPINFO{};
  info.scode = result;
  OwnedBstr ownSource(NewBstr(source));
  info.bstrDescription = NewBstr(description);
  info.bstrSource = ownSource.Release();
}

}  // namespace

Exception::~Exception() {
  SysFreeString(info_.bstrSource);
  SysFreeString(info_.bstrDescription);
  SysFreeString(info_.bstrHelpFile);
}

Error Exception::ToError(const std::string& source) {
  if (info_.pfnDeferredFillIn) {
    info_.pfnDeferredFillIn(&info_);
    info_.pfnDeferredFillIn = nullptr;
  }
  std::int32_t number = info_.wCode != 0 ? info_.wCode : NumberOf(info_.scode);
  if (number == 0) number = errors::kInternal;
  const std::string givenSource = Utf8WithReplacements(View(info_.bstrSource));
  std::string description = Utf8WithReplacements(View(info_.bstrDescription));
  const bool hasResult = info_.wCode == 0 && FAILED(info_.scode);
  if (description.empty()) {
    description = hasResult ? "The component failed with " + DescribeHresult(info_.scode) + "."
                            : "The component failed without a description.";
  }
  return Error(number, givenSource.empty() ? source : givenSource, description);
}

Error ErrorOf(const FailedCall& call, const std::string& source) {
  const std::int32_t number = NumberOf(call.result);
  return Error(number, source, Described(call, number)).With("hresult", DescribeHresult(call.result));
}

HRESULT FailWithCurrentError(EXCEPINFO* info) noexcept {
  HRESULT result = E_OUTOFMEMORY;
  try {
    const Error error = CurrentError();
    result = ResultOf(error.Number());
    if (!info) return result;
    const bool isOwn = NumberOf(result) == error.Number();
    Fill(*info, result, error.Source(),
         isOwn ? error.Description() : error.Description() + " (error " + std::to_string(error.Number()) + ")");
    return DISP_E_EXCEPTION;
  } catch (...) {
    return result;
  }
}

}  // namespace qmx
