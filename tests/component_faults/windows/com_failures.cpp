#include "tests/component_faults/windows/com_failures.h"

#include <objbase.h>
#include <oleauto.h>

namespace qmx::test {
namespace {

using Invoke = decltype(ComFailure::invoke);

Invoke Fails(HRESULT result) {
  return [result](DISPPARAMS&, VARIANT&, EXCEPINFO&, UINT&) { return result; };
}

Invoke Fails(unsigned result) { return Fails(static_cast<HRESULT>(result)); }

Invoke Raises(std::function<void(EXCEPINFO&)> fill) {
  return [fill](DISPPARAMS&, VARIANT&, EXCEPINFO& exception, UINT&) {
    fill(exception);
    return DISP_E_EXCEPTION;
  };
}

// A result of that type, filled in by the function.
Invoke Gives(VARTYPE type, std::function<void(VARIANT&)> fill) {
  return [type, fill](DISPPARAMS&, VARIANT& result, EXCEPINFO&, UINT&) {
    fill(result);
    result.vt = type;
    return S_OK;
  };
}

HRESULT STDMETHODCALLTYPE FillInLate(EXCEPINFO* exception) {
  exception->scode = static_cast<HRESULT>(0x800A0046);
  exception->bstrSource = SysAllocString(L"Orvan");
  exception->bstrDescription = SysAllocString(L"You may not read this.");
  return S_OK;
}

HRESULT STDMETHODCALLTYPE FillInNothing(EXCEPINFO*) { return E_FAIL; }

}  // namespace

const std::vector<ComFailure>& ComFailures() {
  static const std::vector<ComFailure> failures = {
      {"is disconnected (RPC_E_DISCONNECTED)", Fails(0x80010108), true},
      {"finds no server (RPC_S_SERVER_UNAVAILABLE)", Fails(0x800706BA), true},
      {"fails as its server ends (RPC_S_CALL_FAILED)", Fails(0x800706BE), true},
      {"is not connected (CO_E_OBJNOTCONNECTED)", Fails(0x800401FD), true},
      {"is rejected (RPC_E_CALL_REJECTED)", Fails(0x80010001)},
      {"does not exist (DISP_E_MEMBERNOTFOUND)", Fails(DISP_E_MEMBERNOTFOUND)},
      {"has another number of arguments (DISP_E_BADPARAMCOUNT)", Fails(DISP_E_BADPARAMCOUNT)},
      {"lacks an argument (DISP_E_PARAMNOTOPTIONAL)", Fails(DISP_E_PARAMNOTOPTIONAL)},
      {"refuses a type (DISP_E_TYPEMISMATCH)", Fails(DISP_E_TYPEMISMATCH)},
      {"refuses the type of its last argument",
       [](DISPPARAMS&, VARIANT&, EXCEPINFO&, UINT& wrongArgument) {
         wrongArgument = 0;
         return DISP_E_TYPEMISMATCH;
       }},
      {"overflows (DISP_E_OVERFLOW)", Fails(DISP_E_OVERFLOW)},
      {"has no memory (E_OUTOFMEMORY)", Fails(E_OUTOFMEMORY)},
      {"is denied (E_ACCESSDENIED)", Fails(E_ACCESSDENIED)},
      {"fails with a result of its own", Fails(0x80040201)},
      {"raises an exception with all it can have", Raises([](EXCEPINFO& exception) {
         exception.scode = static_cast<HRESULT>(0x800A0BCD);
         exception.bstrSource = SysAllocString(L"Orvan");
         exception.bstrDescription = SysAllocString(L"The record of Z\u00FCrich is locked.");
         exception.bstrHelpFile = SysAllocString(L"orvan.chm");
       })},
      {"raises an exception without texts",
       Raises([](EXCEPINFO& exception) { exception.scode = static_cast<HRESULT>(0x80040201); })},
      {"raises an exception with a code only", Raises([](EXCEPINFO& exception) { exception.wCode = 1004; })},
      {"raises an exception without anything", Raises([](EXCEPINFO&) {})},
      {"raises an exception that is filled in late",
       Raises([](EXCEPINFO& exception) { exception.pfnDeferredFillIn = FillInLate; })},
      {"raises an exception that cannot be filled in",
       Raises([](EXCEPINFO& exception) { exception.pfnDeferredFillIn = FillInNothing; })},
      {"gives an array",
       Gives(VT_ARRAY | VT_I4, [](VARIANT& value) { value.parray = SafeArrayCreateVector(VT_I4, 0, 2); })},
      {"gives an error value", Gives(VT_ERROR, [](VARIANT& value) { value.scode = E_ACCESSDENIED; })},
      {"gives an object without IDispatch", Gives(VT_UNKNOWN,
                                                  [](VARIANT& value) {
                                                    IStream* stream = nullptr;
                                                    CreateStreamOnHGlobal(nullptr, TRUE, &stream);
                                                    value.punkVal = stream;
                                                  })},
      {"gives a null reference", Gives(VT_BYREF | VT_I4, [](VARIANT& value) { value.plVal = nullptr; })},
      {"gives a text with half a character",
       Gives(VT_BSTR, [](VARIANT& value) { value.bstrVal = SysAllocString(L"ab\xD83D"); })},
      {"gives a text with a NUL",
       Gives(VT_BSTR, [](VARIANT& value) { value.bstrVal = SysAllocStringLen(L"a\0b", 3); })},
      {"gives a date-time of the year 12000", Gives(VT_DATE, [](VARIANT& value) { value.date = 3689000.0; })},
      {"gives a decimal", Gives(VT_DECIMAL,
                                [](VARIANT& value) {
                                  value.decVal.Hi32 = 0;
                                  value.decVal.Lo64 = 12345678901234567890U;
                                  value.decVal.scale = 10;
                                  value.decVal.sign = DECIMAL_NEG;
                                })},
      {"gives an amount of money", Gives(VT_CY, [](VARIANT& value) { value.cyVal.int64 = 123456; })},
      {"gives a large number", Gives(VT_I8, [](VARIANT& value) { value.llVal = 9007199254740993; })},
  };
  return failures;
}

}  // namespace qmx::test
